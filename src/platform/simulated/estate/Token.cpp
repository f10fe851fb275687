#include "platform/simulated/estate/Token.h"

#include <algorithm>
#include <iterator>

#include "automation/CaseMapping.h"

namespace veldmark::simulated {
namespace {

constexpr DWORD kEnabledByDefault = 0x1;

// In the order of their numbers, which begin at 2.
constexpr TextView kNames[] = {u"SeCreateTokenPrivilege",
                               u"SeAssignPrimaryTokenPrivilege",
                               u"SeLockMemoryPrivilege",
                               u"SeIncreaseQuotaPrivilege",
                               u"SeMachineAccountPrivilege",
                               u"SeTcbPrivilege",
                               u"SeSecurityPrivilege",
                               u"SeTakeOwnershipPrivilege",
                               u"SeLoadDriverPrivilege",
                               u"SeSystemProfilePrivilege",
                               u"SeSystemtimePrivilege",
                               u"SeProfileSingleProcessPrivilege",
                               u"SeIncreaseBasePriorityPrivilege",
                               u"SeCreatePagefilePrivilege",
                               u"SeCreatePermanentPrivilege",
                               u"SeBackupPrivilege",
                               u"SeRestorePrivilege",
                               u"SeShutdownPrivilege",
                               u"SeDebugPrivilege",
                               u"SeAuditPrivilege",
                               u"SeSystemEnvironmentPrivilege",
                               u"SeChangeNotifyPrivilege",
                               u"SeRemoteShutdownPrivilege",
                               u"SeUndockPrivilege",
                               u"SeSyncAgentPrivilege",
                               u"SeEnableDelegationPrivilege",
                               u"SeManageVolumePrivilege",
                               u"SeImpersonatePrivilege",
                               u"SeCreateGlobalPrivilege",
                               u"SeTrustedCredManAccessPrivilege",
                               u"SeRelabelPrivilege",
                               u"SeIncreaseWorkingSetPrivilege",
                               u"SeTimeZonePrivilege",
                               u"SeCreateSymbolicLinkPrivilege"};
constexpr DWORD kFirstPrivilege = 2;

constexpr TextView kLogonRights[] = {u"SeInteractiveLogonRight",
                                     u"SeNetworkLogonRight",
                                     u"SeBatchLogonRight",
                                     u"SeServiceLogonRight",
                                     u"SeRemoteInteractiveLogonRight",
                                     u"SeDenyInteractiveLogonRight",
                                     u"SeDenyNetworkLogonRight",
                                     u"SeDenyBatchLogonRight",
                                     u"SeDenyServiceLogonRight",
                                     u"SeDenyRemoteInteractiveLogonRight"};

}  // namespace

std::optional<Privilege> FindPrivilege(TextView name) {
  const auto found = std::find_if(std::begin(kNames), std::end(kNames),
                                  [&](TextView candidate) { return EqualNoCase(candidate, name); });
  if (found == std::end(kNames)) return std::nullopt;
  return Privilege{kFirstPrivilege + static_cast<DWORD>(found - std::begin(kNames))};
}

bool IsUserRight(TextView name) {
  return FindPrivilege(name).has_value() ||
         std::any_of(std::begin(kLogonRights), std::end(kLogonRights),
                     [&](TextView right) { return EqualNoCase(right, name); });
}

LUID LuidOf(Privilege privilege) { return {static_cast<DWORD>(privilege), 0}; }

Token::Token(Sid user, std::vector<Sid> groups)
    : user_(std::move(user)), groups_(std::move(groups)) {
  SetPrivilege(Privilege::ChangeNotify, kSePrivilegeEnabled | kEnabledByDefault);
}

bool Token::Is(const Sid& sid) const {
  return sid == user_ || std::find(groups_.begin(), groups_.end(), sid) != groups_.end();
}

const Sid& Token::owner() const { return Is(AdministratorsSid()) ? AdministratorsSid() : user_; }

const Sid& Token::primary_group() const { return groups_.empty() ? user_ : groups_.front(); }

bool Token::IsEnabled(Privilege privilege) const {
  const auto found = privileges_.find(privilege);
  return found != privileges_.end() && (found->second & kSePrivilegeEnabled) != 0;
}

bool Token::Enable(Privilege privilege, bool enabled) {
  const auto found = privileges_.find(privilege);
  if (found == privileges_.end()) return false;
  found->second =
      enabled ? found->second | kSePrivilegeEnabled : found->second & ~kSePrivilegeEnabled;
  return true;
}

Token MakeAdministratorToken(Sid user) {
  constexpr DWORD kDomainUsers = 513;
  const Sid domain = user.Domain();
  const bool has_domain = !domain.empty() && domain.bytes().size() > 8 + 4;
  std::vector<Sid> groups = {EveryoneSid(), AdministratorsSid(), UsersSid(), InteractiveSid(),
                             AuthenticatedUsersSid()};
  if (has_domain) groups.insert(groups.begin(), domain.Account(kDomainUsers));
  Token token(std::move(user), std::move(groups));
  for (const TextView name :
       {u"SeIncreaseQuotaPrivilege", u"SeSecurityPrivilege", u"SeTakeOwnershipPrivilege",
        u"SeLoadDriverPrivilege", u"SeSystemProfilePrivilege", u"SeSystemtimePrivilege",
        u"SeBackupPrivilege", u"SeRestorePrivilege", u"SeShutdownPrivilege", u"SeDebugPrivilege",
        u"SeSystemEnvironmentPrivilege", u"SeRemoteShutdownPrivilege", u"SeManageVolumePrivilege",
        u"SeTimeZonePrivilege"}) {
    token.SetPrivilege(*FindPrivilege(name), 0);
  }
  return token;
}

}  // namespace veldmark::simulated
