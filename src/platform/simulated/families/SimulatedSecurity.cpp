#include "platform/simulated/families/SimulatedSecurity.h"

#include <cstring>
#include <functional>
#include <stdexcept>

#include "automation/CaseMapping.h"
#include "automation/LastError.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/simulated/estate/AccessCheck.h"
#include "platform/simulated/estate/AccountLookup.h"
#include "platform/simulated/estate/DescriptorText.h"
#include "platform/simulated/estate/FileAccess.h"

namespace veldmark::simulated {
namespace {

// SE_OBJECT_TYPE.
constexpr DWORD kFileObject = 1;
constexpr DWORD kServiceObject = 2;
constexpr DWORD kPrinterObject = 3;
constexpr DWORD kRegistryObject = 4;
constexpr DWORD kShareObject = 5;
constexpr DWORD kDirectoryObject = 8;
constexpr DWORD kWholeDirectoryObject = 9;

constexpr DWORD kSePrivilegeRemoved = 0x4;
constexpr GENERIC_MAPPING kTokenMapping = {0x20008, 0x200E0, 0x20004, 0xF01FF};
constexpr DWORD kPrivilegeSetAllNecessary = 1;

const HANDLE kThisProcess = reinterpret_cast<HANDLE>(std::intptr_t{-1});

// The rights that reading parts of a descriptor needs.
DWORD ReadingNeeds(DWORD information) {
  DWORD access = 0;
  constexpr DWORD kOpenParts =
      kOwnerSecurityInformation | kGroupSecurityInformation | kDaclSecurityInformation;
  if ((information & kOpenParts) != 0) access |= kReadControl;
  if ((information & kSaclSecurityInformation) != 0) access |= kAccessSystemSecurity;
  return access;
}

DWORD WritingNeeds(DWORD information) {
  DWORD access = 0;
  if ((information & (kOwnerSecurityInformation | kGroupSecurityInformation)) != 0) {
    access |= kWriteOwner;
  }
  if ((information & kDaclSecurityInformation) != 0) access |= kWriteDac;
  if ((information & kSaclSecurityInformation) != 0) access |= kAccessSystemSecurity;
  return access;
}

BOOL PutDescriptor(const SecurityDescriptor& descriptor, DWORD information, void* buffer,
                   DWORD length, DWORD* length_needed) {
  const std::vector<std::uint8_t> bytes = BytesOf(descriptor, information);
  *length_needed = static_cast<DWORD>(bytes.size());
  if (length < bytes.size()) return Fail(kErrorInsufficientBuffer);
  std::memcpy(buffer, bytes.data(), bytes.size());
  return 1;
}

// "\\srv\name" in its two parts; a name alone is on this computer.
void SplitServer(TextView name, TextView& server, TextView& rest) {
  rest = name;
  if (!name.starts_with(u"\\\\")) return;
  const std::size_t end = name.find(u'\\', 2);
  server = name.substr(2, end == TextView::npos ? end : end - 2);
  rest = end == TextView::npos ? TextView() : name.substr(end + 1);
}

bool IsWithin(TextView path, TextView root, TextView& below) {
  if (!StartsWithNoCase(path, root)) return false;
  if (path.size() > root.size() && path[root.size()] != u'\\') return false;
  below = path.size() > root.size() ? path.substr(root.size() + 1) : TextView();
  return true;
}

// The parts that a caller gives in place of those of a descriptor. Returns 0 or why they can't be.
DWORD ReplaceParts(SecurityDescriptor& descriptor, const Token& token, DWORD information,
                   const void* owner, const void* group, const void* dacl, const void* sacl) {
  if ((information & kOwnerSecurityInformation) != 0) {
    if (owner == nullptr) return kErrorInvalidParameter;
    const auto sid = Sid::FromAddress(owner);
    if (!sid) return kErrorInvalidSid;
    // Others can't be made owners, except by those who restore.
    const bool may_own = *sid == token.user() || *sid == token.owner();
    if (!may_own && !token.IsEnabled(Privilege::Restore)) return kErrorInvalidOwner;
    descriptor.owner = *sid;
  }
  if ((information & kGroupSecurityInformation) != 0) {
    if (group == nullptr) return kErrorInvalidParameter;
    const auto sid = Sid::FromAddress(group);
    if (!sid) return kErrorInvalidSid;
    descriptor.group = *sid;
  }
  const auto list = [](const void* address, std::optional<AccessList>& place) -> DWORD {
    place.reset();
    if (address == nullptr) return 0;
    place = ReadAccessList(address);
    return place ? 0 : kErrorInvalidAcl;
  };
  if ((information & kDaclSecurityInformation) != 0) {
    if (const DWORD error = list(dacl, descriptor.dacl)) return error;
    descriptor.control |= kDaclPresent;
    if ((information & kProtectedDaclSecurityInformation) != 0) {
      descriptor.control |= kDaclProtected;
    } else if ((information & kUnprotectedDaclSecurityInformation) != 0) {
      descriptor.control = static_cast<WORD>(descriptor.control & ~kDaclProtected);
    }
  }
  if ((information & kSaclSecurityInformation) != 0) {
    if (const DWORD error = list(sacl, descriptor.sacl)) return error;
    descriptor.control |= kSaclPresent;
  }
  return 0;
}

template <typename T>
void Append(std::vector<std::uint8_t>& bytes, const T& value) {
  const auto* const start = reinterpret_cast<const std::uint8_t*>(&value);
  bytes.insert(bytes.end(), start, start + sizeof value);
}

// A count and as many privileges: TOKEN_PRIVILEGES, and PRIVILEGE_SET with its control word before.
std::vector<std::uint8_t> PrivilegeRecord(const std::vector<std::pair<Privilege, DWORD>>& entries,
                                          std::optional<DWORD> control) {
  std::vector<std::uint8_t> bytes;
  Append(bytes, static_cast<DWORD>(entries.size()));
  if (control) Append(bytes, *control);
  for (const auto& [privilege, attributes] : entries) {
    Append(bytes, LUID_AND_ATTRIBUTES{LuidOf(privilege), attributes});
  }
  return bytes;
}

// Whether a text with its NUL goes into a buffer of so many units.
bool Fits(TextView text, LPCWSTR buffer, DWORD size) {
  return buffer != nullptr && size > text.size();
}

// Puts a text into a buffer that it fits into, and its length without the NUL into `size`.
void PutText(TextView text, LPWSTR buffer, DWORD& size) {
  CopyText(text, buffer, size);
  size = static_cast<DWORD>(text.size());
}

// What a buffer for a text must have.
DWORD UnitsOf(TextView text) { return static_cast<DWORD>(text.size() + 1); }

bool HasSoundLevels(std::span<const OBJECT_TYPE_LIST> types) {
  for (std::size_t index = 0; index < types.size(); ++index) {
    const WORD level = types[index].Level;
    if (index == 0 ? level != 0 : level == 0 || level > types[index - 1].Level + 1) return false;
  }
  return true;
}

}  // namespace

struct SimulatedSecurity::Target {
  // Holds what a path led to while it is worked on.
  std::shared_ptr<SecuredNode> node{};
  SecurityRef* place{};  // of an object that stands alone; it may hold none yet
  const GENERIC_MAPPING* mapping = &kFileMapping;
  // The code that the caller is refused this access with, or 0.
  std::function<DWORD(DWORD access)> check{};

  SecurityRef security() const { return node != nullptr ? node->security() : *place; }
};

BOOL SimulatedSecurity::GetFileSecurityW(LPCWSTR file_name, DWORD information, void* descriptor,
                                         DWORD length, DWORD* length_needed) {
  const TextView name = ViewOf(file_name);
  const Call call = session_.Begin("GetFileSecurityW", name);
  if (const DWORD fault = call.fault()) return Fail(fault);
  const Place place = Find(name, session_.estate);
  if (place.node == nullptr) return Fail(place.error);
  if (place.node->security_locked()) return Fail(kErrorSharingViolation);
  Target target;
  if (const DWORD error = FindNamedFile(name, target)) return Fail(error);
  if (const DWORD error = target.check(ReadingNeeds(information))) return Fail(error);
  return PutDescriptor(target.security()->descriptor(), information, descriptor, length,
                       length_needed);
}

BOOL SimulatedSecurity::GetKernelObjectSecurity(HANDLE handle, DWORD information, void* descriptor,
                                                DWORD length, DWORD* length_needed) {
  const Call call = session_.Begin("GetKernelObjectSecurity");
  if (const DWORD fault = call.fault()) return Fail(fault);
  const auto found = session_.files.find(ValueOf(handle));
  if (found == session_.files.end()) {
    session_.ledger.Misused(Resource::FileHandle, ValueOf(handle), "GetKernelObjectSecurity");
    return Fail(kErrorInvalidHandle);
  }
  const OpenFile& file = *found->second;
  if ((ReadingNeeds(information) & ~file.access) != 0) return Fail(kErrorAccessDenied);
  return PutDescriptor(file.node->security()->descriptor(), information, descriptor, length,
                       length_needed);
}

DWORD SimulatedSecurity::GetNamedSecurityInfoW(LPCWSTR object_name, DWORD object_type,
                                               DWORD information, void** owner, void** group,
                                               void** dacl, void** sacl, void** descriptor) {
  const TextView name = ViewOf(object_name);
  const Call call = session_.Begin("GetNamedSecurityInfoW", name);
  if (const DWORD fault = call.fault()) return fault;
  if (descriptor == nullptr) return kErrorInvalidParameter;
  Target target;
  if (const DWORD error = FindNamed(name, object_type, target)) return error;
  if (const DWORD error = target.check(ReadingNeeds(information))) return error;
  void* block = nullptr;
  if (const SecurityRef security = target.security()) {
    const std::vector<std::uint8_t> bytes = BytesOf(security->descriptor(), information);
    block = session_.AllocateLocal(bytes.size(), "GetNamedSecurityInfoW", ToUtf8(name));
    std::memcpy(block, bytes.data(), bytes.size());
  }
  *descriptor = block;
  const auto put = [&](void** place, std::size_t field) {
    if (place != nullptr) *place = block == nullptr ? nullptr : PartOf(block, field);
  };
  put(owner, kOwnerField);
  put(group, kGroupField);
  put(dacl, kDaclField);
  put(sacl, kSaclField);
  return 0;
}

DWORD SimulatedSecurity::SetNamedSecurityInfoW(LPCWSTR object_name, DWORD object_type,
                                               DWORD information, const void* owner,
                                               const void* group, const void* dacl,
                                               const void* sacl) {
  const TextView name = ViewOf(object_name);
  const Call call = session_.Begin("SetNamedSecurityInfoW", name);
  if (const DWORD fault = call.fault()) return fault;
  Target target;
  if (const DWORD error = FindNamed(name, object_type, target)) return error;
  if (const DWORD error = target.check(WritingNeeds(information))) return error;
  const SecurityRef before = target.security();
  SecurityDescriptor descriptor = before != nullptr ? before->descriptor() : SecurityDescriptor();
  if (const DWORD error = ReplaceParts(descriptor, session_.estate.token(), information, owner,
                                       group, dacl, sacl)) {
    return error;
  }
  if (target.node != nullptr) {
    if ((information & kDaclSecurityInformation) != 0) descriptor.control |= kDaclAutoInherited;
    target.node->Replace(std::move(descriptor));
    return 0;
  }
  if (descriptor.dacl) {
    for (Ace& ace : *descriptor.dacl) {
      if ((ace.flags & kInheritOnly) == 0) ace.mask = MapGeneric(ace.mask, *target.mapping);
    }
  }
  *target.place = SecurityBlock::Make(std::move(descriptor));
  return 0;
}

BOOL SimulatedSecurity::ConvertStringSecurityDescriptorToSecurityDescriptorW(
    LPCWSTR string_descriptor, DWORD revision, void** descriptor, DWORD* size) {
  constexpr std::string_view kName = "ConvertStringSecurityDescriptorToSecurityDescriptorW";
  const TextView text = ViewOf(string_descriptor);
  const Call call = session_.Begin(kName, text);
  if (const DWORD fault = call.fault()) return Fail(fault);
  if (string_descriptor == nullptr || descriptor == nullptr) return Fail(kErrorInvalidParameter);
  if (revision != kSddlRevision1) return Fail(kErrorUnknownRevision);
  DWORD error = 0;
  const auto parsed = ParseDescriptorText(text, session_.estate.domain(), error);
  if (!parsed) return Fail(error);
  const std::vector<std::uint8_t> bytes =
      BytesOf(*parsed, kOwnerSecurityInformation | kGroupSecurityInformation |
                           kDaclSecurityInformation | kSaclSecurityInformation);
  *descriptor = session_.AllocateLocal(bytes.size(), kName, ToUtf8(text));
  std::memcpy(*descriptor, bytes.data(), bytes.size());
  if (size != nullptr) *size = static_cast<DWORD>(bytes.size());
  return 1;
}

DWORD SimulatedSecurity::GetSecurityDescriptorLength(const void* descriptor) {
  const Call call = session_.BeginSafe("GetSecurityDescriptorLength");
  DWORD error = 0;
  const auto parsed = ReadSecurityDescriptor(descriptor, error);
  if (!parsed) return 0;
  return static_cast<DWORD>(BytesOf(*parsed, ~DWORD{0}).size());
}

BOOL SimulatedSecurity::AccessCheckByType(const void* descriptor, const void* self,
                                          HANDLE client_token, DWORD desired_access,
                                          OBJECT_TYPE_LIST* object_types, DWORD object_types_length,
                                          GENERIC_MAPPING* mapping, void* privileges,
                                          DWORD* privileges_length, DWORD* granted_access,
                                          BOOL* access_status) {
  const Call call = session_.Begin("AccessCheckByType");
  if (const DWORD fault = call.fault()) return Fail(fault);
  if (mapping == nullptr || privileges_length == nullptr || granted_access == nullptr ||
      access_status == nullptr) {
    return Fail(kErrorInvalidParameter);
  }
  if ((desired_access & kAllGeneric) != 0) return Fail(kErrorGenericNotMapped);
  const std::span<const OBJECT_TYPE_LIST> types(object_types, object_types_length);
  if (!HasSoundLevels(types)) return Fail(kErrorInvalidParameter);
  const OpenToken* const open = Lookup(client_token, "AccessCheckByType");
  if (open == nullptr) return Fail(kErrorInvalidHandle);
  if ((open->access & kTokenQuery) == 0) return Fail(kErrorAccessDenied);
  if (!open->is_for_impersonation) return Fail(kErrorNoImpersonationToken);
  DWORD error = 0;
  const auto parsed = ReadSecurityDescriptor(descriptor, error);
  if (!parsed) return Fail(error);
  if (parsed->owner.empty() || parsed->group.empty()) return Fail(kErrorInvalidSecurityDescriptor);
  const auto own = Sid::FromAddress(self);
  if (self != nullptr && !own) return Fail(kErrorInvalidSid);

  // Who asks for nothing is refused.
  const AccessCheckOutcome outcome = desired_access == 0
                                         ? AccessCheckOutcome{.error = kErrorAccessDenied}
                                         : CheckAccess(*parsed, *open->token, desired_access,
                                                       *mapping, types, own.value_or(Sid()));
  std::vector<std::pair<Privilege, DWORD>> used;
  for (const Privilege privilege : outcome.used) {
    constexpr DWORD kUsedForAccess = 0x80000000;
    used.emplace_back(privilege, kUsedForAccess);
  }
  const std::vector<std::uint8_t> record = PrivilegeRecord(used, kPrivilegeSetAllNecessary);
  // The published record has room for one privilege even where none was used.
  const std::size_t needed = std::max(record.size(), 8 + sizeof(LUID_AND_ATTRIBUTES));
  if (privileges == nullptr || *privileges_length < needed) {
    *privileges_length = static_cast<DWORD>(needed);
    return Fail(kErrorInsufficientBuffer);
  }
  std::memset(privileges, 0, needed);
  std::memcpy(privileges, record.data(), record.size());
  *privileges_length = static_cast<DWORD>(needed);
  *granted_access = outcome.granted;
  *access_status = outcome.is_allowed ? 1 : 0;
  SetLastPlatformError(outcome.error);
  return 1;
}

BOOL SimulatedSecurity::LookupAccountNameW(LPCWSTR system_name, LPCWSTR account_name, void* sid,
                                           DWORD* sid_size, LPWSTR domain, DWORD* domain_size,
                                           INT* use) {
  const TextView name = ViewOf(account_name);
  const Call call = session_.Begin("LookupAccountNameW", Noted(system_name, name));
  if (const DWORD fault = call.fault()) return Fail(fault);
  if (account_name == nullptr || sid_size == nullptr || domain_size == nullptr || use == nullptr) {
    return Fail(kErrorInvalidParameter);
  }
  Computer* const computer = session_.estate.ReachServer(system_name);
  if (computer == nullptr) return Fail(kErrorRpcServerUnavailable);
  const auto account = FindAccount(session_.estate, *computer, name);
  if (!account) return Fail(kErrorNoneMapped);
  const std::vector<std::uint8_t>& bytes = account->sid.bytes();
  if (sid == nullptr || *sid_size < bytes.size() || !Fits(account->domain, domain, *domain_size)) {
    *sid_size = static_cast<DWORD>(bytes.size());
    *domain_size = UnitsOf(account->domain);
    return Fail(kErrorInsufficientBuffer);
  }
  std::memcpy(sid, bytes.data(), bytes.size());
  *sid_size = static_cast<DWORD>(bytes.size());
  PutText(account->domain, domain, *domain_size);
  *use = static_cast<INT>(account->use);
  return 1;
}

BOOL SimulatedSecurity::LookupAccountSidW(LPCWSTR system_name, const void* sid, LPWSTR name,
                                          DWORD* name_size, LPWSTR domain, DWORD* domain_size,
                                          INT* use) {
  const auto parsed = sid == nullptr ? std::nullopt : Sid::FromAddress(sid);
  const Text noted = Noted(system_name, parsed ? parsed->ToText() : Text());
  const Call call = session_.Begin("LookupAccountSidW", noted);
  if (const DWORD fault = call.fault()) return Fail(fault);
  if (sid == nullptr || name_size == nullptr || domain_size == nullptr || use == nullptr) {
    return Fail(kErrorInvalidParameter);
  }
  if (!parsed) return Fail(kErrorInvalidSid);
  Computer* const computer = session_.estate.ReachServer(system_name);
  if (computer == nullptr) return Fail(kErrorRpcServerUnavailable);
  const auto account = FindAccount(session_.estate, *computer, *parsed);
  if (!account) return Fail(kErrorNoneMapped);
  if (!Fits(account->name, name, *name_size) || !Fits(account->domain, domain, *domain_size)) {
    *name_size = UnitsOf(account->name);
    *domain_size = UnitsOf(account->domain);
    return Fail(kErrorInsufficientBuffer);
  }
  PutText(account->name, name, *name_size);
  PutText(account->domain, domain, *domain_size);
  *use = static_cast<INT>(account->use);
  return 1;
}

HANDLE SimulatedSecurity::GetCurrentProcess() {
  const Call call = session_.Begin("GetCurrentProcess");
  if (const DWORD fault = call.fault()) return Fail(fault, HANDLE{});
  return kThisProcess;
}

BOOL SimulatedSecurity::OpenProcessToken(HANDLE process, DWORD desired_access, HANDLE* token) {
  const Call call = session_.Begin("OpenProcessToken");
  if (const DWORD fault = call.fault()) return Fail(fault);
  if (token == nullptr) return Fail(kErrorInvalidParameter);
  if (process != kThisProcess) return Fail(kErrorInvalidHandle);
  const bool takes_all = (desired_access & kMaximumAllowed) != 0;
  const DWORD access =
      takes_all ? kTokenMapping.GenericAll : MapGeneric(desired_access, kTokenMapping);
  if ((access & ~kTokenMapping.GenericAll) != 0) return Fail(kErrorAccessDenied);
  *token =
      Hand({.token = session_.estate.shared_token(), .access = access}, "OpenProcessToken", "");
  return 1;
}

BOOL SimulatedSecurity::LookupPrivilegeValueW(LPCWSTR system_name, LPCWSTR name, LUID* luid) {
  const Call call = session_.Begin("LookupPrivilegeValueW", ViewOf(name));
  if (const DWORD fault = call.fault()) return Fail(fault);
  const TextView system = ViewOf(system_name);
  if (!system.empty() && session_.estate.ReachComputer(system) == nullptr) {
    return Fail(kErrorRpcServerUnavailable);
  }
  const auto privilege = FindPrivilege(ViewOf(name));
  if (!privilege) return Fail(kErrorNoSuchPrivilege);
  *luid = LuidOf(*privilege);
  return 1;
}

BOOL SimulatedSecurity::AdjustTokenPrivileges(HANDLE token, BOOL disable_all,
                                              const TOKEN_PRIVILEGES* new_state,
                                              DWORD buffer_length, TOKEN_PRIVILEGES* previous_state,
                                              DWORD* return_length) {
  const Call call = session_.Begin("AdjustTokenPrivileges");
  if (const DWORD fault = call.fault()) return Fail(fault);
  const OpenToken* const open = Lookup(token, "AdjustTokenPrivileges");
  if (open == nullptr) return Fail(kErrorInvalidHandle);
  const DWORD needed_access =
      kTokenAdjustPrivileges | (previous_state != nullptr ? kTokenQuery : 0);
  if ((open->access & needed_access) != needed_access) return Fail(kErrorAccessDenied);
  if ((disable_all == 0 && new_state == nullptr) ||
      (previous_state != nullptr && return_length == nullptr)) {
    return Fail(kErrorInvalidParameter);
  }
  // What is wanted of which privilege; the last word counts.
  std::map<Privilege, DWORD> wanted;
  if (disable_all != 0) {
    for (const auto& [privilege, attributes] : open->token->privileges()) wanted[privilege] = 0;
  } else {
    const auto* const entries = reinterpret_cast<const std::uint8_t*>(new_state->Privileges);
    for (DWORD index = 0; index < new_state->PrivilegeCount; ++index) {
      LUID_AND_ATTRIBUTES entry;
      std::memcpy(&entry, entries + index * sizeof entry, sizeof entry);
      // No privilege has a number that needs the high half.
      const DWORD number = entry.Luid.HighPart == 0 ? entry.Luid.LowPart : 0;
      wanted[Privilege{number}] = entry.Attributes;
    }
  }
  bool lacks_some = false;
  std::vector<std::pair<Privilege, DWORD>> changed;
  const auto& held = open->token->privileges();
  for (const auto& [privilege, attributes] : wanted) {
    const auto now = held.find(privilege);
    if (now == held.end()) {
      lacks_some = true;
    } else if ((attributes & kSePrivilegeRemoved) != 0 ||
               ((attributes ^ now->second) & kSePrivilegeEnabled) != 0) {
      changed.emplace_back(privilege, now->second);
    }
  }
  if (previous_state != nullptr) {
    const std::vector<std::uint8_t> record = PrivilegeRecord(changed, std::nullopt);
    *return_length = static_cast<DWORD>(record.size());
    if (buffer_length < record.size()) return Fail(kErrorInsufficientBuffer);
    std::memcpy(previous_state, record.data(), record.size());
  }
  for (const auto& [privilege, before] : changed) {
    const DWORD attributes = wanted[privilege];
    if ((attributes & kSePrivilegeRemoved) != 0) {
      open->token->Remove(privilege);
    } else {
      open->token->Enable(privilege, (attributes & kSePrivilegeEnabled) != 0);
    }
  }
  SetLastPlatformError(lacks_some ? kErrorNotAllAssigned : kErrorSuccess);
  return 1;
}

HANDLE SimulatedSecurity::OpenClientToken(TextView user_sid, const std::vector<Text>& group_sids,
                                          const std::vector<Text>& privileges, DWORD access) {
  const auto sid = [](TextView text) {
    const auto parsed = Sid::FromText(text);
    if (!parsed) throw std::invalid_argument("is no SID");
    return *parsed;
  };
  std::vector<Sid> groups;
  for (const Text& group : group_sids) groups.push_back(sid(group));
  groups.push_back(EveryoneSid());
  auto token = std::make_shared<Token>(sid(user_sid), std::move(groups));
  for (const Text& name : privileges) {
    const auto privilege = FindPrivilege(name);
    if (!privilege) throw std::invalid_argument("is no privilege");
    token->SetPrivilege(*privilege, kSePrivilegeEnabled);
  }
  return Hand({.token = std::move(token), .access = access, .is_for_impersonation = true},
              "OpenClientToken", ToUtf8(user_sid));
}

DWORD SimulatedSecurity::FindNamed(TextView name, DWORD object_type, Target& target) {
  switch (object_type) {
    case kFileObject:
      return FindNamedFile(name, target);
    case kRegistryObject:
      return FindNamedKey(name, target);
    case kServiceObject:
    case kPrinterObject:
    case kShareObject:
      return FindNamedOnServer(name, object_type, target);
    case kDirectoryObject:
    case kWholeDirectoryObject: {
      NamedObject* const object = session_.estate.FindDirectoryObject(name);
      if (object == nullptr) return kErrorFileNotFound;
      Stand(*object, kDirectoryMapping, target);
      return 0;
    }
    default:
      return kErrorInvalidParameter;
  }
}

void SimulatedSecurity::Stand(NamedObject& object, const GENERIC_MAPPING& mapping, Target& target) {
  target.place = &object.security;
  target.mapping = &mapping;
  target.check = [this, &object, &mapping](DWORD access) {
    const Token& token = session_.estate.token();
    return CheckAccess(object.security->descriptor(), token, access, mapping).error;
  };
}

DWORD SimulatedSecurity::FindNamedFile(TextView name, Target& target) {
  Place place = Find(name, session_.estate);
  if (place.node == nullptr) return place.error;
  target.node = place.node;
  target.check = [this, place = std::move(place)](DWORD access) -> DWORD {
    const bool reads = (access & kReadControl) != 0;
    if (place.node->is_delete_pending() || (reads && place.node->security_denied())) {
      return kErrorAccessDenied;
    }
    return CheckFileAccess(session_.estate.token(), place, access).error;
  };
  return 0;
}

DWORD SimulatedSecurity::FindNamedKey(TextView name, Target& target) {
  Estate& estate = session_.estate;
  TextView server;
  TextView path;
  SplitServer(name, server, path);
  Computer* const computer = server.empty() ? &estate.local() : estate.ReachComputer(server);
  if (computer == nullptr) return kErrorRpcServerUnavailable;
  const bool is_local = computer == &estate.local();
  if (!is_local && computer->remote_registry() != RemoteRegistry::Allowed) {
    const bool is_denied = computer->remote_registry() == RemoteRegistry::Denied;
    return is_denied ? kErrorAccessDenied : kErrorRpcServerUnavailable;
  }
  TextView below;
  std::shared_ptr<RegistryNode> node;
  if (IsWithin(path, u"MACHINE", below)) {
    node = computer->local_machine_node();
  } else if (IsWithin(path, u"USERS", below)) {
    node = computer->users_node();
  } else if (is_local && IsWithin(path, u"CURRENT_USER", below)) {
    node = estate.current_user_node();
  } else if (is_local && IsWithin(path, u"CLASSES_ROOT", below)) {
    computer->local_machine().Key(u"SOFTWARE\\Classes");
    node = computer->local_machine().Find(u"SOFTWARE")->Find(u"Classes");
  } else {
    return kErrorInvalidParameter;
  }
  while (!below.empty()) {
    const std::size_t end = below.find(u'\\');
    node = node->Find(below.substr(0, end));
    if (node == nullptr) return kErrorFileNotFound;
    below = end == TextView::npos ? TextView() : below.substr(end + 1);
  }
  target.node = node;
  target.mapping = &kRegistryMapping;
  target.check = [this, node](DWORD access) {
    return CheckAccess(node->security()->descriptor(), session_.estate.token(), access,
                       kRegistryMapping)
        .error;
  };
  return 0;
}

DWORD SimulatedSecurity::FindNamedOnServer(TextView name, DWORD object_type, Target& target) {
  Estate& estate = session_.estate;
  TextView server;
  TextView own_name;
  SplitServer(name, server, own_name);
  Computer* const computer = server.empty() ? &estate.local() : estate.ReachComputer(server);
  if (computer == nullptr) return kErrorRpcServerUnavailable;
  if (object_type == kShareObject) {
    Share* const share = computer->FindShare(own_name);
    if (share == nullptr) return kErrorNetNameNotFound;
    target.place = &share->security;
    // A share's own list is about those who use it; it is administrators who look after it.
    target.check = [this, computer](DWORD) -> DWORD {
      return session_.estate.IsAdministrator(*computer) ? 0 : kErrorAccessDenied;
    };
    return 0;
  }
  if (object_type == kPrinterObject) {
    if (computer->spooler() == Spooler::Stopped) return kErrorRpcServerUnavailable;
    const bool lacks_its_server = name.starts_with(u"\\\\\\");
    Printer* const printer = lacks_its_server ? nullptr : computer->FindPrinter(own_name);
    if (printer == nullptr) return kErrorInvalidPrinterName;
    Stand(*printer, kPrinterMapping, target);
    return 0;
  }
  NamedObject* const service = computer->FindService(own_name);
  if (service == nullptr) return kErrorServiceDoesNotExist;
  Stand(*service, kServiceMapping, target);
  return 0;
}

HANDLE SimulatedSecurity::Hand(OpenToken token, std::string_view operation, std::string detail) {
  const std::uintptr_t value = session_.NewHandle();
  session_.tokens[value] = std::move(token);
  session_.ledger.Opened(Resource::TokenHandle, value, operation, std::move(detail));
  return HandleOf(value);
}

OpenToken* SimulatedSecurity::Lookup(HANDLE token, std::string_view operation) {
  const auto found = session_.tokens.find(ValueOf(token));
  if (found != session_.tokens.end()) return &found->second;
  session_.ledger.Misused(Resource::TokenHandle, ValueOf(token), operation);
  return nullptr;
}

}  // namespace veldmark::simulated
