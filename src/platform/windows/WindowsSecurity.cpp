#include "platform/windows/WindowsSecurity.h"

#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

#include "platform/windows/Recorded.h"
#include "platform/windows/Sdk.h"

namespace veldmark {
namespace {

::PSID SidOf(const void* sid) { return const_cast<void*>(sid); }
::PACL AclOf(const void* acl) { return static_cast<::PACL>(const_cast<void*>(acl)); }

}  // namespace

BOOL WindowsSecurity::GetFileSecurityW(LPCWSTR file_name, DWORD information, void* descriptor,
                                       DWORD length, DWORD* length_needed) {
  return Recorded([&] {
    return ::GetFileSecurityW(Sdk(file_name), information, descriptor, length, Sdk(length_needed));
  });
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
  return Recorded([&] {
    return ::GetNamedSecurityInfoW(const_cast<::LPWSTR>(Sdk(object_name)),
                                   static_cast<::SE_OBJECT_TYPE>(object_type), information, owner,
                                   group, reinterpret_cast<::PACL*>(dacl),
                                   reinterpret_cast<::PACL*>(sacl), descriptor);
  });
}

DWORD WindowsSecurity::SetNamedSecurityInfoW(LPCWSTR object_name, DWORD object_type,
                                             DWORD information, const void* owner,
                                             const void* group, const void* dacl,
                                             const void* sacl) {
  return Recorded([&] {
    return ::SetNamedSecurityInfoW(const_cast<::LPWSTR>(Sdk(object_name)),
                                   static_cast<::SE_OBJECT_TYPE>(object_type), information,
                                   SidOf(owner), SidOf(group), AclOf(dacl), AclOf(sacl));
  });
}

BOOL WindowsSecurity::ConvertStringSecurityDescriptorToSecurityDescriptorW(
    LPCWSTR string_descriptor, DWORD revision, void** descriptor, DWORD* size) {
  return Recorded([&] {
    return ::ConvertStringSecurityDescriptorToSecurityDescriptorW(Sdk(string_descriptor), revision,
                                                                  descriptor, Sdk(size));
  });
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
  return Recorded([&] {
    return ::AccessCheckByType(const_cast<void*>(descriptor), SidOf(self), client_token,
                               desired_access, Sdk(object_types), object_types_length, Sdk(mapping),
                               static_cast<::PPRIVILEGE_SET>(privileges), Sdk(privileges_length),
                               Sdk(granted_access), access_status);
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
  return Recorded([&] {
    return ::AdjustTokenPrivileges(token, disable_all, SdkReadOnly(new_state), buffer_length,
                                   Sdk(previous_state), Sdk(return_length));
  });
}

}  // namespace veldmark
