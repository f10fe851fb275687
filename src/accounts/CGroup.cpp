#include "accounts/CGroup.h"

#include "accounts/AccountNames.h"
#include "accounts/CGroups.h"
#include "accounts/CUser.h"
#include "accounts/CUsers.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "automation/Declare.h"
#include "platform/operations/AccountManagement.h"
#include "platform/operations/ErrorCodes.h"

namespace veldmark {
namespace {

constexpr TextView kClassName = u"CGroup";
constexpr std::int32_t kUserFoundEvent = 1;
constexpr std::int32_t kGroupFoundEvent = 2;
constexpr DWORD kNameAndCommentLevel = 1;

const EventInterface& DescribeGroupEvents() {
  static const EventInterface table =
      DeclareEvents(u"__CGroup", u"Members that a walk finds, one by one.")
          .Event<Ref<CUser>, bool&>(u"UserFound", u"A user; Cancel ends the walk.",
                                    {u"oUser", u"Cancel"})
          .Event<Ref<CGroup>, bool&>(
              u"GroupFound",
              u"A group. For a group within a group it is the one that is walked. Cancel ends the "
              u"walk.",
              {u"oGroup", u"Cancel"});
  return table;
}

}  // namespace

const Interface& CGroup::Describe() {
  static const Interface table =
      Declare<CGroup>(u"CGroup", u"A group of a computer or domain, or a well-known one.")
          .Method<&CGroup::GetUsers>(u"GetUsers",
                                     u"The users in the group; Nothing for a well-known group.")
          .Method<&CGroup::GetGroups>(u"GetGroups",
                                      u"The groups in a local group; Nothing for another group.")
          .Method<&CGroup::GetGroupMembers>(u"GetGroupMembers",
                                            u"Groups and users in the group in one walk.",
                                            {u"Groups", u"Users"})
          .Remark(
              u"Its results are arguments by reference, which JScript doesn't have. A "
              u"well-known group leaves both as they are, a global one makes Groups Nothing "
              u"and shows no computers. A member of a local group that can't be told is a "
              u"user \"(Account Unknown)\".")
          .Method<&CGroup::GetSid>(u"GetSid", u"The group's security identifier.")
          .Stored<&CGroup::GroupName>(u"GroupName", u"The name.")
          .Property<&CGroup::Comment, &CGroup::PutComment>(
              u"Comment", u"The comment; the first read may fetch, and Update writes it.")
          .Property<&CGroup::GroupId, &CGroup::PutGroupId>(
              u"GroupId", u"A global group's relative identifier; the first read may fetch.")
          .Property<&CGroup::Attributes, &CGroup::PutAttributes>(
              u"Attributes", u"A global group's attributes; the first read may fetch.")
          .Stored<&CGroup::GroupType>(u"GroupType", u"Whether it is local, global or well-known.")
          .Stored<&CGroup::DomainName>(u"DomainName",
                                       u"The group's domain; empty for one of a computer.")
          .Stored<&CGroup::ServerName>(u"ServerName", u"The computer to ask about the group.")
          .Stored<&CGroup::WellKnownGroupType>(u"WellKnownGroupType",
                                               u"Which group a well-known one is.")
          .Get<&CGroup::AccountDisplayName>(
              u"AccountDisplayName",
              u"The name with its computer or domain, \"\\\\SRV\\Staff\" or \"CORP\\Staff\".")
          .Method<&CGroup::Update>(u"Update", u"Writes the comment, or makes a group that is new.")
          .Remark(
              u"A group of CreateLocalGroup stays a new one: Update once more raises 1379. "
              u"Raises 5 for who may not, and 1376 or 2220 where a local or global group is "
              u"gone.")
          .Property<&CGroup::AsyncFetch, &CGroup::PutAsyncFetch>(
              u"AsyncFetch", u"True to have members delivered by events.")
          .Remark(
              u"While it is on, the lists stay empty. Cancel ends the walk. An object also "
              u"gets the events of what any other one of its thread fetches so.")
          .Events(DescribeGroupEvents());
  return table;
}

Ref<CGroup> CGroup::CreateLocal(Text group_name, Text server_name) {
  auto group = Make<CGroup>();
  group->GroupName = std::move(group_name);
  group->ServerName = std::move(server_name);
  group->GroupType = GT_LocalGroup;
  group->is_new_ = true;
  group->populated_ = true;
  return group;
}

Ref<CUsers> CGroup::GetUsers() {
  return ReRaisingAs(kClassName, [&] {
    Ref<CGroups> groups;
    Ref<CUsers> users;
    GetGroupMembers(groups, users);
    return users;
  });
}

Ref<CGroups> CGroup::GetGroups() {
  return ReRaisingAs(kClassName, [&] {
    Ref<CGroups> groups;
    Ref<CUsers> users;
    GetGroupMembers(groups, users);
    return groups;
  });
}

Variant CGroup::GetGroupMembers(Ref<CGroups>& groups, Ref<CUsers>& users) {
  const Ref<CGroup> keep_alive(this);
  return ReRaisingAs(kClassName, [&] {
    CSupport& engine = subscribed_engine() ? *subscribed_engine() : Engine();
    if (GroupType == GT_GlobalGroup) {
      users = engine.GetGlobalGroupUsers(*this, AsyncFetch());
      groups = nullptr;
    } else if (GroupType == GT_LocalGroup) {
      engine.GetLocalGroupMembers(*this, groups, users, AsyncFetch());
    }
    return Variant();
  });
}

Ref<CSid> CGroup::GetSid() {
  if (sid_) return sid_;
  Ref<CSid> sid;
  Swallow([&] {
    sid = Make<CSid>();
    switch (GroupType) {
      case GT_GlobalGroup:
        sid->SetResidesOnServer(ServerName);
        sid->ResolveFromAccount(DomainName, GroupName);
        break;
      case GT_LocalGroup:
        sid->SetResidesOnServer(ServerName);
        sid->ResolveFromAccount(ServerName, GroupName);
        break;
      case GT_WellKnownGroup:
        sid->ResolveFromAccount(DomainName, GroupName);
        break;
      case GT_AccountUnknown:
        break;
    }
  });
  return sid;
}

Text CGroup::Comment() {
  const Ref<CGroup> keep_alive(this);
  Fetch();
  return comment_;
}

std::int32_t CGroup::GroupId() {
  const Ref<CGroup> keep_alive(this);
  Fetch();
  return group_id_;
}

std::int32_t CGroup::Attributes() {
  const Ref<CGroup> keep_alive(this);
  Fetch();
  return attributes_;
}

Text CGroup::AccountDisplayName() const {
  switch (GroupType) {
    case GT_LocalGroup:
      return DomainName.empty() ? LocalDisplayName(ServerName, GroupName)
                                : GlobalDisplayName(DomainName, GroupName);
    case GT_GlobalGroup:
    case GT_WellKnownGroup:
      return GlobalDisplayName(DomainName, GroupName);
    default:
      return GroupName;
  }
}

void CGroup::Update() {
  ReRaising([&] {
    AccountManagement& accounts = Apartment::Current().platform.accounts;
    const Variant server_buffer = ApiServerName(ServerName);
    const LPCWSTR server = BufferText(server_buffer);
    // One record is that of a local group, too.
    GROUP_INFO_1 group{GroupName.data(), comment_.data()};
    const auto* const record = reinterpret_cast<const BYTE*>(&group);
    constexpr DWORD kLevel = kNameAndCommentLevel;
    DWORD parameter_error = 0;
    const bool is_global = GroupType == GT_GlobalGroup;
    DWORD status = kErrorSuccess;
    if (is_new_) {
      status = is_global ? accounts.NetGroupAdd(server, kLevel, record, &parameter_error)
                         : accounts.NetLocalGroupAdd(server, kLevel, record, &parameter_error);
    } else {
      const LPCWSTR name = GroupName.c_str();
      status = is_global
                   ? accounts.NetGroupSetInfo(server, name, kLevel, record, &parameter_error)
                   : accounts.NetLocalGroupSetInfo(server, name, kLevel, record, &parameter_error);
    }
    if (status != kErrorSuccess) {
      RaisePlatformError(static_cast<std::int32_t>(status), Err().Source());
    }
  });
}

void CGroup::OnObjectFound(Object& object, bool& cancel) {
  Forward(object, cancel,
          {{&CUser::Describe, kUserFoundEvent}, {&CGroup::Describe, kGroupFoundEvent}});
}

void CGroup::Fetch() {
  if (!populated_) Engine().PopulateGroup(*this);
}

}  // namespace veldmark
