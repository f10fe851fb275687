#pragma once

#include <utility>

#include "apartment/Counted.h"
#include "automation/Object.h"
#include "automation/Text.h"
#include "security/AceType.h"

namespace veldmark {

class CSid;

/// One entry of an access control list. Changes stay in this object until the descriptor is saved.
class CAce : public Exported<CAce>, Counted<Counter::kAce> {
 public:
  static const Interface& Describe();
  CAce();
  ~CAce() override;

  /// Whom the entry is for: the same object each time, an empty one where there was none.
  Ref<CSid> GetSid();
  /// Takes all rights out of the mask and nothing else. At the save an entry that denies is left
  /// out then; one that allows is written without rights.
  void Delete() { AccessMask = 0; }

  AceTypeEnum AceType{};
  std::uint8_t AceFlags = 0;  ///< a union of `AceFlagsEnum` values
  std::int32_t AccessMask = 0;
  /// The flag `INHERITED_ACE`.
  bool IsInherited() const;
  void PutIsInherited(bool inherited);
  Text ObjectTypeGUID;  ///< "{...}" in capitals; empty where the entry is for every type
  Text InheritedObjectTypeGUID;
  /// The rights in words, by the kind of the secured object; empty where that isn't known.
  Text PermissionsString() const;
  /// The same as two-letter codes.
  Text ExtendedPermissionsString() const;
  /// "This folder, subfolders and files"; empty for objects that have nothing below them.
  Text InheritanceScope() const;

  void SetSid(Ref<CSid> sid);
  /// The class of the secured object, "CFolder", which the words depend on.
  void SetObjectTypeName(Text name) { object_type_name_ = std::move(name); }

 private:
  Ref<CSid> sid_;
  Text object_type_name_;
};

}  // namespace veldmark
