#pragma once

#include <utility>

#include "apartment/Counted.h"
#include "automation/Object.h"
#include "automation/Text.h"
#include "automation/Variant.h"
#include "security/AceFlags.h"
#include "security/AceType.h"

namespace veldmark {

class CAce;
class CAces;

/// A discretionary access control list. The entries are the working model; the bytes beside them
/// are those that were read and never change.
class CAcl : public Exported<CAcl>, Counted<Counter::kAcl> {
 public:
  static const Interface& Describe();
  CAcl();
  ~CAcl() override;

  /// The entries in the list's order, the same object each time; Nothing in a new list.
  Ref<CAces> GetAces() const;
  /// Adds rights. An entry of the same account, type, flags and GUIDs gets them beside those that
  /// it has; otherwise a new one is appended. Either way the new entry is returned: after a match
  /// it stands outside the list with the rights asked for alone. Raises the error of the SID's text
  /// (see `GetSidBufferFromText`), 6 for flags that aren't a byte, and 91 in a list without
  /// entries' collection; nothing is added then.
  Ref<CAce> Grant(const Text& SidText, AceTypeEnum AceType, std::int32_t AccessMask,
                  AceFlagsEnum AceFlags, const Text& ObjectTypeGUID, const Text& InhObjectTypeGUID);
  std::uint8_t Revision() const { return revision_; }
  /// The list as it was read, an array of bytes; empty for a new one.
  const Variant& BinaryACL() const { return binary_acl_; }
  /// True to inherit nothing. What it is at the save decides.
  bool IsProtected = false;
  /// The sizes in bytes of the list as it was read.
  std::int32_t BytesFree() const { return bytes_free_; }
  std::int32_t BytesInUse() const { return bytes_in_use_; }

  void SetAces(Ref<CAces> aces);
  /// What was read of a list.
  void SetBinary(std::uint8_t revision, Variant bytes, std::int32_t bytes_in_use,
                 std::int32_t bytes_free);

 private:
  Ref<CAces> aces_;
  Variant binary_acl_;
  std::int32_t bytes_free_ = 0;
  std::int32_t bytes_in_use_ = 0;
  std::uint8_t revision_ = 0;
};

}  // namespace veldmark
