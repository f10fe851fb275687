// Texts into SIDs. What converts must come back from its own text with the same bytes, and nothing
// but the documented errors may be raised.

#include "FuzzTarget.h"
#include "apartment/Conversions.h"
#include "platform/operations/ErrorCodes.h"
#include "security/BinarySid.h"

namespace {

using namespace veldmark;

void Convert(const Text& text) {
  Try({runtime_error::kTypeMismatch, runtime_error::kOverflow, runtime_error::kSubscriptOutOfRange,
       kErrorInvalidParameter},
      [&] {
        const SidWords sid = GetSidBufferFromText(text);
        Require(IsValidSid(AsBytes(sid)) &&
                GetLengthSid(AsBytes(sid)) == sid.size() * sizeof sid[0]);
        Require(GetSidBufferFromText(SidToText(AsBytes(sid))) == sid);
      });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static World world;
  Convert(ByteArrayToString({data, size}));
  Convert(Text(data, data + size));
  world.simulated.journal().Clear();
  return 0;
}
