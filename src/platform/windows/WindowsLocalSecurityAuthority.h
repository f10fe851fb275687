#pragma once

#include "platform/operations/LocalSecurityAuthority.h"

namespace veldmark {

/// The rights of accounts.
class WindowsLocalSecurityAuthority final : public LocalSecurityAuthority {
 public:
  NTSTATUS LsaOpenPolicy(LSA_UNICODE_STRING* system_name, LSA_OBJECT_ATTRIBUTES* attributes,
                         DWORD desired_access, HANDLE* policy) override;
  NTSTATUS LsaEnumerateAccountsWithUserRight(HANDLE policy, LSA_UNICODE_STRING* right,
                                             void** buffer, DWORD* count) override;
  DWORD LsaNtStatusToWinError(NTSTATUS status) override;
  NTSTATUS LsaFreeMemory(void* buffer) override;
  NTSTATUS LsaClose(HANDLE policy) override;
};

}  // namespace veldmark
