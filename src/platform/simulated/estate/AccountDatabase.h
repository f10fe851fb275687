#pragma once

#include <map>
#include <optional>
#include <set>
#include <vector>

#include "automation/Secret.h"
#include "automation/Text.h"
#include "platform/operations/AccountManagement.h"
#include "platform/simulated/estate/Sid.h"

namespace veldmark::simulated {

// The numbers of accounts that every database has.
inline constexpr DWORD kAdministratorNumber = 500;
inline constexpr DWORD kGuestNumber = 501;
inline constexpr DWORD kDomainAdminsNumber = 512;
inline constexpr DWORD kDomainUsersNumber = 513;
inline constexpr DWORD kDomainGuestsNumber = 514;
inline constexpr DWORD kDomainComputersNumber = 515;
inline constexpr DWORD kDomainControllersNumber = 516;

// A user, or a computer that is in a domain. Times are seconds since 1970, UTC.
struct UserAccount {
  Text name;
  DWORD number = 0;  // the last of its SID
  DWORD primary_group = kDomainUsersNumber;
  DWORD flags = kAccountNormal;
  DWORD privilege = 1;  // 0 guest, 1 user, 2 administrator
  DWORD auth_flags = 0;
  Text full_name{};
  Text comment{};
  Text user_comment{};
  Text parameters{};
  Text workstations{};
  Text home_folder{};
  Text home_drive{};
  Text script{};
  Text profile{};
  Text logon_server = u"\\\\*";
  std::optional<DWORD> password_set{};  // without it the password's age reads 0
  DWORD last_logon = 0;
  DWORD last_logoff = 0;
  DWORD expires = kTimeForever;
  DWORD bad_passwords = 0;
  DWORD logons = 0;
  DWORD country_code = 0;
  DWORD code_page = 0;
  bool password_expired = false;
  std::optional<Secret> password{};

  bool is_machine() const {
    return (flags & (kAccountWorkstationTrust | kAccountServerTrust)) != 0;
  }
};

struct GlobalGroup {
  Text name;
  DWORD number = 0;
  Text comment{};
  DWORD attributes = 7;       // mandatory, enabled, enabled by default
  std::set<DWORD> members{};  // numbers of accounts of the same database
};

struct LocalGroup {
  Text name;
  Sid sid{};
  Text comment{};
  std::vector<Sid> members{};  // of any account, or of none
};

// Ages and durations are seconds; kTimeForever stands for none.
struct AccountPolicy {
  DWORD minimum_length = 0;
  DWORD maximum_age = 42 * 86400;
  DWORD minimum_age = 0;
  DWORD force_logoff = kTimeForever;
  DWORD history_length = 0;
  DWORD lockout_duration = 1800;
  DWORD lockout_window = 1800;
  DWORD lockout_threshold = 0;
};

// The accounts of a computer, or of a domain. The adding members throw std::invalid_argument for a
// name or number that is taken.
class AccountDatabase {
 public:
  // With the accounts that each has from the start: Administrator, Guest, the built-in local
  // groups, and the global groups of a domain.
  AccountDatabase(Text name, Sid sid, bool is_domain);

  // The computer's or domain's.
  const Text& name() const { return name_; }
  const Sid& sid() const { return sid_; }
  bool is_domain() const { return is_domain_; }

  UserAccount& AddUser(TextView name, std::optional<DWORD> number = std::nullopt);
  // The account of a computer: its name and a "$".
  UserAccount& AddMachine(TextView computer, bool is_controller = false);
  // The members are accounts of this database.
  GlobalGroup& AddGroup(TextView name, const std::vector<Text>& members = {},
                        std::optional<DWORD> number = std::nullopt);
  LocalGroup& AddLocalGroup(TextView name, std::vector<Sid> members = {},
                            std::optional<DWORD> number = std::nullopt);

  // By name, without regard to case; null if there is none.
  UserAccount* FindUser(TextView name);
  GlobalGroup* FindGroup(TextView name);
  LocalGroup* FindLocalGroup(TextView name);
  // The same; throws std::invalid_argument if there is none.
  UserAccount& user(TextView name);
  GlobalGroup& group(TextView name);
  LocalGroup& local_group(TextView name);
  // Of any account here, by name; throws std::invalid_argument if there is none.
  Sid SidOf(TextView name) const;

  // By name in upper case.
  const std::map<Text, UserAccount>& users() const { return users_; }
  const std::map<Text, GlobalGroup>& groups() const { return groups_; }
  const std::map<Text, LocalGroup>& local_groups() const { return local_groups_; }

  bool IsIn(const UserAccount& user, const GlobalGroup& group) const {
    return user.primary_group == group.number || group.members.contains(user.number);
  }

  AccountPolicy policy{};

 private:
  DWORD Number(std::optional<DWORD> wanted);
  void CheckFree(TextView name) const;
  void AddBuiltin(TextView name, DWORD number, TextView comment);

  Text name_;
  Sid sid_;
  bool is_domain_;
  DWORD next_number_;
  std::set<DWORD> numbers_;
  std::map<Text, UserAccount> users_;
  std::map<Text, GlobalGroup> groups_;
  std::map<Text, LocalGroup> local_groups_;
};

// A SID for a computer or domain that doesn't name its own; the same for a name each time.
Sid SidForName(TextView name);

}  // namespace veldmark::simulated
