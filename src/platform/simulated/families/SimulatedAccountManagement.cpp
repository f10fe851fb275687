#include "platform/simulated/families/SimulatedAccountManagement.h"

#include <algorithm>
#include <stdexcept>
#include <unordered_map>

#include "automation/CaseMapping.h"
#include "platform/simulated/estate/AccountLookup.h"
#include "platform/simulated/families/NetworkCall.h"

namespace veldmark::simulated {
namespace {

// The indices of fields that a change can fail for.
constexpr DWORD kParameterName = 1;
constexpr DWORD kParameterPrivilege = 5;
constexpr DWORD kParameterFlags = 8;

// What a change may set of an account's flags; the rest says what kind it is.
constexpr DWORD kSettableFlags =
    kAccountDisabled | 0x8 | 0x20 | kAccountPasswordCantChange | 0x80 | kAccountDontExpirePassword;
constexpr DWORD kKindFlags =
    0x100 | kAccountNormal | 0x800 | kAccountWorkstationTrust | kAccountServerTrust;
// Every account runs its logon script.
constexpr DWORD kFlagScript = 0x1;

constexpr DWORD kUnlimited = 0xFFFFFFFF;
constexpr DWORD kUnitsPerWeek = 168;

void FillUser(USER_INFO_0& record, const UserAccount& user, const Estate&, RecordBlock& block) {
  record.usri0_name = block.Put(user.name);
}

void FillUser(USER_INFO_3& record, const UserAccount& user, const Estate& estate,
              RecordBlock& block) {
  static constexpr BYTE kAllHours[kUnitsPerWeek / 8] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
                                                        0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
                                                        0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
  record.usri3_name = block.Put(user.name);
  record.usri3_password_age = user.password_set ? estate.unix_time() - *user.password_set : 0;
  record.usri3_priv = user.privilege;
  record.usri3_home_dir = block.Put(user.home_folder);
  record.usri3_comment = block.Put(user.comment);
  record.usri3_flags = user.flags | kFlagScript;
  record.usri3_script_path = block.Put(user.script);
  record.usri3_auth_flags = user.auth_flags;
  record.usri3_full_name = block.Put(user.full_name);
  record.usri3_usr_comment = block.Put(user.user_comment);
  record.usri3_parms = block.Put(user.parameters);
  record.usri3_workstations = block.Put(user.workstations);
  record.usri3_last_logon = user.last_logon;
  record.usri3_last_logoff = user.last_logoff;
  record.usri3_acct_expires = user.expires;
  record.usri3_max_storage = kUnlimited;
  record.usri3_units_per_week = kUnitsPerWeek;
  record.usri3_logon_hours = static_cast<BYTE*>(block.Put(kAllHours, sizeof kAllHours));
  record.usri3_bad_pw_count = user.bad_passwords;
  record.usri3_num_logons = user.logons;
  record.usri3_logon_server = block.Put(user.logon_server);
  record.usri3_country_code = user.country_code;
  record.usri3_code_page = user.code_page;
  record.usri3_user_id = user.number;
  record.usri3_primary_group_id = user.primary_group;
  record.usri3_profile = block.Put(user.profile);
  record.usri3_home_dir_drive = block.Put(user.home_drive);
  record.usri3_password_expired = user.password_expired ? 1 : 0;
}

void FillUser(USER_INFO_10& record, const UserAccount& user, const Estate&, RecordBlock& block) {
  record.usri10_name = block.Put(user.name);
  record.usri10_comment = block.Put(user.comment);
  record.usri10_usr_comment = block.Put(user.user_comment);
  record.usri10_full_name = block.Put(user.full_name);
}

// Records of one name each; all of them look alike.
constexpr auto kFillName = [](auto& record, TextView name, RecordBlock& block) {
  static_assert(sizeof record == sizeof(LPWSTR));
  const LPWSTR place = block.Put(name);
  std::memcpy(&record, &place, sizeof place);
};

constexpr auto kFillLocalGroup = [](LOCALGROUP_INFO_1& record, const LocalGroup* group,
                                    RecordBlock& block) {
  record.lgrpi1_name = block.Put(group->name);
  record.lgrpi1_comment = block.Put(group->comment);
};

bool PassesFilter(const UserAccount& user, DWORD filter) {
  struct Kind {
    DWORD filter;
    DWORD flag;
  };
  static constexpr Kind kKinds[] = {{0x1, 0x100},
                                    {kFilterNormalAccount, kAccountNormal},
                                    {0x8, 0x800},
                                    {kFilterWorkstationTrustAccount, kAccountWorkstationTrust},
                                    {kFilterServerTrustAccount, kAccountServerTrust}};
  return filter == 0 || std::ranges::any_of(kKinds, [&](const Kind& kind) {
           return (filter & kind.filter) != 0 && (user.flags & kind.flag) != 0;
         });
}

template <typename Account>
std::vector<const Account*> Sorted(const std::map<Text, Account>& accounts) {
  std::vector<const Account*> sorted;
  for (const auto& [key, account] : accounts) sorted.push_back(&account);
  return sorted;
}

// All records at once, as the operations without a resume handle answer.
DWORD AnswerNames(const NetworkCall& call, const std::vector<TextView>& names,
                  const Reply<DWORD>& reply) {
  return Answer<GROUP_USERS_INFO_0>(call, names, 0, reply, kFillName);
}

DWORD NewNameError(AccountDatabase& accounts, TextView name, DWORD taken_by_local_group) {
  if (accounts.FindUser(name) != nullptr) return kErrorUserExists;
  if (accounts.FindGroup(name) != nullptr) return kErrorGroupExists;
  if (accounts.FindLocalGroup(name) != nullptr) return taken_by_local_group;
  return 0;
}

DWORD BadParameter(DWORD index, DWORD* parameter_error) {
  if (parameter_error != nullptr) *parameter_error = index;
  return kErrorInvalidParameter;
}

template <typename Record>
Record RecordAt(const BYTE* bytes) {
  Record record;
  std::memcpy(&record, bytes, sizeof record);
  return record;
}

}  // namespace

DWORD SimulatedAccountManagement::WriteError(const Computer& computer) const {
  if (!session_.estate.IsAdministrator(computer)) return kErrorAccessDenied;
  return computer.role() == Role::BackupController ? kErrorNotPrimary : kErrorSuccess;
}

DWORD SimulatedAccountManagement::NetUserEnum(LPCWSTR server_name, DWORD level, DWORD filter,
                                              BYTE** buffer, DWORD preferred_length,
                                              DWORD* entries_read, DWORD* total_entries,
                                              DWORD* resume_handle) {
  const Reply reply{buffer, preferred_length, entries_read, total_entries, resume_handle};
  const NetworkCall call(session_, "NetUserEnum", Noted(server_name, level, filter), server_name,
                         Clear(reply), level == 0 || level == 3);
  if (call.error() != 0) return call.error();
  const Estate& estate = session_.estate;
  if (level == 3 && !estate.IsAdministrator(call.computer())) return kErrorAccessDenied;
  std::vector<const UserAccount*> users = Sorted(call.accounts().users());
  std::erase_if(users, [&](const UserAccount* user) { return !PassesFilter(*user, filter); });
  const auto fill = [&](auto& record, const UserAccount* user, RecordBlock& block) {
    FillUser(record, *user, estate, block);
  };
  const std::size_t page = call.computer().page();
  return level == 0 ? Answer<USER_INFO_0>(call, users, page, reply, fill)
                    : Answer<USER_INFO_3>(call, users, page, reply, fill);
}

DWORD SimulatedAccountManagement::NetQueryDisplayInformation(LPCWSTR server_name, DWORD level,
                                                             DWORD index, DWORD entries_requested,
                                                             DWORD preferred_length,
                                                             DWORD* entries_returned,
                                                             void** buffer) {
  const bool is_sound = entries_returned != nullptr && buffer != nullptr;
  if (is_sound) {
    *entries_returned = 0;
    *buffer = nullptr;
  }
  const NetworkCall call(session_, "NetQueryDisplayInformation", Noted(server_name, level, index),
                         server_name, is_sound, level == 1);
  if (call.error() != 0) return call.error();
  std::vector<const UserAccount*> users = Sorted(call.accounts().users());
  std::erase_if(users, [](const UserAccount* user) { return user->is_machine(); });
  std::unordered_map<const UserAccount*, DWORD> next_indices;
  for (DWORD next = 0; const UserAccount* user : users) next_indices[user] = ++next;
  const auto fill = [&](NET_DISPLAY_USER& record, const UserAccount* user, RecordBlock& block) {
    record.usri1_name = block.Put(user->name);
    record.usri1_comment = block.Put(user->comment);
    record.usri1_flags = user->flags | kFlagScript;
    record.usri1_full_name = block.Put(user->full_name);
    record.usri1_user_id = user->number;
    record.usri1_next_index = next_indices.at(user);
  };
  std::size_t page = call.computer().page();
  if (page == 0 || entries_requested < page) page = entries_requested;
  if (page == 0 || index >= users.size()) return 0;
  DWORD next = index;
  DWORD total = 0;
  BYTE* block = nullptr;
  const Reply<DWORD> reply{&block, preferred_length, entries_returned, &total, &next};
  const DWORD status = Answer<NET_DISPLAY_USER>(call, users, page, reply, fill);
  *buffer = block;
  return status;
}

DWORD SimulatedAccountManagement::NetUserGetInfo(LPCWSTR server_name, LPCWSTR user_name,
                                                 DWORD level, BYTE** buffer) {
  const NetworkCall call(session_, "NetUserGetInfo", Noted(server_name, ViewOf(user_name), level),
                         server_name, Clear(buffer), level == 3 || level == 10);
  if (call.error() != 0) return call.error();
  const Estate& estate = session_.estate;
  if (level == 3 && !estate.IsAdministrator(call.computer())) return kErrorAccessDenied;
  const UserAccount* const user = call.accounts().FindUser(ViewOf(user_name));
  if (user == nullptr) return kErrorUserNotFound;
  const auto fill = [&](auto& record, const UserAccount& found, RecordBlock& block) {
    FillUser(record, found, estate, block);
  };
  *buffer = level == 3 ? HandOutOne<USER_INFO_3>(call, *user, fill)
                       : HandOutOne<USER_INFO_10>(call, *user, fill);
  return 0;
}

DWORD SimulatedAccountManagement::NetUserSetInfo(LPCWSTR server_name, LPCWSTR user_name,
                                                 DWORD level, const BYTE* record,
                                                 DWORD* parameter_error) {
  const NetworkCall call(session_, "NetUserSetInfo", Noted(server_name, ViewOf(user_name), level),
                         server_name, record != nullptr, level == 1 || level == 1003);
  if (call.error() != 0) return call.error();
  if (const DWORD error = WriteError(call.computer())) return error;
  UserAccount* const user = call.accounts().FindUser(ViewOf(user_name));
  if (user == nullptr) return kErrorUserNotFound;
  const auto set_password = [&](LPCWSTR password) -> DWORD {
    const TextView text = ViewOf(password);
    if (text.size() < call.accounts().policy.minimum_length) return kErrorPasswordTooShort;
    user->password.emplace(text);
    user->password_set = session_.estate.unix_time();
    user->password_expired = false;
    return 0;
  };
  if (level == 1003) return set_password(RecordAt<USER_INFO_1003>(record).usri1003_password);

  const auto wanted = RecordAt<USER_INFO_1>(record);
  if (wanted.usri1_name != nullptr && !EqualNoCase(wanted.usri1_name, user->name)) {
    return BadParameter(kParameterName, parameter_error);
  }
  if (wanted.usri1_priv != user->privilege) {
    return BadParameter(kParameterPrivilege, parameter_error);
  }
  const DWORD kind = wanted.usri1_flags & kKindFlags;
  if (kind != 0 && kind != (user->flags & kKindFlags)) {
    return BadParameter(kParameterFlags, parameter_error);
  }
  if (wanted.usri1_password != nullptr) {
    if (const DWORD error = set_password(wanted.usri1_password)) return error;
  }
  // An account can be unlocked and not be locked.
  const DWORD kept = user->flags & ~kSettableFlags & ~(~wanted.usri1_flags & kAccountLockout);
  user->flags = kept | (wanted.usri1_flags & kSettableFlags);
  const auto set = [](Text& field, LPCWSTR text) {
    if (text != nullptr) field = text;
  };
  set(user->home_folder, wanted.usri1_home_dir);
  set(user->comment, wanted.usri1_comment);
  set(user->script, wanted.usri1_script_path);
  return 0;
}

DWORD SimulatedAccountManagement::NetUserGetGroups(LPCWSTR server_name, LPCWSTR user_name,
                                                   DWORD level, BYTE** buffer,
                                                   DWORD preferred_length, DWORD* entries_read,
                                                   DWORD* total_entries) {
  const Reply<DWORD> reply{buffer, preferred_length, entries_read, total_entries, nullptr};
  const NetworkCall call(session_, "NetUserGetGroups", Noted(server_name, ViewOf(user_name), level),
                         server_name, Clear(reply), level == 0);
  if (call.error() != 0) return call.error();
  const UserAccount* const user = call.accounts().FindUser(ViewOf(user_name));
  if (user == nullptr) return kErrorUserNotFound;
  std::vector<TextView> names;
  for (const auto& [key, group] : call.accounts().groups()) {
    if (call.accounts().IsIn(*user, group)) names.push_back(group.name);
  }
  return AnswerNames(call, names, reply);
}

DWORD SimulatedAccountManagement::NetUserGetLocalGroups(LPCWSTR server_name, LPCWSTR user_name,
                                                        DWORD level, DWORD flags, BYTE** buffer,
                                                        DWORD preferred_length, DWORD* entries_read,
                                                        DWORD* total_entries) {
  const Reply<DWORD> reply{buffer, preferred_length, entries_read, total_entries, nullptr};
  const NetworkCall call(session_, "NetUserGetLocalGroups",
                         Noted(server_name, ViewOf(user_name), flags), server_name,
                         Clear(reply) && (flags & ~kIncludeIndirectGroups) == 0, level == 0);
  if (call.error() != 0) return call.error();
  Estate& estate = session_.estate;
  const auto account = FindAccount(estate, call.computer(), ViewOf(user_name));
  if (!account || account->use != SidUse::User) return kErrorUserNotFound;
  std::vector<Sid> sids = {account->sid};
  if ((flags & kIncludeIndirectGroups) != 0) {
    Domain* const domain = estate.FindDomain(account->domain);
    AccountDatabase& home =
        domain != nullptr && !domain->is_workgroup() ? *domain->accounts : call.accounts();
    if (const UserAccount* const user = home.FindUser(account->name)) {
      for (const auto& [key, group] : home.groups()) {
        if (home.IsIn(*user, group)) sids.push_back(home.sid().Account(group.number));
      }
    }
  }
  std::vector<TextView> names;
  for (const auto& entry : call.accounts().local_groups()) {
    const LocalGroup& group = entry.second;
    const bool is_in = std::ranges::any_of(sids, [&](const Sid& sid) {
      return std::ranges::find(group.members, sid) != group.members.end();
    });
    if (is_in) names.push_back(group.name);
  }
  return AnswerNames(call, names, reply);
}

DWORD SimulatedAccountManagement::NetGroupEnum(LPCWSTR server_name, DWORD level, BYTE** buffer,
                                               DWORD preferred_length, DWORD* entries_read,
                                               DWORD* total_entries, UINT_PTR* resume_handle) {
  const Reply reply{buffer, preferred_length, entries_read, total_entries, resume_handle};
  const NetworkCall call(session_, "NetGroupEnum", Noted(server_name, level), server_name,
                         Clear(reply), level == 0);
  if (call.error() != 0) return call.error();
  std::vector<TextView> names;
  for (const auto& [key, group] : call.accounts().groups()) names.push_back(group.name);
  return Answer<GROUP_INFO_0>(call, names, call.computer().page(), reply, kFillName);
}

DWORD SimulatedAccountManagement::NetGroupGetUsers(LPCWSTR server_name, LPCWSTR group_name,
                                                   DWORD level, BYTE** buffer,
                                                   DWORD preferred_length, DWORD* entries_read,
                                                   DWORD* total_entries, UINT_PTR* resume_handle) {
  const Reply reply{buffer, preferred_length, entries_read, total_entries, resume_handle};
  const NetworkCall call(session_, "NetGroupGetUsers",
                         Noted(server_name, ViewOf(group_name), level), server_name, Clear(reply),
                         level == 0);
  if (call.error() != 0) return call.error();
  const GlobalGroup* const group = call.accounts().FindGroup(ViewOf(group_name));
  if (group == nullptr) return kErrorGroupNotFound;
  std::vector<TextView> names;
  for (const auto& [key, user] : call.accounts().users()) {
    if (call.accounts().IsIn(user, *group)) names.push_back(user.name);
  }
  return Answer<GROUP_USERS_INFO_0>(call, names, call.computer().page(), reply, kFillName);
}

DWORD SimulatedAccountManagement::NetGroupGetInfo(LPCWSTR server_name, LPCWSTR group_name,
                                                  DWORD level, BYTE** buffer) {
  const NetworkCall call(session_, "NetGroupGetInfo", Noted(server_name, ViewOf(group_name), level),
                         server_name, Clear(buffer), level == 2);
  if (call.error() != 0) return call.error();
  const GlobalGroup* const group = call.accounts().FindGroup(ViewOf(group_name));
  if (group == nullptr) return kErrorGroupNotFound;
  const auto fill = [](GROUP_INFO_2& record, const GlobalGroup& found, RecordBlock& block) {
    record.grpi2_name = block.Put(found.name);
    record.grpi2_comment = block.Put(found.comment);
    record.grpi2_group_id = found.number;
    record.grpi2_attributes = found.attributes;
  };
  *buffer = HandOutOne<GROUP_INFO_2>(call, *group, fill);
  return 0;
}

DWORD SimulatedAccountManagement::NetGroupAdd(LPCWSTR server_name, DWORD level, const BYTE* record,
                                              DWORD* parameter_error) {
  const auto wanted = record == nullptr ? GROUP_INFO_1{} : RecordAt<GROUP_INFO_1>(record);
  const TextView name = ViewOf(wanted.grpi1_name);
  const NetworkCall call(session_, "NetGroupAdd", Noted(server_name, name, level), server_name,
                         record != nullptr, level == 1);
  if (call.error() != 0) return call.error();
  if (const DWORD error = WriteError(call.computer())) return error;
  if (call.computer().role() != Role::PrimaryController) return kErrorNotPrimary;
  if (const DWORD error = NewNameError(call.accounts(), name, kErrorAliasExists)) return error;
  try {
    call.accounts().AddGroup(name).comment = ViewOf(wanted.grpi1_comment);
  } catch (const std::invalid_argument&) {
    return BadParameter(kParameterName, parameter_error);
  }
  return 0;
}

DWORD SimulatedAccountManagement::NetGroupSetInfo(LPCWSTR server_name, LPCWSTR group_name,
                                                  DWORD level, const BYTE* record, DWORD*) {
  const NetworkCall call(session_, "NetGroupSetInfo", Noted(server_name, ViewOf(group_name), level),
                         server_name, record != nullptr, level == 1);
  if (call.error() != 0) return call.error();
  if (const DWORD error = WriteError(call.computer())) return error;
  GlobalGroup* const group = call.accounts().FindGroup(ViewOf(group_name));
  if (group == nullptr) return kErrorGroupNotFound;
  group->comment = ViewOf(RecordAt<GROUP_INFO_1>(record).grpi1_comment);
  return 0;
}

DWORD SimulatedAccountManagement::NetLocalGroupEnum(LPCWSTR server_name, DWORD level, BYTE** buffer,
                                                    DWORD preferred_length, DWORD* entries_read,
                                                    DWORD* total_entries, UINT_PTR* resume_handle) {
  const Reply reply{buffer, preferred_length, entries_read, total_entries, resume_handle};
  const NetworkCall call(session_, "NetLocalGroupEnum", Noted(server_name, level), server_name,
                         Clear(reply), level == 1);
  if (call.error() != 0) return call.error();
  const std::vector<const LocalGroup*> groups = Sorted(call.accounts().local_groups());
  return Answer<LOCALGROUP_INFO_1>(call, groups, call.computer().page(), reply, kFillLocalGroup);
}

DWORD SimulatedAccountManagement::NetLocalGroupGetMembers(LPCWSTR server_name, LPCWSTR group_name,
                                                          DWORD level, BYTE** buffer,
                                                          DWORD preferred_length,
                                                          DWORD* entries_read, DWORD* total_entries,
                                                          UINT_PTR* resume_handle) {
  const Reply reply{buffer, preferred_length, entries_read, total_entries, resume_handle};
  const NetworkCall call(session_, "NetLocalGroupGetMembers",
                         Noted(server_name, ViewOf(group_name), level), server_name, Clear(reply),
                         level == 0);
  if (call.error() != 0) return call.error();
  const LocalGroup* const group = call.accounts().FindLocalGroup(ViewOf(group_name));
  if (group == nullptr) return kErrorNoSuchAlias;
  const auto fill = [](LOCALGROUP_MEMBERS_INFO_0& record, const Sid& sid, RecordBlock& block) {
    record.lgrmi0_sid = block.Put(sid);
  };
  return Answer<LOCALGROUP_MEMBERS_INFO_0>(call, group->members, call.computer().page(), reply,
                                           fill);
}

DWORD SimulatedAccountManagement::NetLocalGroupGetInfo(LPCWSTR server_name, LPCWSTR group_name,
                                                       DWORD level, BYTE** buffer) {
  const NetworkCall call(session_, "NetLocalGroupGetInfo",
                         Noted(server_name, ViewOf(group_name), level), server_name, Clear(buffer),
                         level == 1);
  if (call.error() != 0) return call.error();
  const LocalGroup* const group = call.accounts().FindLocalGroup(ViewOf(group_name));
  if (group == nullptr) return kErrorNoSuchAlias;
  *buffer = HandOutOne<LOCALGROUP_INFO_1>(call, group, kFillLocalGroup);
  return 0;
}

DWORD SimulatedAccountManagement::NetLocalGroupAdd(LPCWSTR server_name, DWORD level,
                                                   const BYTE* record, DWORD* parameter_error) {
  const auto wanted = record == nullptr ? LOCALGROUP_INFO_1{} : RecordAt<LOCALGROUP_INFO_1>(record);
  const TextView name = ViewOf(wanted.lgrpi1_name);
  const NetworkCall call(session_, "NetLocalGroupAdd", Noted(server_name, name, level), server_name,
                         record != nullptr, level == 1);
  if (call.error() != 0) return call.error();
  if (const DWORD error = WriteError(call.computer())) return error;
  if (const DWORD error = NewNameError(call.accounts(), name, kErrorAliasExists)) return error;
  try {
    call.accounts().AddLocalGroup(name).comment = ViewOf(wanted.lgrpi1_comment);
  } catch (const std::invalid_argument&) {
    return BadParameter(kParameterName, parameter_error);
  }
  return 0;
}

DWORD SimulatedAccountManagement::NetLocalGroupSetInfo(LPCWSTR server_name, LPCWSTR group_name,
                                                       DWORD level, const BYTE* record, DWORD*) {
  const NetworkCall call(session_, "NetLocalGroupSetInfo",
                         Noted(server_name, ViewOf(group_name), level), server_name,
                         record != nullptr, level == 1);
  if (call.error() != 0) return call.error();
  if (const DWORD error = WriteError(call.computer())) return error;
  LocalGroup* const group = call.accounts().FindLocalGroup(ViewOf(group_name));
  if (group == nullptr) return kErrorNoSuchAlias;
  group->comment = ViewOf(RecordAt<LOCALGROUP_INFO_1>(record).lgrpi1_comment);
  return 0;
}

DWORD SimulatedAccountManagement::NetUserModalsGet(LPCWSTR server_name, DWORD level,
                                                   BYTE** buffer) {
  const NetworkCall call(session_, "NetUserModalsGet", Noted(server_name, level), server_name,
                         Clear(buffer), level == 0 || level == 3);
  if (call.error() != 0) return call.error();
  if (level == 0) {
    const auto fill = [](USER_MODALS_INFO_0& record, const AccountPolicy& policy, RecordBlock&) {
      record = {policy.minimum_length, policy.maximum_age, policy.minimum_age, policy.force_logoff,
                policy.history_length};
    };
    *buffer = HandOutOne<USER_MODALS_INFO_0>(call, call.accounts().policy, fill);
  } else {
    const auto fill = [](USER_MODALS_INFO_3& record, const AccountPolicy& policy, RecordBlock&) {
      record = {policy.lockout_duration, policy.lockout_window, policy.lockout_threshold};
    };
    *buffer = HandOutOne<USER_MODALS_INFO_3>(call, call.accounts().policy, fill);
  }
  return 0;
}

}  // namespace veldmark::simulated
