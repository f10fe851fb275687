// Any bytes as a file's version resource: it is read or is no sound data, and reading it ends
// within its bytes.

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "apartment/Apartment.h"
#include "automation/Error.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/simulated/families/SimulatedPlatform.h"
#include "storage/VersionResource.h"

namespace {

using namespace veldmark;

void Require(bool condition) {
  if (!condition) std::abort();
}

template <class Read>
void Try(Read&& read) {
  try {
    read();
  } catch (const AutomationError& error) {
    Require(error.number == static_cast<std::int32_t>(kErrorInvalidData));
  }
}

struct World {
  World() : platform(simulated.platform()) { Apartment::Start(platform); }
  ~World() { Apartment::End(); }
  simulated::SimulatedPlatform simulated;
  Platform platform;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static World world;
  world.simulated.journal().Clear();
  Try([&] {
    const VersionResource resource({data, size});
    Try([&] { resource.FixedInfo(); });
    Try([&] {
      if (const auto key = resource.FirstTranslation()) Require(key->size() == 8);
    });
    for (const TextView name : {u"FileDescription", u"comments", u""}) {
      Try([&] {
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
