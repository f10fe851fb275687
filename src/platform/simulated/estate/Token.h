#pragma once

#include <map>
#include <optional>
#include <vector>

#include "platform/operations/Security.h"
#include "platform/simulated/estate/Sid.h"

namespace veldmark::simulated {

// Privileges by the low part of their number, which is the same on every computer.
enum class Privilege : DWORD {
  Security = 8,
  TakeOwnership = 9,
  Backup = 17,
  Restore = 18,
  Shutdown = 19,
  Debug = 20,
  ChangeNotify = 23,
};

// By published name ("SeBackupPrivilege"), without regard to case.
std::optional<Privilege> FindPrivilege(TextView name);

// Whether a name is that of a privilege or of a right to log on.
bool IsUserRight(TextView name);

LUID LuidOf(Privilege privilege);

// Who somebody is and what he may do.
class Token {
 public:
  // The groups may repeat the user or each other.
  Token(Sid user, std::vector<Sid> groups);

  const Sid& user() const { return user_; }
  const std::vector<Sid>& groups() const { return groups_; }
  bool Is(const Sid& sid) const;
  // Who owns what he makes: the administrators if he is one, else himself.
  const Sid& owner() const;
  const Sid& primary_group() const;

  // kSePrivilege... bits by privilege; what isn't there can't be enabled.
  const std::map<Privilege, DWORD>& privileges() const { return privileges_; }
  bool IsEnabled(Privilege privilege) const;
  void SetPrivilege(Privilege privilege, DWORD attributes) { privileges_[privilege] = attributes; }
  void ClearPrivileges() { privileges_.clear(); }
  // Sets whether a privilege is enabled. False if the token lacks it.
  bool Enable(Privilege privilege, bool enabled);
  bool Remove(Privilege privilege) { return privileges_.erase(privilege) > 0; }

 private:
  Sid user_;
  std::vector<Sid> groups_;
  std::map<Privilege, DWORD> privileges_;
};

// The token that an administrator's program has: the usual groups, and the privileges that
// administrators hold, disabled but for SeChangeNotifyPrivilege.
Token MakeAdministratorToken(Sid user);

}  // namespace veldmark::simulated
