#include "security/CAce.h"

#include "automation/Declare.h"
#include "security/AceFlags.h"
#include "security/CSid.h"
#include "security/PermissionText.h"

namespace veldmark {
namespace {

constexpr TextView kPrinterClass = u"CPrinter";

}  // namespace

const Interface& CAce::Describe() {
  static const Interface table =
      Declare<CAce>(u"CAce", u"One entry of an access control list.")
          .Method<&CAce::GetSid>(u"GetSid", u"Whom it is for.")
          .Method<&CAce::Delete>(u"Delete", u"Takes all rights out of it.")
          .Remark(
              u"The entry stays in its list: a list that is saved has an allowed entry with no "
              u"rights then, and a denied one is left out. CAces.Remove takes an entry out.")
          .Stored<&CAce::AceType>(u"AceType", u"What it does.")
          .Stored<&CAce::AceFlags>(u"AceFlags", u"Where it applies, values of AceFlagsEnum.")
          .Stored<&CAce::AccessMask>(u"AccessMask", u"The rights.")
          .Property<&CAce::IsInherited, &CAce::PutIsInherited>(u"IsInherited",
                                                               u"True if it was inherited.")
          .Stored<&CAce::ObjectTypeGUID>(u"ObjectTypeGUID",
                                         u"The kind of object or property that it is for.")
          .Stored<&CAce::InheritedObjectTypeGUID>(u"InheritedObjectTypeGUID",
                                                  u"The kind of object that inherits it.")
          .Get<&CAce::PermissionsString>(u"PermissionsString", u"The rights in words.")
          .Get<&CAce::ExtendedPermissionsString>(u"ExtendedPermissionsString",
                                                 u"The rights as two-letter codes.")
          .Get<&CAce::InheritanceScope>(u"InheritanceScope", u"Where it applies, in words.");
  return table;
}

CAce::CAce() = default;
CAce::~CAce() = default;

Ref<CSid> CAce::GetSid() {
  if (!sid_) sid_ = Make<CSid>();
  return sid_;
}

bool CAce::IsInherited() const { return (AceFlags & INHERITED_ACE) != 0; }

void CAce::PutIsInherited(bool inherited) {
  AceFlags =
      static_cast<std::uint8_t>(inherited ? AceFlags | INHERITED_ACE : AceFlags & ~INHERITED_ACE);
}

Text CAce::PermissionsString() const {
  return object_type_name_ == kPrinterClass
             ? GetSimplifiedPrinterPermString(AccessMask, AceFlags)
             : GetSimplifiedPermString(AccessMask, object_type_name_);
}

Text CAce::ExtendedPermissionsString() const {
  return object_type_name_ == kPrinterClass ? GetExtendedPrinterPermString(AccessMask, AceFlags)
                                            : GetExtendedPermString(AccessMask, object_type_name_);
}

Text CAce::InheritanceScope() const {
  if (object_type_name_ == u"CFolder" || object_type_name_ == u"CRegKey") {
    return GetInheritanceString(AceFlags);
  }
  if (object_type_name_ == u"CFile") return u"This file only";
  if (object_type_name_ == kPrinterClass) return GetPrinterInheritanceString(AceFlags);
  return {};
}

void CAce::SetSid(Ref<CSid> sid) { sid_ = std::move(sid); }

}  // namespace veldmark
