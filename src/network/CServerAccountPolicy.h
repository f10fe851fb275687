#pragma once

#include "automation/Object.h"
#include "platform/operations/AccountManagement.h"

namespace veldmark {

/// The password and lockout rules of a computer or domain, as the platform gives them: -1 stands
/// for no limit.
class CServerAccountPolicy : public Exported<CServerAccountPolicy> {
 public:
  static const Interface& Describe();

  std::int32_t MinPasswordLength() const { return Value(password_.usrmod0_min_passwd_len); }
  std::int32_t MaxPasswordAge() const { return Value(password_.usrmod0_max_passwd_age); }
  std::int32_t MinPasswordAge() const { return Value(password_.usrmod0_min_passwd_age); }
  std::int32_t ForceLogoff() const { return Value(password_.usrmod0_force_logoff); }
  std::int32_t PasswordHistoryLength() const { return Value(password_.usrmod0_password_hist_len); }
  std::int32_t LockoutDuration() const { return Value(lockout_.usrmod3_lockout_duration); }
  std::int32_t LockoutObservationWindow() const {
    return Value(lockout_.usrmod3_lockout_observation_window);
  }
  std::int32_t LockoutThreshold() const { return Value(lockout_.usrmod3_lockout_threshold); }

  void SetPassword(const USER_MODALS_INFO_0& record) { password_ = record; }
  void SetLockout(const USER_MODALS_INFO_3& record) { lockout_ = record; }

 private:
  static std::int32_t Value(DWORD value) { return static_cast<std::int32_t>(value); }

  USER_MODALS_INFO_0 password_{};
  USER_MODALS_INFO_3 lockout_{};
};

}  // namespace veldmark
