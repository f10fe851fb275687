#include "security/BinaryAcl.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "apartment/Conversions.h"
#include "platform/operations/ErrorCodes.h"

namespace veldmark {
namespace {

constexpr std::size_t kAclSizeOffset = 2;
constexpr std::size_t kAclCountOffset = 4;

constexpr std::size_t kAceHeaderSize = 4;
constexpr std::size_t kAceSizeOffset = 2;
constexpr std::size_t kAceMaskOffset = 4;
constexpr std::size_t kAceSidOffset = 8;
constexpr std::size_t kObjectFlagsOffset = 8;
constexpr std::size_t kObjectTypesOffset = 12;

constexpr std::uint32_t kObjectTypePresent = 1;
constexpr std::uint32_t kInheritedObjectTypePresent = 2;

constexpr std::uint8_t kValidInheritFlags = 31;

/// A field that the bytes are long enough for, or error 1336.
template <class Field>
Field FieldAt(Bytes bytes, std::size_t offset) {
  if (offset > bytes.size() || bytes.size() - offset < sizeof(Field)) {
    RaisePlatformError(kErrorInvalidAcl);
  }
  Field field;
  std::memcpy(&field, bytes.data() + offset, sizeof field);
  return field;
}

/// The SID at an offset, which may be the end of the bytes. Raises 1337 where it leaves them.
Bytes SidAt(Bytes bytes, std::size_t offset) {
  const Bytes rest = bytes.subspan(std::min(offset, bytes.size()));
  return rest.first(GetLengthSid(rest));
}

}  // namespace

std::int32_t BinaryAce::AccessMask() const { return FieldAt<std::int32_t>(bytes, kAceMaskOffset); }

Bytes BinaryAce::Sid() const { return SidAt(bytes, kAceSidOffset); }

BinaryAce::ObjectTypes BinaryAce::ObjectEntry() const {
  const auto object_flags = FieldAt<std::uint32_t>(bytes, kObjectFlagsOffset);
  if (object_flags > (kObjectTypePresent | kInheritedObjectTypePresent)) {
    RaisePlatformError(kErrorInvalidAcl);
  }
  ObjectTypes entry;
  std::size_t offset = kObjectTypesOffset;
  const auto take = [&](std::uint32_t flag, std::optional<GUID>& type) {
    if ((object_flags & flag) == 0) return;
    type = FieldAt<GUID>(bytes, offset);
    offset += sizeof(GUID);
  };
  take(kObjectTypePresent, entry.object_type);
  take(kInheritedObjectTypePresent, entry.inherited_object_type);
  entry.sid = SidAt(bytes, offset);
  return entry;
}

BinaryAcl::BinaryAcl(Bytes bytes) {
  const std::size_t size = FieldAt<std::uint16_t>(bytes, kAclSizeOffset);
  count_ = FieldAt<std::uint16_t>(bytes, kAclCountOffset);
  if (size < kAclHeaderSize || size > bytes.size()) RaisePlatformError(kErrorInvalidAcl);
  bytes_ = bytes.first(size);
}

BinaryAce BinaryAcl::Next() {
  const std::size_t size = FieldAt<std::uint16_t>(bytes_, position_ + kAceSizeOffset);
  if (size < kAceHeaderSize || size > bytes_.size() - position_) {
    RaisePlatformError(kErrorInvalidAcl);
  }
  const Bytes ace = bytes_.subspan(position_, size);
  position_ += size;
  return {ace[0], ace[1], ace};
}

BinaryAcl::Size BinaryAcl::SizeInformation() const {
  BinaryAcl walk(bytes_);
  for (std::uint16_t index = 0; index < count_; ++index) walk.Next();
  const auto in_use = static_cast<std::int32_t>(walk.position_);
  return {in_use, static_cast<std::int32_t>(bytes_.size()) - in_use};
}

AclBuilder::AclBuilder(std::span<std::uint8_t> block, std::uint8_t revision) : block_(block) {
  if (block.size() < kAclHeaderSize || block.size() > std::numeric_limits<std::uint16_t>::max()) {
    RaisePlatformError(kErrorInvalidParameter);
  }
  std::memset(block_.data(), 0, kAclHeaderSize);
  block_[0] = revision;
  const auto size = static_cast<std::uint16_t>(block.size());
  std::memcpy(block_.data() + kAclSizeOffset, &size, sizeof size);
}

void AclBuilder::Add(std::uint8_t type, std::uint8_t flags, std::int32_t access_mask, Bytes sid) {
  Begin(type, flags, kAceSidOffset, sid);
  Append(access_mask);
  AppendSid(sid);
}

void AclBuilder::AddObject(std::uint8_t type, std::uint8_t flags, std::int32_t access_mask,
                           const std::optional<GUID>& object_type,
                           const std::optional<GUID>& inherited_object_type, Bytes sid) {
  const std::size_t types = (object_type ? 1u : 0u) + (inherited_object_type ? 1u : 0u);
  Begin(type, flags, kObjectTypesOffset + types * sizeof(GUID), sid);
  Append(access_mask);
  Append((object_type ? kObjectTypePresent : 0) |
         (inherited_object_type ? kInheritedObjectTypePresent : 0));
  if (object_type) Append(*object_type);
  if (inherited_object_type) Append(*inherited_object_type);
  AppendSid(sid);
}

void AclBuilder::Begin(std::uint8_t type, std::uint8_t flags, std::size_t head_size, Bytes sid) {
  if ((flags & ~kValidInheritFlags) != 0) RaisePlatformError(kErrorInvalidParameter);
  if (!IsValidSid(sid)) RaisePlatformError(kErrorInvalidSid);
  const std::size_t size = head_size + GetLengthSid(sid);
  if (size > block_.size() - position_) RaisePlatformError(kErrorAllottedSpaceExceeded);
  ++count_;
  std::memcpy(block_.data() + kAclCountOffset, &count_, sizeof count_);
  Append(type);
  Append(flags);
  Append(static_cast<std::uint16_t>(size));
}

template <class Field>
void AclBuilder::Append(const Field& field) {
  std::memcpy(block_.data() + position_, &field, sizeof field);
  position_ += sizeof field;
}

void AclBuilder::AppendSid(Bytes sid) {
  const std::size_t length = GetLengthSid(sid);
  std::memcpy(block_.data() + position_, sid.data(), length);
  position_ += length;
}

}  // namespace veldmark
