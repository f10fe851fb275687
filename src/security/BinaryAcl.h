#pragma once

#include <cstdint>
#include <optional>

#include "platform/operations/Security.h"
#include "security/BinarySid.h"

namespace veldmark {

inline constexpr std::uint8_t kAclRevision = 2;
/// That of a list with object entries.
inline constexpr std::uint8_t kAclRevisionDs = 4;
inline constexpr std::size_t kAclHeaderSize = 8;

/// One entry of an access control list, as it stands in the list's bytes.
struct BinaryAce {
  std::uint8_t type;
  std::uint8_t flags;
  Bytes bytes;  ///< the whole entry with its header of four bytes

  /// The entry read as a plain one: its mask at 4 and its SID at 8, whatever its type. Both raise
  /// 1336 or 1337 where the entry is too short.
  std::int32_t AccessMask() const;
  Bytes Sid() const;

  /// What lies between mask and SID of an object entry. Raises 1336 for an entry too short, or with
  /// object flags other than 0 to 3.
  struct ObjectTypes {
    std::optional<GUID> object_type;
    std::optional<GUID> inherited_object_type;
    Bytes sid;
  };
  ObjectTypes ObjectEntry() const;
};

/// Walks a binary access control list: a header of eight bytes with revision, size and number of
/// entries, then the entries. The bytes may be longer than the list and must outlive the walk.
class BinaryAcl {
 public:
  /// Raises 1336 for a list whose header or size leaves the bytes.
  explicit BinaryAcl(Bytes bytes);

  Bytes bytes() const { return bytes_; }
  std::uint8_t Revision() const { return bytes_[0]; }
  std::uint16_t Count() const { return count_; }

  /// The next entry; there must be one left by the count. Raises 1336 where it leaves the list.
  BinaryAce Next();

  /// What header and entries take up, and what is left of the list's size. Raises 1336 where an
  /// entry leaves the list.
  struct Size {
    std::int32_t bytes_in_use;
    std::int32_t bytes_free;
  };
  Size SizeInformation() const;

 private:
  Bytes bytes_;
  std::uint16_t count_;
  std::size_t position_ = kAclHeaderSize;
};

/// Builds an access control list in a block of the size that it is to have, which must outlive the
/// building. The adding members raise 87 for flags that no entry has, 1337 for a SID that isn't
/// sound and 1344 where the block is full.
class AclBuilder {
 public:
  /// Raises 87 for a block below 8 or above 65535 bytes.
  AclBuilder(std::span<std::uint8_t> block, std::uint8_t revision);

  /// A plain entry: allowed 0, denied 1.
  void Add(std::uint8_t type, std::uint8_t flags, std::int32_t access_mask, Bytes sid);
  /// An object entry: allowed 5, denied 6.
  void AddObject(std::uint8_t type, std::uint8_t flags, std::int32_t access_mask,
                 const std::optional<GUID>& object_type,
                 const std::optional<GUID>& inherited_object_type, Bytes sid);

 private:
  void Begin(std::uint8_t type, std::uint8_t flags, std::size_t head_size, Bytes sid);
  template <class Field>
  void Append(const Field& field);
  void AppendSid(Bytes sid);

  std::span<std::uint8_t> block_;
  std::size_t position_ = kAclHeaderSize;
  std::uint16_t count_ = 0;
};

}  // namespace veldmark
