#pragma once

#include "platform/operations/Security.h"

namespace veldmark {

/// The security of objects of the operating system that this process runs on.
class WindowsSecurity final : public Security {
 public:
  BOOL GetFileSecurityW(LPCWSTR file_name, DWORD information, void* descriptor, DWORD length,
                        DWORD* length_needed) override;
  BOOL GetKernelObjectSecurity(HANDLE handle, DWORD information, void* descriptor, DWORD length,
                               DWORD* length_needed) override;
  DWORD GetNamedSecurityInfoW(LPCWSTR object_name, DWORD object_type, DWORD information,
                              void** owner, void** group, void** dacl, void** sacl,
                              void** descriptor) override;
  DWORD SetNamedSecurityInfoW(LPCWSTR object_name, DWORD object_type, DWORD information,
                              const void* owner, const void* group, const void* dacl,
                              const void* sacl) override;
  BOOL ConvertStringSecurityDescriptorToSecurityDescriptorW(LPCWSTR string_descriptor,
                                                            DWORD revision, void** descriptor,
                                                            DWORD* size) override;
  DWORD GetSecurityDescriptorLength(const void* descriptor) override;
  BOOL AccessCheckByType(const void* descriptor, const void* self, HANDLE client_token,
                         DWORD desired_access, OBJECT_TYPE_LIST* object_types,
                         DWORD object_types_length, GENERIC_MAPPING* mapping, void* privileges,
                         DWORD* privileges_length, DWORD* granted_access,
                         BOOL* access_status) override;
  BOOL LookupAccountNameW(LPCWSTR system_name, LPCWSTR account_name, void* sid, DWORD* sid_size,
                          LPWSTR domain, DWORD* domain_size, INT* use) override;
  BOOL LookupAccountSidW(LPCWSTR system_name, const void* sid, LPWSTR name, DWORD* name_size,
                         LPWSTR domain, DWORD* domain_size, INT* use) override;
  HANDLE GetCurrentProcess() override;
  BOOL OpenProcessToken(HANDLE process, DWORD desired_access, HANDLE* token) override;
  BOOL LookupPrivilegeValueW(LPCWSTR system_name, LPCWSTR name, LUID* luid) override;
  BOOL AdjustTokenPrivileges(HANDLE token, BOOL disable_all, const TOKEN_PRIVILEGES* new_state,
                             DWORD buffer_length, TOKEN_PRIVILEGES* previous_state,
                             DWORD* return_length) override;
};

}  // namespace veldmark
