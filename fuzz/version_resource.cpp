// Any bytes as a file's version resource: it is read or is no sound data, and reading it ends
// within its bytes.

#include <cstddef>
#include <cstdint>

#include "FuzzTarget.h"
#include "platform/operations/ErrorCodes.h"
#include "storage/VersionResource.h"

using namespace veldmark;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static World world;
  world.simulated.journal().Clear();
  Try({kErrorInvalidData}, [&] {
    const VersionResource resource({data, size});
    Try({kErrorInvalidData}, [&] { resource.FixedInfo(); });
    Try({kErrorInvalidData}, [&] {
      if (const auto key = resource.FirstTranslation()) Require(key->size() == 8);
    });
    for (const TextView name : {u"FileDescription", u"comments", u""}) {
      Try({kErrorInvalidData}, [&] {
        const auto text = resource.StringOf(u"040904B0", name);
        Require(!text || text->find(u'\0') == Text::npos);
      });
    }
    for (const TextView path :
         {u"", u"\\", u"\\StringFileInfo\\", u"\\\\VarFileInfo\\Translation"}) {
      const auto value = resource.Query(path);
      Require(!value || value->bytes.size() <= size);
      Require(!value || value->bytes.empty() ||
              value->bytes.data() + value->bytes.size() == data + size);
    }
  });
  return 0;
}
