// Texts into SIDs. What converts must come back from its own text with the same bytes, and nothing
// but the documented errors may be raised.

#include <cstdlib>
#include <cstring>

#include "apartment/Apartment.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/simulated/families/SimulatedPlatform.h"
#include "security/BinarySid.h"

namespace {

using namespace veldmark;

void Require(bool condition) {
  if (!condition) std::abort();
}

void Convert(const Text& text) {
  try {
    const SidWords sid = GetSidBufferFromText(text);
    Require(IsValidSid(AsBytes(sid)) && GetLengthSid(AsBytes(sid)) == sid.size() * sizeof sid[0]);
    Require(GetSidBufferFromText(SidToText(AsBytes(sid))) == sid);
  } catch (const AutomationError& error) {
    Require(error.number == runtime_error::kTypeMismatch ||
            error.number == runtime_error::kOverflow ||
            error.number == runtime_error::kSubscriptOutOfRange ||
            error.number == static_cast<std::int32_t>(kErrorInvalidParameter));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static simulated::SimulatedPlatform simulated;
  static Platform platform = simulated.platform();
  Apartment::Start(platform);
  Text wide(size / sizeof(char16_t), u'\0');
  if (!wide.empty()) std::memcpy(wide.data(), data, wide.size() * sizeof(char16_t));
  Convert(wide);
  Convert(Text(data, data + size));
  simulated.journal().Clear();
  return 0;
}
