// Texts into GUIDs by both readers. The strict one takes nothing that the other reads differently.

#include "FuzzTarget.h"
#include "security/Guid.h"

namespace {

using namespace veldmark;

void Convert(const Text& text) {
  bool loose_reads = false;
  GUID loose{};
  Try({runtime_error::kTypeMismatch, runtime_error::kOverflow, runtime_error::kSubscriptOutOfRange,
       runtime_error::kInvalidCall},
      [&] {
        loose = ConvertStringToGUID(text);
        loose_reads = true;
        Require(ConvertStringToGUID2(ConvertGUIDToString(loose)) == loose);
      });
  Try({static_cast<std::int32_t>(0x800401F3u)}, [&] {
    const GUID strict = ConvertStringToGUID2(text);
    Require(text.find(u'\0') != Text::npos || (loose_reads && strict == loose));
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static World world;
  Convert(Text(data, data + size));
  world.simulated.journal().Clear();
  return 0;
}
