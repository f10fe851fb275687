#include "accounts/CUser.h"

#include "accounts/AccountNames.h"
#include "accounts/CGroups.h"
#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "automation/Declare.h"
#include "platform/operations/AccountManagement.h"
#include "platform/operations/ErrorCodes.h"

namespace veldmark {
namespace {

constexpr TextView kClassName = u"CUser";
constexpr DWORD kPasswordLevel = 1003;

}  // namespace

const Interface& CUser::Describe() {
  static const Interface table =
      Declare<CUser>(u"CUser", u"A user account of a computer or domain.")
          .Method<&CUser::GetGroupsOnServer>(
              u"GetGroupsOnServer",
              u"The groups that the user is in on a server, those within other groups too if asked "
              u"for a local user.",
              {u"ServerName", {u"IncludeIndirectGroupMemberships", false}})
          .Remark(
              u"A user of a computer has local groups, one of a domain global ones. They "
              u"carry the account's own server, also where another one was asked.")
          .Method<&CUser::GetGroups>(u"GetGroups",
                                     u"The groups that the user is in on the account's own server.")
          .Method<&CUser::GetSid>(u"GetSid", u"The user's security identifier.")
          .Stored<&CUser::UserName>(u"UserName",
                                    u"The name; \"(Account Unknown)\" once there is no such user.")
          .Stored<&CUser::UserType>(u"UserType", u"Whether computer or domain holds the account.")
          .Get<&CUser::FullName>(u"FullName", u"The full name.")
          .Get<&CUser::Password>(u"Password", u"Empty: no computer tells a password.")
          .Get<&CUser::Comment>(u"Comment", u"The administrator's comment; may fetch.")
          .Remark(
              u"The first property that fetches reads all of them in one call. Who may not "
              u"read everything gets full name and comments, and the rest empty or 0. Raises "
              u"2221 where there is no such user; UserName then is \"(Account Unknown)\" and "
              u"stays so.")
          .Get<&CUser::UsrComment>(u"UsrComment", u"The user's own comment; may fetch.")
          .Get<&CUser::HomeDir>(u"HomeDir", u"The home folder; may fetch.")
          .Get<&CUser::ScriptPath>(u"ScriptPath", u"The logon script; may fetch.")
          .Get<&CUser::LastLogon>(u"LastLogon", u"Local time; 0 for never. May fetch.")
          .Get<&CUser::LastLogoff>(u"LastLogoff", u"Local time; 0 for unknown. May fetch.")
          .Get<&CUser::AccountExpires>(u"AccountExpires", u"Local time; 0 for never. May fetch.")
          .Get<&CUser::ProfilePath>(u"ProfilePath", u"The folder of the profile; may fetch.")
          .Get<&CUser::HomePathDriveLetter>(u"HomePathDriveLetter",
                                            u"The drive that the home folder gets; may fetch.")
          .Get<&CUser::PasswordExpired>(u"PasswordExpired",
                                        u"True for a password that has expired; may fetch.")
          .Get<&CUser::NumLogons>(u"NumLogons", u"How often the user logged on; may fetch.")
          .Get<&CUser::AccountDisabled>(u"AccountDisabled",
                                        u"True for an account that is turned off; may fetch.")
          .Get<&CUser::AccountLocked>(u"AccountLocked",
                                      u"True for an account locked by wrong passwords; may fetch.")
          .Get<&CUser::PasswordNoChange>(u"PasswordNoChange",
                                         u"True if the user can't change the password; may fetch.")
          .Get<&CUser::PasswordNoExpire>(u"PasswordNoExpire",
                                         u"True for a password that never expires; may fetch.")
          .Get<&CUser::ServerName>(u"ServerName", u"The computer that holds the account.")
          .Get<&CUser::DomainName>(u"DomainName",
                                   u"The account's domain; empty for one of a computer.")
          .Get<&CUser::AccountDisplayName>(
              u"AccountDisplayName",
              u"The name with its computer or domain, \"\\\\SRV\\ann\" or \"CORP\\ann\".")
          .Method<&CUser::SetPassword>(u"SetPassword", u"Gives the user a new password.",
                                       {u"NewPassword"})
          .Remark(
              u"No old password is asked for, so that what the user encrypted under it can be "
              u"lost to him. Raises 5 for who may not, 2245 for a password against the rules "
              u"and 2221 where there is no such user.")
          .Get<&CUser::PasswordAge>(u"PasswordAge",
                                    u"Seconds since the password was changed; may fetch.");
  return table;
}

Ref<CGroups> CUser::GetGroupsOnServer(const Text& server_name, bool include_indirect) {
  return ReRaisingAs(kClassName,
                     [&] { return Engine().GetUserGroups(*this, server_name, include_indirect); });
}

Ref<CGroups> CUser::GetGroups() {
  return ReRaisingAs(kClassName, [&] { return Engine().GetUserGroups(*this, Text(), false); });
}

Ref<CSid> CUser::GetSid() {
  if (sid_) return sid_;
  Ref<CSid> sid;
  Swallow([&] {
    sid = Make<CSid>();
    switch (UserType) {
      case UT_GlobalUser:
        sid->SetResidesOnServer(server_name_);
        sid->ResolveFromAccount(domain_name_, UserName);
        break;
      case UT_LocalUser:
        sid->SetResidesOnServer(server_name_);
        sid->ResolveFromAccount(server_name_, UserName);
        break;
      case UT_AccountUnknown:
        sid->SetResidesOnServer(server_name_);
        break;
    }
  });
  return sid;
}

Text CUser::Password() {
  const Ref<CUser> keep_alive(this);
  Fetch();
  return details_.password ? Text(details_.password->c_str()) : Text();
}

bool CUser::AccountDisabled() { return HasFlag(kAccountDisabled); }
bool CUser::AccountLocked() { return HasFlag(kAccountLockout); }
bool CUser::PasswordNoChange() { return HasFlag(kAccountPasswordCantChange); }
bool CUser::PasswordNoExpire() { return HasFlag(kAccountDontExpirePassword); }

Text CUser::AccountDisplayName() const {
  switch (UserType) {
    case UT_LocalUser:
      return LocalDisplayName(server_name_, UserName);
    case UT_GlobalUser:
      return GlobalDisplayName(domain_name_, UserName);
    default:
      return UserName;
  }
}

bool CUser::SetPassword(const Secret& new_password) {
  return ReRaisingAs(kClassName, [&] {
    const Text server = u"\\\\" + server_name_;
    // The platform only reads it.
    const USER_INFO_1003 record{const_cast<LPWSTR>(new_password.c_str())};
    DWORD parameter_error = 0;
    const DWORD status = Apartment::Current().platform.accounts.NetUserSetInfo(
        server.c_str(), UserName.c_str(), kPasswordLevel, reinterpret_cast<const BYTE*>(&record),
        &parameter_error);
    if (status != kErrorSuccess) RaisePlatformError(static_cast<std::int32_t>(status));
    return true;
  });
}

void CUser::Fetch() {
  if (!populated_) Engine().PopulateUser(*this);
}

bool CUser::HasFlag(std::int32_t flag) { return (Fetched(&UserDetails::flags) & flag) == flag; }

}  // namespace veldmark
