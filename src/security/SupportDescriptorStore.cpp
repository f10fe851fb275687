#include <optional>

#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "platform/operations/Handles.h"
#include "security/BinaryAcl.h"
#include "security/CAce.h"
#include "security/CAces.h"
#include "security/CAcl.h"
#include "security/CSecurityDescriptor.h"
#include "security/CSid.h"
#include "security/Guid.h"
#include "security/ObjectType.h"

namespace veldmark {
namespace {

enum class EntryForm { kNone, kPlain, kObject };

/// How an entry goes back to the platform. A denied one without rights, or inherited, doesn't.
EntryForm FormOf(const CAce& ace) {
  const bool denies_something = ace.AccessMask != 0 && !ace.IsInherited();
  switch (ace.AceType) {
    case ACCESS_ALLOWED_ACE_TYPE:
      return EntryForm::kPlain;
    case ACCESS_DENIED_ACE_TYPE:
      return denies_something ? EntryForm::kPlain : EntryForm::kNone;
    case ACCESS_ALLOWED_OBJECT_ACE_TYPE:
      return EntryForm::kObject;
    case ACCESS_DENIED_OBJECT_ACE_TYPE:
      return denies_something ? EntryForm::kObject : EntryForm::kNone;
    default:
      return EntryForm::kNone;
  }
}

std::vector<Ref<CAce>> EntriesOf(CAces& aces) {
  std::vector<Ref<CAce>> entries;
  for (std::int32_t index = 1; index <= aces.Count(); ++index) {
    Variant position(index);
    entries.push_back(aces.Item(position));
  }
  return entries;
}

struct ListSize {
  std::size_t bytes = kAclHeaderSize;
  std::uint8_t revision = kAclRevision;
};

/// The room that the entries take; an object entry is given room for both of its types.
ListSize SizeOf(const std::vector<Ref<CAce>>& entries) {
  constexpr std::size_t kPlainHeadSize = 8;
  constexpr std::size_t kObjectHeadSize = 52;
  ListSize size;
  for (const Ref<CAce>& ace : entries) {
    const EntryForm form = FormOf(*ace);
    if (form == EntryForm::kNone) continue;
    const auto sid_length = static_cast<std::size_t>(ace->GetSid()->SidLength());
    if (form == EntryForm::kObject) size.revision = kAclRevisionDs;
    size.bytes += sid_length + (form == EntryForm::kObject ? kObjectHeadSize : kPlainHeadSize);
  }
  return size;
}

std::optional<GUID> GuidOrNone(const Text& text) {
  return text.empty() ? std::nullopt : std::optional(ConvertStringToGUID(text));
}

void AddEntry(AclBuilder& list, CAce& ace) {
  const EntryForm form = FormOf(ace);
  if (form == EntryForm::kNone) return;
  const Ref<CSid> sid = ace.GetSid();
  const auto type = static_cast<std::uint8_t>(ace.AceType);
  if (form == EntryForm::kPlain) {
    list.Add(type, ace.AceFlags, ace.AccessMask, AsBytes(sid->SidBuffer()));
  } else {
    list.AddObject(type, ace.AceFlags, ace.AccessMask, GuidOrNone(ace.ObjectTypeGUID),
                   GuidOrNone(ace.InheritedObjectTypeGUID), AsBytes(sid->SidBuffer()));
  }
}

SE_OBJECT_TYPE ObjectTypeOf(TextView parent_type) {
  if (parent_type == u"CFile" || parent_type == u"CFolder") return SE_FILE_OBJECT;
  if (parent_type == u"CRegKey") return SE_REGISTRY_KEY;
  if (parent_type == u"CService") return SE_SERVICE;
  if (parent_type == u"CPrinter") return SE_PRINTER;
  if (parent_type == u"CShare") return SE_LMSHARE;
  if (parent_type == u"LDAP") return SE_DS_OBJECT;
  return SE_UNKNOWN_OBJECT_TYPE;
}

}  // namespace

void CSupport::SetNamedSD(CSecurityDescriptor* descriptor) {
  ReRaising([&] {
    if (!descriptor) Raise(runtime_error::kObjectNotSet);
    const Ref<CAcl> acl = descriptor->GetDACL();
    if (!acl || !acl->GetAces()) Raise(runtime_error::kObjectNotSet);
    const std::vector<Ref<CAce>> entries = EntriesOf(*acl->GetAces());
    const Platform& platform = Apartment::Current().platform;
    const ListSize size = SizeOf(entries);
    const LocalMemory<void> block(platform.system,
                                  platform.system.LocalAlloc(kLocalZeroInitialised, size.bytes));
    if (!block) RaisePlatformError(Err().LastDllError());
    AclBuilder list({static_cast<std::uint8_t*>(block.Get()), size.bytes}, size.revision);
    for (const Ref<CAce>& ace : entries) AddEntry(list, *ace);
    const DWORD protection =
        acl->IsProtected ? kProtectedDaclSecurityInformation : kUnprotectedDaclSecurityInformation;
    const SE_OBJECT_TYPE type = ObjectTypeOf(descriptor->ParentObjectType);
    Text path = descriptor->ParentObjectPath;
    // A drive alone would be its current folder.
    if (type == SE_FILE_OBJECT && path.ends_with(u':')) path += u'\\';
    const DWORD status = platform.security.SetNamedSecurityInfoW(
        path.c_str(), static_cast<DWORD>(type), kDaclSecurityInformation | protection, nullptr,
        nullptr, block.Get(), nullptr);
    if (status != 0) RaisePlatformError(static_cast<std::int32_t>(status));
  });
}

}  // namespace veldmark
