#include <algorithm>
#include <limits>

#include "accounts/AccountHome.h"
#include "accounts/AccountNames.h"
#include "accounts/CGroup.h"
#include "accounts/CGroups.h"
#include "accounts/CUser.h"
#include "accounts/CUsers.h"
#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "apartment/NetworkPages.h"
#include "collections/Deliver.h"
#include "network/CServer.h"
#include "platform/operations/AccountManagement.h"

namespace veldmark {
namespace {

constexpr DWORD kDisplayUserLevel = 1;
constexpr DWORD kFullLevel = 3;
constexpr DWORD kOpenLevel = 10;  // what everybody may read
constexpr DWORD kNameLevel = 0;
constexpr DWORD kMostEntries = std::numeric_limits<std::int32_t>::max();

AccountManagement& Accounts() { return Apartment::Current().platform.accounts; }
NetworkManagement& Network() { return Apartment::Current().platform.network_management; }

void Check(DWORD status) {
  if (status != kErrorSuccess) RaisePlatformError(static_cast<std::int32_t>(status));
}

Date DateOfLogon(DWORD seconds) {
  const auto since_1970 = static_cast<std::int32_t>(seconds);
  return since_1970 < 1 ? Date() : UTCDateToLocalDate(UnixTimeToDate(since_1970));
}

Date DateOfExpiry(DWORD seconds) {
  if (seconds == kTimeForever) return UnixTimeToDate(0);
  return UTCDateToLocalDate(UnixTimeToDate(static_cast<std::int32_t>(seconds)));
}

/// Fills a user from the platform's whole record of him.
void Fill(CUser& user, const USER_INFO_3& record) {
  user.UserName = TextAt(record.usri3_name);
  UserDetails& details = user.Details();
  details.full_name = TextAt(record.usri3_full_name);
  details.comment = TextAt(record.usri3_comment);
  details.user_comment = TextAt(record.usri3_usr_comment);
  details.home_dir = TextAt(record.usri3_home_dir);
  details.home_dir_drive = TextAt(record.usri3_home_dir_drive);
  details.script_path = TextAt(record.usri3_script_path);
  details.profile = TextAt(record.usri3_profile);
  details.password =
      record.usri3_password ? std::make_unique<Secret>(record.usri3_password) : nullptr;
  details.last_logon = DateOfLogon(record.usri3_last_logon);
  details.last_logoff = DateOfLogon(record.usri3_last_logoff);
  details.account_expires = DateOfExpiry(record.usri3_acct_expires);
  details.logons = static_cast<std::int32_t>(record.usri3_num_logons);
  details.password_age = static_cast<std::int32_t>(record.usri3_password_age);
  details.privilege = static_cast<std::int32_t>(record.usri3_priv);
  details.flags = static_cast<std::int32_t>(record.usri3_flags);
  details.password_expired = record.usri3_password_expired != 0;
  user.SetPopulated(true);
}

void Fill(CUser& user, const USER_INFO_10& record) {
  user.UserName = TextAt(record.usri10_name);
  UserDetails& details = user.Details();
  details.comment = TextAt(record.usri10_comment);
  details.user_comment = TextAt(record.usri10_usr_comment);
  details.full_name = TextAt(record.usri10_full_name);
  user.SetPopulated(true);
}

Ref<CUser> NewUserOf(const AccountHome& home) {
  auto user = Make<CUser>();
  user->UserType = home.is_controller ? UT_GlobalUser : UT_LocalUser;
  user->SetServerName(home.server_name);
  user->SetDomainName(home.domain_name);
  return user;
}

}  // namespace

Ref<CUsers> CSupport::GetUsers(CServer& server, bool async) {
  return ReRaising([&] {
    const Ref<CStatus> status(&StatusObject());
    const AccountHome home = AccountHomeOf(server);
    auto users = Make<CUsers>();
    const Variant server_name = ApiServerName(home.server_name);
    status->RaiseStatus([&] { return u"Retrieving Users from " + home.server_name; });
    const auto take = [&](const NET_DISPLAY_USER& record) {
      const Ref<CUser> user = NewUserOf(home);
      user->UserName = TextAt(record.usri1_name);
      UserDetails& details = user->Details();
      details.full_name = TextAt(record.usri1_full_name);
      details.comment = TextAt(record.usri1_comment);
      details.flags = static_cast<std::int32_t>(record.usri1_flags);
      if (!Deliver(*this, users, user, async)) return false;
      status->RaiseStatus([&] { return u"Retrieved User " + user->UserName; });
      return true;
    };
    for (DWORD index = 0;;) {
      DWORD entries_returned = 0;
      void* block = nullptr;
      const DWORD result = Accounts().NetQueryDisplayInformation(
          BufferText(server_name), kDisplayUserLevel, index, kMostEntries, kMaxPreferredLength,
          &entries_returned, &block);
      const NetworkBuffer buffer(Network(), static_cast<BYTE*>(block));
      if (result != kErrorMoreData) Check(result);
      const auto records = RecordsIn<NET_DISPLAY_USER>(buffer.Get(), entries_returned);
      for (const NET_DISPLAY_USER& record : records) {
        if (!take(record)) return users;
      }
      // A page that leads back to itself would never end.
      if (records.empty() || records.back().usri1_next_index == index) return users;
      index = records.back().usri1_next_index;
    }
  });
}

Ref<CUsers> CSupport::GetCompleteUserAccounts(CServer& server, bool async) {
  return ReRaising([&] {
    const Ref<CStatus> status(&StatusObject());
    const AccountHome home = AccountHomeOf(server);
    const Variant server_name = ApiServerName(home.server_name);
    status->RaiseStatus([&] { return u"Retrieving Users from " + home.server_name; });
    auto users = Make<CUsers>();
    WalkNetworkPages<USER_INFO_3, LastPage::kByStatus, DWORD>(
        [&](BYTE** buffer, DWORD* entries_read, DWORD* total_entries, DWORD* resume_handle) {
          return Accounts().NetUserEnum(BufferText(server_name), kFullLevel, kFilterNormalAccount,
                                        buffer, kMaxPreferredLength, entries_read, total_entries,
                                        resume_handle);
        },
        [&](const USER_INFO_3& record) {
          const Ref<CUser> user = NewUserOf(home);
          Fill(*user, record);
          if (!Deliver(*this, users, user, async)) return false;
          status->RaiseStatus([&] { return u"Retrieved User " + user->UserName; });
          return true;
        });
    return users;
  });
}

void CSupport::PopulateUser(CUser& user) {
  ReRaising([&] {
    const Ref<CUser> keep_alive(&user);
    const Ref<CStatus> status(&StatusObject());
    const Variant server = ApiServerName(user.ServerName());
    const Variant name = ApiStringBuffer(user.UserName);
    status->RaiseStatus([&] { return u"Retrieving Information for User " + user.UserName; });
    NetworkBuffer buffer(Network());
    DWORD level = kFullLevel;
    const auto ask = [&] {
      return Accounts().NetUserGetInfo(BufferText(server), BufferText(name), level,
                                       buffer.Receive());
    };
    DWORD result = ask();
    if (result == kErrorAccessDenied) {
      level = kOpenLevel;
      result = ask();
    }
    if (result == kErrorUserNotFound) {
      user.UserName = kAccountUnknown;
      user.UserType = UT_AccountUnknown;
    }
    Check(result);
    if (level == kFullLevel) {
      Fill(user, RecordOf<USER_INFO_3>(buffer));
    } else {
      Fill(user, RecordOf<USER_INFO_10>(buffer));
    }
  });
}

Ref<CGroups> CSupport::GetUserGroups(CUser& user, const Text& server_name, bool include_indirect) {
  return ReRaising([&] {
    const Ref<CUser> keep_alive(&user);
    const Ref<CStatus> status(&StatusObject());
    auto groups = Make<CGroups>();
    const UserTypeEnum user_type = user.UserType;
    const Text own_server = user.ServerName();
    const Variant server = ApiServerName(server_name.empty() ? own_server : server_name);
    const Variant name = ApiStringBuffer(user.UserName);
    status->RaiseStatus([&] { return u"Retrieving Groups for User " + user.UserName; });
    NetworkBuffer buffer(Network());
    DWORD entries_read = 0;
    DWORD total_entries = 0;
    if (user_type == UT_GlobalUser) {
      Check(Accounts().NetUserGetGroups(BufferText(server), BufferText(name), kNameLevel,
                                        buffer.Receive(), kMaxPreferredLength, &entries_read,
                                        &total_entries));
    } else if (user_type == UT_LocalUser) {
      Check(Accounts().NetUserGetLocalGroups(BufferText(server), BufferText(name), kNameLevel,
                                             include_indirect ? kIncludeIndirectGroups : 0,
                                             buffer.Receive(), kMaxPreferredLength, &entries_read,
                                             &total_entries));
    }
    const auto add = [&](const char16_t* group_name) {
      const auto group = Make<CGroup>();
      group->GroupName = TextAt(group_name);
      group->GroupType = static_cast<GroupTypeEnum>(user_type);
      group->ServerName = own_server;
      groups->Add(group.Get());
      status->RaiseStatus([&] { return u"Retrieved Group " + group->GroupName; });
    };
    // The total counts, and no more than what is there.
    const DWORD count = std::min(total_entries, entries_read);
    if (user_type == UT_GlobalUser) {
      for (const auto& record : RecordsIn<GROUP_USERS_INFO_0>(buffer.Get(), count)) {
        add(record.grui0_name);
      }
    } else {
      for (const auto& record : RecordsIn<LOCALGROUP_USERS_INFO_0>(buffer.Get(), count)) {
        add(record.lgrui0_name);
      }
    }
    return groups;
  });
}

}  // namespace veldmark
