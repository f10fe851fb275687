#include "platform/windows/WindowsSecurity.h"

#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

#include <cstring>
#include <utility>

#include "platform/operations/ErrorCodes.h"
#include "platform/windows/Recorded.h"
#include "platform/windows/Sdk.h"
#include "platform/windows/WineDifferences.h"

namespace veldmark {
namespace {

::PSID SidOf(const void* sid) { return const_cast<void*>(sid); }
::PACL AclOf(const void* acl) { return static_cast<::PACL>(const_cast<void*>(acl)); }

BOOL Refuse(DWORD code) {
  SetLastPlatformError(code);
  return 0;
}

// Whether all entries of a list lie within it, which Wine's own test doesn't ask.
bool IsSound(const void* list) {
  ::ACL header;
  std::memcpy(&header, list, sizeof header);
  if (header.AclSize < sizeof header || !::IsValidAcl(AclOf(list))) return false;
  const auto* const bytes = static_cast<const ::BYTE*>(list);
  std::size_t offset = sizeof header;
  for (::WORD index = 0; index < header.AceCount; ++index) {
    ::ACE_HEADER ace;
    if (header.AclSize - offset < sizeof ace) return false;
    std::memcpy(&ace, bytes + offset, sizeof ace);
    if (ace.AceSize < sizeof ace || ace.AceSize > header.AclSize - offset) return false;
    offset += ace.AceSize;
  }
  return true;
}

// Wine stores parts that aren't sound, or reads past them.
DWORD PartsError(DWORD information, const void* owner, const void* group, const void* dacl,
                 const void* sacl) {
  if (!RunsUnderWine()) return kErrorSuccess;
  for (const auto& [bit, sid] :
       {std::pair(kOwnerSecurityInformation, owner), std::pair(kGroupSecurityInformation, group)}) {
    if ((information & bit) == 0) continue;
    if (sid == nullptr) return kErrorInvalidParameter;
    if (!::IsValidSid(SidOf(sid))) return kErrorInvalidSid;
  }
  for (const auto& [bit, list] :
       {std::pair(kDaclSecurityInformation, dacl), std::pair(kSaclSecurityInformation, sacl)}) {
    if ((information & bit) != 0 && list != nullptr && !IsSound(list)) {
      return kErrorInvalidAcl;
    }
  }
  return kErrorSuccess;
}

// What a privilege set needs in which no privilege was used.
constexpr DWORD kSmallestPrivilegeSet = sizeof(::PRIVILEGE_SET);

}  // namespace

BOOL WindowsSecurity::GetFileSecurityW(LPCWSTR file_name, DWORD information, void* descriptor,
                                       DWORD length, DWORD* length_needed) {
  const BOOL result = Recorded([&] {
    return ::GetFileSecurityW(Sdk(file_name), information, descriptor, length, Sdk(length_needed));
  });
  SetLastPlatformError(PublishedPathError(file_name, LastPlatformError()));
  return result;
}

BOOL WindowsSecurity::GetKernelObjectSecurity(HANDLE handle, DWORD information, void* descriptor,
                                              DWORD length, DWORD* length_needed) {
  return Recorded([&] {
    return ::GetKernelObjectSecurity(handle, information, descriptor, length, Sdk(length_needed));
  });
}

DWORD WindowsSecurity::GetNamedSecurityInfoW(LPCWSTR object_name, DWORD object_type,
                                             DWORD information, void** owner, void** group,
                                             void** dacl, void** sacl, void** descriptor) {
  std::u16string name;
  if (const DWORD error = PublishedObjectName(object_name, object_type, name)) return Answer(error);
  const DWORD result = Recorded([&] {
    return ::GetNamedSecurityInfoW(
        object_name == nullptr ? nullptr : const_cast<::LPWSTR>(Sdk(name.c_str())),
        static_cast<::SE_OBJECT_TYPE>(object_type), information, owner, group,
        reinterpret_cast<::PACL*>(dacl), reinterpret_cast<::PACL*>(sacl), descriptor);
  });
  // The pointers to parts that weren't asked for are left alone by the system.
  for (const auto& [bit, part] :
       {std::pair(kOwnerSecurityInformation, owner), std::pair(kGroupSecurityInformation, group),
        std::pair(kDaclSecurityInformation, dacl), std::pair(kSaclSecurityInformation, sacl)}) {
    if (result == 0 && part != nullptr && (information & bit) == 0) *part = nullptr;
  }
  return object_type == SE_FILE_OBJECT ? PublishedPathError(object_name, result) : result;
}

DWORD WindowsSecurity::SetNamedSecurityInfoW(LPCWSTR object_name, DWORD object_type,
                                             DWORD information, const void* owner,
                                             const void* group, const void* dacl,
                                             const void* sacl) {
  std::u16string name;
  if (const DWORD error = PublishedObjectName(object_name, object_type, name)) return Answer(error);
  if (const DWORD error = PartsError(information, owner, group, dacl, sacl)) return Answer(error);
  const DWORD result = Recorded([&] {
    return ::SetNamedSecurityInfoW(
        object_name == nullptr ? nullptr : const_cast<::LPWSTR>(Sdk(name.c_str())),
        static_cast<::SE_OBJECT_TYPE>(object_type), information, SidOf(owner), SidOf(group),
        AclOf(dacl), AclOf(sacl));
  });
  return object_type == SE_FILE_OBJECT ? PublishedPathError(object_name, result) : result;
}

BOOL WindowsSecurity::ConvertStringSecurityDescriptorToSecurityDescriptorW(
    LPCWSTR string_descriptor, DWORD revision, void** descriptor, DWORD* size) {
  const BOOL result = Recorded([&] {
    return ::ConvertStringSecurityDescriptorToSecurityDescriptorW(Sdk(string_descriptor), revision,
                                                                  descriptor, Sdk(size));
  });
  // Wine's code for the entries whose type it doesn't know, object entries among them.
  if (result == 0 && RunsUnderWine() && LastPlatformError() == RPC_S_INVALID_STRING_UUID) {
    SetLastPlatformError(kErrorInvalidAcl);
  }
  return result;
}

DWORD WindowsSecurity::GetSecurityDescriptorLength(const void* descriptor) {
  return Recorded([&] { return ::GetSecurityDescriptorLength(const_cast<void*>(descriptor)); });
}

BOOL WindowsSecurity::AccessCheckByType(const void* descriptor, const void* self,
                                        HANDLE client_token, DWORD desired_access,
                                        OBJECT_TYPE_LIST* object_types, DWORD object_types_length,
                                        GENERIC_MAPPING* mapping, void* privileges,
                                        DWORD* privileges_length, DWORD* granted_access,
                                        BOOL* access_status) {
  // Wine answers AccessCheckByType with a fixed failure. Without object types AccessCheck is the
  // same, but for the code that a missing privilege set has there.
  if (RunsUnderWine()) {
    if (object_types_length != 0) return Refuse(kErrorNotSupported);
    if (privileges == nullptr || *privileges_length < kSmallestPrivilegeSet) {
      *privileges_length = kSmallestPrivilegeSet;
      return Refuse(kErrorInsufficientBuffer);
    }
    return Recorded([&] {
      return ::AccessCheck(const_cast<void*>(descriptor), client_token, desired_access,
                           Sdk(mapping), static_cast<::PPRIVILEGE_SET>(privileges),
                           Sdk(privileges_length), Sdk(granted_access), access_status);
    });
  }
  return Recorded([&] {
    return ::AccessCheckByType(const_cast<void*>(descriptor), SidOf(self), client_token,
                               desired_access, Sdk(object_types), object_types_length, Sdk(mapping),
                               static_cast<::PPRIVILEGE_SET>(privileges), Sdk(privileges_length),
                               Sdk(granted_access), access_status);
  });
}

BOOL WindowsSecurity::LookupAccountNameW(LPCWSTR system_name, LPCWSTR account_name, void* sid,
                                         DWORD* sid_size, LPWSTR domain, DWORD* domain_size,
                                         INT* use) {
  return Recorded([&] {
    return ::LookupAccountNameW(Sdk(system_name), Sdk(account_name), sid, Sdk(sid_size),
                                Sdk(domain), Sdk(domain_size),
                                reinterpret_cast<::SID_NAME_USE*>(use));
  });
}

BOOL WindowsSecurity::LookupAccountSidW(LPCWSTR system_name, const void* sid, LPWSTR name,
                                        DWORD* name_size, LPWSTR domain, DWORD* domain_size,
                                        INT* use) {
  return Recorded([&] {
    return ::LookupAccountSidW(Sdk(system_name), SidOf(sid), Sdk(name), Sdk(name_size), Sdk(domain),
                               Sdk(domain_size), reinterpret_cast<::SID_NAME_USE*>(use));
  });
}

HANDLE WindowsSecurity::GetCurrentProcess() {
  return Recorded([&] { return ::GetCurrentProcess(); });
}

BOOL WindowsSecurity::OpenProcessToken(HANDLE process, DWORD desired_access, HANDLE* token) {
  return Recorded([&] { return ::OpenProcessToken(process, desired_access, token); });
}

BOOL WindowsSecurity::LookupPrivilegeValueW(LPCWSTR system_name, LPCWSTR name, LUID* luid) {
  return Recorded([&] { return ::LookupPrivilegeValueW(Sdk(system_name), Sdk(name), Sdk(luid)); });
}

BOOL WindowsSecurity::AdjustTokenPrivileges(HANDLE token, BOOL disable_all,
                                            const TOKEN_PRIVILEGES* new_state, DWORD buffer_length,
                                            TOKEN_PRIVILEGES* previous_state,
                                            DWORD* return_length) {
  if (RunsUnderWine()) {
    // Wine writes what fits and reports success, and crashes over a missing new state.
    if (disable_all == 0 && new_state == nullptr) return Refuse(kErrorInvalidParameter);
    if (previous_state != nullptr && disable_all == 0) {
      const auto room = static_cast<DWORD>(sizeof(DWORD) +
                                           new_state->PrivilegeCount * sizeof(LUID_AND_ATTRIBUTES));
      if (buffer_length < room) {
        if (return_length != nullptr) *return_length = room;
        return Refuse(kErrorInsufficientBuffer);
      }
    }
  }
  return Recorded([&] {
    return ::AdjustTokenPrivileges(token, disable_all, SdkReadOnly(new_state), buffer_length,
                                   Sdk(previous_state), Sdk(return_length));
  });
}

}  // namespace veldmark
