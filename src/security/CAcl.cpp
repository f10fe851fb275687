#include "security/CAcl.h"

#include "apartment/CSupport.h"
#include "apartment/Errors.h"
#include "automation/CaseMapping.h"
#include "automation/Conversion.h"
#include "automation/Declare.h"
#include "security/CAce.h"
#include "security/CAces.h"
#include "security/CSid.h"

namespace veldmark {
namespace {

/// What makes two entries one: everything but their rights.
struct AceIdentity {
  explicit AceIdentity(CAce& ace)
      : flags(ace.AceFlags),
        type(ace.AceType),
        object_type(ToUpper(ace.ObjectTypeGUID)),
        inherited_object_type(ToUpper(ace.InheritedObjectTypeGUID)),
        sid_text(ToUpper(ace.GetSid()->SidText())) {}
  bool operator==(const AceIdentity&) const = default;

  std::uint8_t flags;
  AceTypeEnum type;
  Text object_type;
  Text inherited_object_type;
  Text sid_text;
};

}  // namespace

const Interface& CAcl::Describe() {
  static const Interface table =
      Declare<CAcl>(u"CAcl", u"A discretionary access control list.")
          .Method<&CAcl::GetAces>(u"GetAces", u"The entries in their order.")
          .Method<&CAcl::Grant>(u"Grant", u"Adds rights for an account.",
                                {u"SidText",
                                 u"AceType",
                                 u"AccessMask",
                                 u"AceFlags",
                                 {u"ObjectTypeGUID", u""},
                                 {u"InhObjectTypeGUID", u""}})
          .Remark(
              u"An entry for the same account, type, flags and GUIDs takes the rights up; what "
              u"is returned then stands outside the list, and changing it changes nothing. "
              u"Otherwise the entry is the last of the list, a denied one too, behind what is "
              u"allowed. Raises 6, 9, 13 or 87 for a text that is no SID.")
          .Get<&CAcl::Revision>(u"Revision", u"2, or 4 for a list with object entries.")
          .Get<&CAcl::BinaryACL>(u"BinaryACL", u"The bytes of the list as it was read.")
          .Stored<&CAcl::IsProtected>(u"IsProtected", u"True if the list inherits nothing.")
          .Get<&CAcl::BytesFree>(u"BytesFree", u"The bytes unused in the list as it was read.")
          .Get<&CAcl::BytesInUse>(u"BytesInUse", u"The bytes used in the list as it was read.");
  return table;
}

CAcl::CAcl() = default;
CAcl::~CAcl() = default;

Ref<CAces> CAcl::GetAces() const { return aces_; }

Ref<CAce> CAcl::Grant(const Text& SidText, AceTypeEnum AceType, std::int32_t AccessMask,
                      AceFlagsEnum AceFlags, const Text& ObjectTypeGUID,
                      const Text& InhObjectTypeGUID) {
  return ReRaisingAs(u"CAcl", [&] {
    const auto granted = Make<CAce>();
    granted->AceType = AceType;
    granted->AccessMask = AccessMask;
    granted->AceFlags = ToByte(Variant(static_cast<std::int32_t>(AceFlags)));
    granted->ObjectTypeGUID = ObjectTypeGUID;
    granted->InheritedObjectTypeGUID = InhObjectTypeGUID;
    granted->SetSid(Engine().GetSidFromText(SidText, Text()));
    if (!aces_) Raise(runtime_error::kObjectNotSet);
    const AceIdentity identity(*granted);
    for (std::int32_t index = 1; index <= aces_->Count(); ++index) {
      Variant position(index);
      const Ref<CAce> ace = aces_->Item(position);
      if (AceIdentity(*ace) == identity) {
        ace->AccessMask |= AccessMask;
        return granted;
      }
    }
    aces_->Add(granted.Get());
    return granted;
  });
}

void CAcl::SetAces(Ref<CAces> aces) { aces_ = std::move(aces); }

void CAcl::SetBinary(std::uint8_t revision, Variant bytes, std::int32_t bytes_in_use,
                     std::int32_t bytes_free) {
  revision_ = revision;
  binary_acl_ = std::move(bytes);
  bytes_in_use_ = bytes_in_use;
  bytes_free_ = bytes_free;
}

}  // namespace veldmark
