#pragma once

#include <utility>

#include "apartment/Counted.h"
#include "automation/Object.h"
#include "automation/Text.h"
#include "automation/Variant.h"

namespace veldmark {

class CAcl;
class CSid;

/// Owner and discretionary access control list of a securable object, and where that object is.
class CSecurityDescriptor : public Exported<CSecurityDescriptor>,
                            Counted<Counter::kSecurityDescriptor> {
 public:
  static const Interface& Describe();
  CSecurityDescriptor();
  ~CSecurityDescriptor() override;

  /// Nothing where the owner could not be read.
  Ref<CSid> GetOwnerSid() const;
  /// Nothing where no list was made.
  Ref<CAcl> GetDACL() const;
  std::uint8_t Revision() const { return revision_; }
  /// The control word, values of `SDControlEnum`; negative with `SDC_SELF_RELATIVE`.
  std::int16_t Control() const { return control_; }
  /// The self-relative descriptor as it was read, an array of bytes; empty for one that wasn't.
  const Variant& BinarySD() const { return binary_sd_; }
  /// Writes the list back to the object that `ParentObjectType` and `ParentObjectPath` name; see
  /// `CSupport::SetNamedSD`. Owner and group stay as they are.
  void Save();
  /// The class of the secured object, "CFolder", or "LDAP".
  Text ParentObjectType;
  /// Where it is, in the form that the platform takes.
  Text ParentObjectPath;
  /// Whether the client behind an impersonation token has these rights by the descriptor as it was
  /// read (`AccessCheckByType`). The token is a handle of this process. A GUID asks for one kind of
  /// object or property at that level. Raises 13 without bytes that were read, 800401F3 for a GUID
  /// without its form, and the platform's error: 1309 for a token of another kind, 1338 for a
  /// descriptor without owner or group, as those of files and folders are read, 6 for no token.
  bool CheckAccess(std::int32_t ClientToken, std::int32_t AccessMask, const Text& ObjectTypeGUID,
                   std::int32_t ObjectTypeLevel);

  void SetOwnerSid(Ref<CSid> sid);
  void SetDACL(Ref<CAcl> dacl);
  void SetParentObject(Text type, Text path);
  void SetHeader(std::uint8_t revision, std::int16_t control);
  /// The header with the bytes that it was read from.
  void SetBinary(std::uint8_t revision, std::int16_t control, ByteArray bytes);

 private:
  Ref<CSid> owner_sid_;
  Ref<CAcl> dacl_;
  Variant binary_sd_;
  std::int16_t control_ = 0;
  std::uint8_t revision_ = 0;
};

}  // namespace veldmark
