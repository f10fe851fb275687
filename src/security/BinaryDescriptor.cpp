#include "security/BinaryDescriptor.h"

#include <cstring>

#include "apartment/Conversions.h"
#include "platform/operations/ErrorCodes.h"

namespace veldmark {
namespace {

constexpr std::uint16_t kDaclPresent = 0x0004;
constexpr std::uint16_t kSelfRelative = 0x8000;

constexpr std::size_t kControlOffset = 2;
constexpr std::size_t kOwnerOffset = 4;
constexpr std::size_t kDaclOffset = 16;

Bytes PartAt(Bytes descriptor, std::size_t field) {
  std::uint32_t offset;
  std::memcpy(&offset, descriptor.data() + field, sizeof offset);
  if (offset == 0) return {};
  if (offset < kDescriptorHeaderSize || offset >= descriptor.size()) {
    RaisePlatformError(kErrorInvalidSecurityDescriptor);
  }
  return descriptor.subspan(offset);
}

}  // namespace

BinaryDescriptor::BinaryDescriptor(Bytes descriptor) {
  if (descriptor.size() < kDescriptorHeaderSize) {
    RaisePlatformError(kErrorInvalidSecurityDescriptor);
  }
  revision = descriptor[0];
  std::memcpy(&control, descriptor.data() + kControlOffset, sizeof control);
  if ((control & kSelfRelative) == 0) RaisePlatformError(kErrorInvalidSecurityDescriptor);
  owner = PartAt(descriptor, kOwnerOffset);
  if ((control & kDaclPresent) != 0) dacl = PartAt(descriptor, kDaclOffset);
}

}  // namespace veldmark
