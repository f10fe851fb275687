#include "network/CServerAccountPolicy.h"

#include "automation/Declare.h"

namespace veldmark {

const Interface& CServerAccountPolicy::Describe() {
  using Policy = CServerAccountPolicy;
  static const Interface table =
      Declare<Policy>(u"CServerAccountPolicy", u"The password and lockout rules of a computer.")
          .Get<&Policy::MinPasswordLength>(u"MinPasswordLength", u"Characters at the least.")
          .Get<&Policy::MaxPasswordAge>(u"MaxPasswordAge",
                                        u"Seconds until a password expires; -1 for never.")
          .Get<&Policy::MinPasswordAge>(u"MinPasswordAge",
                                        u"Seconds until a password may be changed again.")
          .Get<&Policy::ForceLogoff>(
              u"ForceLogoff", u"Seconds from the end of logon hours to logoff; -1 for never.")
          .Get<&Policy::PasswordHistoryLength>(u"PasswordHistoryLength",
                                               u"How many old passwords can't be used again.")
          .Get<&Policy::LockoutDuration>(u"LockoutDuration",
                                         u"Seconds for which an account is locked out.")
          .Get<&Policy::LockoutObservationWindow>(u"LockoutObservationWindow",
                                                  u"Seconds in which failed attempts are counted.")
          .Get<&Policy::LockoutThreshold>(u"LockoutThreshold",
                                          u"Failed attempts that lock an account; 0 for none.");
  return table;
}

}  // namespace veldmark
