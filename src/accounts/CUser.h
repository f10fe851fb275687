#pragma once

#include <memory>
#include <utility>

#include "accounts/UserType.h"
#include "apartment/Counted.h"
#include "automation/Object.h"
#include "automation/Secret.h"
#include "automation/Text.h"
#include "automation/Values.h"
#include "security/CSid.h"

namespace veldmark {

class CGroups;

/// What the platform tells about a user account: the fields of its record USER_INFO_3.
struct UserDetails {
  Text full_name;
  Text comment;
  Text user_comment;
  Text home_dir;
  Text home_dir_drive;
  Text script_path;
  Text profile;
  std::unique_ptr<Secret> password;  ///< null where the platform tells none, as it does
  Date last_logon;                   ///< dates are local time; date 0 stands for never
  Date last_logoff;
  Date account_expires;
  std::int32_t logons = 0;
  std::int32_t password_age = 0;  ///< seconds
  std::int32_t privilege = 0;
  std::int32_t flags = 0;  ///< kAccount...
  bool password_expired = false;
};

/// A user account of a computer or domain.
///
/// A listed one knows its name, full name, server and domain. The first read of anything else
/// fetches it all by `NetUserGetInfo` (level 3, or 10 where that is denied), once: then these
/// members raise the platform's error, and the next read tries again. 2221, there is no such user,
/// also turns the object into one of that type named "(Account Unknown)". After a fetch at level 10
/// only the comments are told; the other members keep what they had.
class CUser : public Exported<CUser>, Counted<Counter::kUser> {
 public:
  static const Interface& Describe();

  /// The groups that the user is in on a server, his own where the name is empty; see
  /// `CSupport::GetUserGroups`.
  Ref<CGroups> GetGroupsOnServer(const Text& server_name, bool include_indirect);
  Ref<CGroups> GetGroups();
  /// The one that a member walk stored, or else looked up anew each time; it stays without a SID
  /// where the account isn't found. Never raises.
  Ref<CSid> GetSid();

  Text UserName;
  UserTypeEnum UserType = UT_LocalUser;

  const Text& FullName() const { return details_.full_name; }
  /// Empty: the platform tells no password.
  Text Password();
  Text Comment() { return Fetched(&UserDetails::comment); }
  Text UsrComment() { return Fetched(&UserDetails::user_comment); }
  Text HomeDir() { return Fetched(&UserDetails::home_dir); }
  Text ScriptPath() { return Fetched(&UserDetails::script_path); }
  /// Local time; date 0 for a user who never logged on.
  Date LastLogon() { return Fetched(&UserDetails::last_logon); }
  Date LastLogoff() { return Fetched(&UserDetails::last_logoff); }
  /// Local time; date 0 for an account that never expires.
  Date AccountExpires() { return Fetched(&UserDetails::account_expires); }
  Text ProfilePath() { return Fetched(&UserDetails::profile); }
  Text HomePathDriveLetter() { return Fetched(&UserDetails::home_dir_drive); }
  bool PasswordExpired() { return Fetched(&UserDetails::password_expired); }
  std::int32_t NumLogons() { return Fetched(&UserDetails::logons); }
  bool AccountDisabled();
  bool AccountLocked();
  bool PasswordNoChange();
  bool PasswordNoExpire();
  /// The computer that holds the account, without "\\" before it unless a caller gave it so.
  const Text& ServerName() const { return server_name_; }
  /// Empty for an account of a computer.
  const Text& DomainName() const { return domain_name_; }
  /// "\\SRV\ann" or "CORP\ann"; the name alone without a domain or an account.
  Text AccountDisplayName() const;
  /// Gives the user a new password, by `NetUserSetInfo` at level 1003. Raises the platform's error,
  /// 2245 where the policy refuses it.
  bool SetPassword(const Secret& new_password);
  /// Seconds since the password was changed.
  std::int32_t PasswordAge() { return Fetched(&UserDetails::password_age); }

  /// For the library's own use: fetches as the members above do.
  std::int32_t Privilege() { return Fetched(&UserDetails::privilege); }
  std::int32_t Flags() const { return details_.flags; }
  /// The fields as they stand, without a fetch.
  UserDetails& Details() { return details_; }
  void SetPopulated(bool populated) { populated_ = populated; }
  void SetServerName(Text server_name) { server_name_ = std::move(server_name); }
  void SetDomainName(Text domain_name) { domain_name_ = std::move(domain_name); }
  void SetSid(Ref<CSid> sid) { sid_ = std::move(sid); }

 private:
  void Fetch();
  bool HasFlag(std::int32_t flag);
  template <class Value>
  Value Fetched(Value UserDetails::*field) {
    // A listener of the fetch's status may let go of the user.
    const Ref<CUser> keep_alive(this);
    Fetch();
    return details_.*field;
  }

  UserDetails details_;
  Text server_name_;
  Text domain_name_;
  Ref<CSid> sid_;
  bool populated_ = false;
};

}  // namespace veldmark
