// Texts into GUIDs by both readers. The strict one takes nothing that the other reads differently.

#include <cstdlib>
#include <cstring>

#include "apartment/Apartment.h"
#include "platform/simulated/families/SimulatedPlatform.h"
#include "security/Guid.h"

namespace {

using namespace veldmark;

void Require(bool condition) {
  if (!condition) std::abort();
}

void Convert(const Text& text) {
  bool loose_reads = false;
  GUID loose{};
  try {
    loose = ConvertStringToGUID(text);
    loose_reads = true;
    Require(ConvertStringToGUID2(ConvertGUIDToString(loose)) == loose);
  } catch (const AutomationError& error) {
    Require(error.number == runtime_error::kTypeMismatch ||
            error.number == runtime_error::kOverflow ||
            error.number == runtime_error::kSubscriptOutOfRange ||
            error.number == runtime_error::kInvalidCall);
  }
  try {
    const GUID strict = ConvertStringToGUID2(text);
    Require(text.find(u'\0') != Text::npos || (loose_reads && strict == loose));
  } catch (const AutomationError& error) {
    Require(error.number == static_cast<std::int32_t>(0x800401F3u));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static simulated::SimulatedPlatform simulated;
  static Platform platform = simulated.platform();
  Apartment::Start(platform);
  Convert(Text(data, data + size));
  simulated.journal().Clear();
  return 0;
}
