#pragma once

#include <string>
#include <vector>

#include "platform/operations/Security.h"
#include "platform/simulated/families/Session.h"

namespace veldmark::simulated {

// Descriptors, access checks and the process token of an estate.
class SimulatedSecurity : public Security {
 public:
  explicit SimulatedSecurity(Session& session) : session_(session) {}

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

  // A token to impersonate a client with, as a server gets it of one that calls; closed with
  // FileSystem::CloseHandle. The client is in these groups and in Everyone, and has these
  // privileges enabled. Throws std::invalid_argument for what is no SID or privilege.
  HANDLE OpenClientToken(TextView user_sid, const std::vector<Text>& group_sids = {},
                         const std::vector<Text>& privileges = {},
                         DWORD access = kTokenQuery | kTokenAdjustPrivileges);

 private:
  // An object that a name stands for, ready to have its descriptor read or replaced.
  struct Target;

  // Finds a named object. Returns 0 or the code that the name is refused with.
  DWORD FindNamed(TextView name, DWORD object_type, Target& target);
  DWORD FindNamedFile(TextView name, Target& target);
  DWORD FindNamedKey(TextView name, Target& target);
  DWORD FindNamedOnServer(TextView name, DWORD object_type, Target& target);
  // Makes an object the target that inherits nothing.
  void Stand(NamedObject& object, const GENERIC_MAPPING& mapping, Target& target);

  HANDLE Hand(OpenToken token, std::string_view operation, std::string detail);
  OpenToken* Lookup(HANDLE token, std::string_view operation);

  Session& session_;
};

}  // namespace veldmark::simulated
