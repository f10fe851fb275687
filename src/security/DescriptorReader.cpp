#include "security/DescriptorReader.h"

#include <utility>
#include "accounts/CGroup.h"
#include "accounts/CGroups.h"

#include "apartment/Apartment.h"
#include "apartment/CStatus.h"
#include "security/AccessRights.h"
#include "security/BinaryAcl.h"
#include "security/CAce.h"
#include "security/CAces.h"
#include "security/CAcl.h"
#include "security/CSecurityDescriptor.h"
#include "security/CSid.h"
#include "security/Guid.h"

namespace veldmark {
namespace {

Variant ToVariant(Bytes bytes) {
  return Variant(ByteArray(std::vector<std::uint8_t>(bytes.begin(), bytes.end())));
}

Ref<CSid> MakeSid(Bytes sid, const Text& resides_on_server) {
  const auto made = Make<CSid>();
  made->PutSidBuffer(CopySid(sid));
  made->SetResidesOnServer(resides_on_server);
  return made;
}

/// The entry as an object; Nothing for a type that isn't read.
Ref<CAce> ReadAce(const BinaryAce& binary, const DescriptorReader& reader) {
  const bool is_object =
      binary.type == ACCESS_ALLOWED_OBJECT_ACE_TYPE || binary.type == ACCESS_DENIED_OBJECT_ACE_TYPE;
  const bool is_plain =
      binary.type == ACCESS_ALLOWED_ACE_TYPE || binary.type == ACCESS_DENIED_ACE_TYPE;
  if (!reader.plain_entries_only && !is_object && !is_plain) return nullptr;
  const auto ace = Make<CAce>();
  if (is_object && !reader.plain_entries_only) {
    const BinaryAce::ObjectTypes types = binary.ObjectEntry();
    ace->SetSid(MakeSid(types.sid, reader.resides_on_server));
    if (types.object_type) ace->ObjectTypeGUID = ConvertGUIDToString(*types.object_type);
    if (types.inherited_object_type) {
      ace->InheritedObjectTypeGUID = ConvertGUIDToString(*types.inherited_object_type);
    }
  } else {
    ace->SetSid(MakeSid(binary.Sid(), reader.resides_on_server));
  }
  ace->AccessMask = MapGenericMask(binary.AccessMask(), MappingOf(reader.object_type));
  ace->AceFlags = binary.flags;
  ace->AceType = static_cast<AceTypeEnum>(binary.type);
  ace->SetObjectTypeName(reader.object_class);
  return ace;
}

}  // namespace

BinaryDescriptor DescriptorReader::ReadHeader(CSecurityDescriptor& descriptor, Bytes bytes) const {
  const BinaryDescriptor parts(bytes);
  descriptor.SetBinary(parts.revision, static_cast<std::int16_t>(parts.control),
                       ByteArray(std::vector<std::uint8_t>(bytes.begin(), bytes.end())));
  return parts;
}

void DescriptorReader::ReadOwner(CSecurityDescriptor& descriptor,
                                 const BinaryDescriptor& parts) const {
  if (parts.owner.empty() || !IsValidSid(parts.owner)) return;
  descriptor.SetOwnerSid(MakeSid(parts.owner, resides_on_server));
}

void DescriptorReader::ReadDacl(CSecurityDescriptor& descriptor,
                                const BinaryDescriptor& parts) const {
  const auto acl = Make<CAcl>();
  const auto aces = Make<CAces>();
  if (!parts.dacl.empty()) {
    BinaryAcl binary(parts.dacl);
    const BinaryAcl::Size size = binary.SizeInformation();
    acl->SetBinary(binary.Revision(), ToVariant(binary.bytes()), size.bytes_in_use,
                   size.bytes_free);
    acl->IsProtected = (parts.control & kDaclProtected) != 0;
    CStatus& status = StatusObject();
    for (std::int32_t index = 1; index <= binary.Count(); ++index) {
      const Ref<CAce> ace = ReadAce(binary.Next(), *this);
      if (!ace) continue;
      aces->Add(ace.Get());
      status.RaiseStatus(
          [&] { return u"Retrieved Ace " + ToText(index) + u" of " + ToText(binary.Count()); });
    }
  }
  acl->SetAces(aces);
  descriptor.SetDACL(acl);
}

void AllowEveryone(CSecurityDescriptor& descriptor, TextView object_class) {
  const Ref<CGroups> groups = Apartment::Current().well_known_groups;
  if (!groups) Raise(runtime_error::kObjectNotSet);
  Variant everyone(Text(u"S-1-1-0"));
  const auto ace = Make<CAce>();
  ace->SetSid(groups->Item(everyone)->GetSid());
  ace->AccessMask = kFileAllAccess;
  ace->SetObjectTypeName(Text(object_class));
  const auto aces = Make<CAces>();
  aces->Add(ace.Get());
  const auto acl = Make<CAcl>();
  acl->SetAces(aces);
  descriptor.SetDACL(acl);
}

}  // namespace veldmark
