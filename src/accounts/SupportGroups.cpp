#include "accounts/AccountHome.h"
#include "accounts/AccountNames.h"
#include "accounts/CGroup.h"
#include "accounts/CGroups.h"
#include "accounts/CUser.h"
#include "accounts/CUsers.h"
#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/DebugLog.h"
#include "apartment/Errors.h"
#include "apartment/NetworkPages.h"
#include "collections/Deliver.h"
#include "network/CDomain.h"
#include "network/CServer.h"
#include "platform/operations/AccountManagement.h"

namespace veldmark {
namespace {

constexpr DWORD kNameLevel = 0;
constexpr DWORD kSidLevel = 0;
constexpr DWORD kGlobalGroupLevel = 2;
constexpr DWORD kLocalGroupLevel = 1;
constexpr char16_t kMachineAccountEnd = u'$';

AccountManagement& Accounts() { return Apartment::Current().platform.accounts; }

/// A line of the debug log, which is made only where there is one.
template <class MakeLine>
void Trace(MakeLine&& make_line) {
  if (Apartment::Current().debug) DebugLog(make_line());
}

/// A member whose account can't be told in full, such as a group of a domain without a reachable
/// controller: as much of it as its SID knows.
Ref<Object> IncompleteAccountOf(CSid& sid) {
  const SidTypeEnum type = sid.SIDType();
  if (type == SidTypeGroup || type == SidTypeAlias) {
    const auto group = Make<CGroup>();
    group->GroupName = sid.AccountName();
    group->GroupType = type == SidTypeGroup ? GT_GlobalGroup : GT_LocalGroup;
    group->DomainName = sid.AccountDomain();
    return group;
  }
  const auto user = Make<CUser>();
  user->UserName = kAccountUnknown;
  user->UserType = UT_AccountUnknown;
  return user;
}

/// The user or group that a member's SID stands for. One that can't be told doesn't end the walk.
Ref<Object> AccountOf(CSid& sid) {
  Ref<Object> account;
  if (Swallow([&] { account = sid.GetAccount(); })) return account;
  Err().Clear();
  return IncompleteAccountOf(sid);
}

}  // namespace

Ref<CGroups> CSupport::GetGlobalGroups(CDomain& domain, const Text& server_name, bool async) {
  return ReRaising([&] {
    const Ref<CStatus> status(&StatusObject());
    const Text domain_name = domain.DomainName;
    status->RaiseStatus([&] { return u"Retrieving Groups for Domain " + domain_name; });
    auto groups = Make<CGroups>();
    const Text server = server_name.empty() ? GetPDCName(domain_name, Text()) : server_name;
    const Variant server_buffer = ApiServerName(server);
    WalkNetworkPages<GROUP_INFO_0, UINT_PTR, LastPage::kByHandle>(
        {},
        [&](BYTE** buffer, auto... counts) {
          return Accounts().NetGroupEnum(BufferText(server_buffer), kNameLevel, buffer,
                                         kMaxPreferredLength, counts...);
        },
        [&](const GROUP_INFO_0& record) {
          const auto group = Make<CGroup>();
          group->GroupName = TextAt(record.grpi0_name);
          group->GroupType = GT_GlobalGroup;
          group->DomainName = domain_name;
          group->ServerName = server;
          if (!Deliver(*this, groups, group, async)) return false;
          status->RaiseStatus([&] { return u"Retrieved Group " + group->GroupName; });
          return true;
        });
    return groups;
  });
}

Ref<CGroups> CSupport::GetLocalGroups(CServer* server, bool async) {
  return ReRaising([&] {
    if (!server) {
      Trace([] {
        return TextView(u"The server object must be initialized before calling 'GetLocalGroups'");
      });
      Raise(runtime_error::kObjectNotSet);
    }
    const Ref<CServer> keep_alive(server);
    const Ref<CStatus> status(&StatusObject());
    const Text asked_server = server->ServerName;
    Trace([&] { return u"Retrieving local groups for server " + asked_server; });
    status->RaiseStatus([&] { return u"Retrieving Local Groups for Server " + asked_server; });
    auto groups = Make<CGroups>();
    const Variant server_buffer = ApiServerName(asked_server);
    const AccountHome home = AccountHomeOf(*server);
    Trace([&] { return u"\tServer is DC = " + ToText(Variant(home.is_controller)); });
    std::int32_t number = 0;
    WalkNetworkPages<LOCALGROUP_INFO_1, UINT_PTR, LastPage::kByHandle>(
        {},
        [&](BYTE** buffer, DWORD* entries_read, DWORD* total_entries, UINT_PTR* resume_handle) {
          const DWORD result = Accounts().NetLocalGroupEnum(
              BufferText(server_buffer), kLocalGroupLevel, buffer, kMaxPreferredLength,
              entries_read, total_entries, resume_handle);
          Trace([&] {
            return u"\tAPI call yielded " + ToText(*entries_read) + u" results...return status = " +
                   ToText(result);
          });
          if (result != kErrorSuccess && result != kErrorMoreData) {
            Trace([&] {
              return u"\tEncountered the following error: " +
                     GetAPIErrorText(static_cast<std::int32_t>(result)) + u" [" + ToText(result) +
                     u"]";
            });
          }
          return result;
        },
        [&](const LOCALGROUP_INFO_1& record) {
          ++number;
          Trace([&] { return u"\tProcessing entry #" + ToText(number); });
          const auto group = Make<CGroup>();
          group->GroupName = TextAt(record.lgrpi1_name);
          group->PutComment(TextAt(record.lgrpi1_comment));
          group->ServerName = home.server_name;
          group->DomainName = home.domain_name;
          group->SetPopulated(true);
          if (!Deliver(*this, groups, group, async)) return false;
          status->RaiseStatus([&] { return u"Retrieved Local Group " + group->GroupName; });
          Trace([&] { return u"\tRetrieved local group " + group->GroupName; });
          return true;
        });
    Trace([] { return TextView(u"Finished retrieving local groups"); });
    return groups;
  });
}

Ref<CUsers> CSupport::GetGlobalGroupUsers(CGroup& group, bool async) {
  return ReRaising([&] {
    const Ref<CGroup> keep_alive(&group);
    const Ref<CStatus> status(&StatusObject());
    status->RaiseStatus(
        [&] { return u"Retrieving Global Group Users for Group " + group.GroupName; });
    auto users = Make<CUsers>();
    if (group.GroupType != GT_GlobalGroup) return users;
    const Text domain_name = group.DomainName;
    const Text server =
        group.ServerName.empty() ? GetPDCName(domain_name, Text()) : group.ServerName;
    const Variant server_buffer = ApiServerName(server);
    const Variant group_name = ApiStringBuffer(group.GroupName);
    WalkNetworkPages<GROUP_USERS_INFO_0, UINT_PTR, LastPage::kByHandle>(
        {},
        [&](BYTE** buffer, auto... counts) {
          return Accounts().NetGroupGetUsers(BufferText(server_buffer), BufferText(group_name),
                                             kNameLevel, buffer, kMaxPreferredLength, counts...);
        },
        [&](const GROUP_USERS_INFO_0& record) {
          Text name = TextAt(record.grui0_name);
          if (name.ends_with(kMachineAccountEnd)) return true;
          const auto user = Make<CUser>();
          user->UserName = std::move(name);
          user->UserType = UT_GlobalUser;
          user->SetDomainName(domain_name);
          user->SetServerName(server);
          if (!Deliver(*this, users, user, async)) return false;
          status->RaiseStatus([&] { return u"Retrieved User " + user->UserName; });
          return true;
        });
    return users;
  });
}

void CSupport::GetLocalGroupMembers(CGroup& group, Ref<CGroups>& groups, Ref<CUsers>& users,
                                    bool async) {
  ReRaising([&] {
    const Ref<CGroup> keep_alive(&group);
    const Ref<CStatus> status(&StatusObject());
    status->RaiseStatus(
        [&] { return u"Retrieving Local Group Members for Group " + group.GroupName; });
    if (group.GroupType != GT_LocalGroup) return;
    const auto found_users = Make<CUsers>();
    const auto found_groups = Make<CGroups>();
    const Text server_name = group.ServerName;
    const Variant server_buffer = ApiServerName(server_name);
    const Variant group_name = ApiStringBuffer(group.GroupName);
    WalkNetworkPages<LOCALGROUP_MEMBERS_INFO_0, UINT_PTR, LastPage::kByHandle>(
        {},
        [&](BYTE** buffer, auto... counts) {
          return Accounts().NetLocalGroupGetMembers(BufferText(server_buffer),
                                                    BufferText(group_name), kSidLevel, buffer,
                                                    kMaxPreferredLength, counts...);
        },
        [&](const LOCALGROUP_MEMBERS_INFO_0& record) {
          const auto sid = Make<CSid>();
          sid->SetResidesOnServer(server_name);
          // A member without a sound SID is one without an account.
          const Bytes bytes = SidBytesAt(record.lgrmi0_sid);
          if (!bytes.empty()) sid->PutSidBuffer(CopySid(bytes));
          const Ref<Object> account = AccountOf(*sid);
          if (const Ref<CUser> user = dynamic_cast<CUser*>(account.Get())) {
            user->SetSid(sid);
            return Deliver(*this, found_users, user, async);
          }
          if (const Ref<CGroup> member = dynamic_cast<CGroup*>(account.Get())) {
            member->SetSid(sid);
            // Listeners hear of the group that is walked in the member's place.
            return Deliver(*this, found_groups, async ? keep_alive : member, async);
          }
          return true;
        });
    groups = found_groups;
    users = found_users;
  });
}

void CSupport::PopulateGroup(CGroup& group) {
  ReRaising([&] {
    const Ref<CGroup> keep_alive(&group);
    const Ref<CStatus> status(&StatusObject());
    status->RaiseStatus([&] { return u"Retrieving Information for Group " + group.GroupName; });
    const GroupTypeEnum type = group.GroupType;
    const Variant name = ApiStringBuffer(group.GroupName);
    NetworkBuffer buffer(Apartment::Current().platform.network_management);
    const auto check = [](DWORD result) {
      if (result != kErrorSuccess) RaisePlatformError(static_cast<std::int32_t>(result));
    };
    if (type == GT_GlobalGroup) {
      const Variant server = ApiServerName(ControllerByNeighbourhood(group.DomainName));
      check(Accounts().NetGroupGetInfo(BufferText(server), BufferText(name), kGlobalGroupLevel,
                                       buffer.Receive()));
      const auto& record = RecordOf<GROUP_INFO_2>(buffer);
      group.GroupName = TextAt(record.grpi2_name);
      group.PutComment(TextAt(record.grpi2_comment));
      group.PutGroupId(static_cast<std::int32_t>(record.grpi2_group_id));
      group.PutAttributes(static_cast<std::int32_t>(record.grpi2_attributes));
    } else if (type == GT_LocalGroup) {
      const Variant server = ApiServerName(group.ServerName);
      check(Accounts().NetLocalGroupGetInfo(BufferText(server), BufferText(name), kLocalGroupLevel,
                                            buffer.Receive()));
      const auto& record = RecordOf<LOCALGROUP_INFO_1>(buffer);
      group.GroupName = TextAt(record.lgrpi1_name);
      group.PutComment(TextAt(record.lgrpi1_comment));
    }
    group.SetPopulated(true);
  });
}

}  // namespace veldmark
