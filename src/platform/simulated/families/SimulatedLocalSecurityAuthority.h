#pragma once

#include <map>

#include "platform/operations/LocalSecurityAuthority.h"
#include "platform/simulated/families/Session.h"

namespace veldmark::simulated {

// Who holds which right on an estate's computers.
class SimulatedLocalSecurityAuthority final : public LocalSecurityAuthority {
 public:
  explicit SimulatedLocalSecurityAuthority(Session& session) : session_(session) {}

  NTSTATUS LsaOpenPolicy(LSA_UNICODE_STRING* system_name, LSA_OBJECT_ATTRIBUTES* attributes,
                         DWORD desired_access, HANDLE* policy) override;
  NTSTATUS LsaEnumerateAccountsWithUserRight(HANDLE policy, LSA_UNICODE_STRING* right,
                                             void** buffer, DWORD* count) override;
  DWORD LsaNtStatusToWinError(NTSTATUS status) override;
  NTSTATUS LsaFreeMemory(void* buffer) override;
  NTSTATUS LsaClose(HANDLE policy) override;

 private:
  struct OpenPolicy {
    Computer* computer;
    DWORD access;
  };

  Session& session_;
  std::map<std::uintptr_t, OpenPolicy> policies_;
};

}  // namespace veldmark::simulated
