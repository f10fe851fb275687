#include "platform/windows/WineAccounts.h"

#include <windows.h>

#include <lm.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/operations/AccountManagement.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/windows/NetworkBlock.h"
#include "platform/windows/Sdk.h"

namespace veldmark {
namespace {

struct FreesBuffer {
  void operator()(void* buffer) const { ::NetApiBufferFree(buffer); }
};
template <typename Record>
using Block = std::unique_ptr<Record, FreesBuffer>;

template <typename Record>
Block<Record> Taken(BYTE* buffer) {
  return Block<Record>(reinterpret_cast<Record*>(buffer));
}

// A user's record with texts that lie in the blocks beside it.
struct User {
  ::USER_INFO_3 record{};
  Block<::USER_INFO_1> plain;
  Block<::USER_INFO_10> names;
};

DWORD ReadUser(const wchar_t* name, User& user) {
  BYTE* buffer = nullptr;
  if (const DWORD error = ::NetUserGetInfo(nullptr, name, 10, &buffer)) return error;
  user.names = Taken<::USER_INFO_10>(buffer);
  if (const DWORD error = ::NetUserGetInfo(nullptr, name, 1, &buffer)) return error;
  user.plain = Taken<::USER_INFO_1>(buffer);
  ::USER_INFO_3& record = user.record;
  record.usri3_name = user.names->usri10_name;
  record.usri3_password_age = user.plain->usri1_password_age;
  record.usri3_priv = user.plain->usri1_priv;
  record.usri3_home_dir = user.plain->usri1_home_dir;
  record.usri3_comment = user.names->usri10_comment;
  record.usri3_flags = user.plain->usri1_flags | kAccountNormal;
  record.usri3_script_path = user.plain->usri1_script_path;
  record.usri3_full_name = user.names->usri10_full_name;
  record.usri3_usr_comment = user.names->usri10_usr_comment;
  record.usri3_acct_expires = kTimeForever;
  record.usri3_max_storage = USER_MAXSTORAGE_UNLIMITED;
  record.usri3_units_per_week = UNITS_PER_WEEK;
  record.usri3_primary_group_id = DOMAIN_GROUP_RID_USERS;
  return 0;
}

DWORD HandOutUsers(const std::vector<::USER_INFO_3>& records, BYTE** buffer) {
  return HandOutBlock<::USER_INFO_3>(
      records,
      {&::USER_INFO_3::usri3_name, &::USER_INFO_3::usri3_home_dir, &::USER_INFO_3::usri3_comment,
       &::USER_INFO_3::usri3_script_path, &::USER_INFO_3::usri3_full_name,
       &::USER_INFO_3::usri3_usr_comment},
      buffer);
}

std::vector<BYTE> Builtin(BYTE number) {
  // S-1-5-32-512 and so many.
  return {1, 2, 0, 0, 0, 0, 0, 5, 32, 0, 0, 0, number, 2, 0, 0};
}

// The name of a built-in local group, where Wine has one.
std::optional<std::wstring> NameOf(const std::vector<BYTE>& sid) {
  wchar_t name[256];
  wchar_t domain[256];
  ::DWORD name_size = 256;
  ::DWORD domain_size = 256;
  ::SID_NAME_USE use{};
  const bool found = ::LookupAccountSidW(nullptr, const_cast<BYTE*>(sid.data()), name, &name_size,
                                         domain, &domain_size, &use) != 0;
  return found && use == SidTypeAlias ? std::optional<std::wstring>(name) : std::nullopt;
}

std::vector<std::wstring> LocalGroupNames() {
  std::vector<std::wstring> names;
  for (BYTE number = 32; number < 64; ++number) {
    if (auto name = NameOf(Builtin(number))) names.push_back(std::move(*name));
  }
  return names;
}

// The group as it calls itself; empty if there is none.
std::wstring LocalGroupNamed(LPCWSTR name) {
  for (const std::wstring& known : LocalGroupNames()) {
    if (name != nullptr && ::lstrcmpiW(known.c_str(), Sdk(name)) == 0) return known;
  }
  return {};
}

DWORD HandOutGroups(std::vector<std::wstring> names, BYTE** buffer) {
  std::vector<::LOCALGROUP_INFO_1> records;
  wchar_t none[] = L"";
  for (std::wstring& name : names) records.push_back({name.data(), none});
  return HandOutBlock<::LOCALGROUP_INFO_1>(
      records, {&::LOCALGROUP_INFO_1::lgrpi1_name, &::LOCALGROUP_INFO_1::lgrpi1_comment}, buffer);
}

}  // namespace

DWORD WineUser(LPCWSTR user_name, BYTE** buffer) {
  User user;
  if (const DWORD error = ReadUser(Sdk(user_name), user)) return error;
  return HandOutUsers({user.record}, buffer);
}

DWORD WineUsers(DWORD level, DWORD filter, BYTE** buffer, DWORD* entries_read,
                DWORD* total_entries) {
  *buffer = nullptr;
  *entries_read = *total_entries = 0;
  if (level != 0 && level != 3) return kErrorInvalidLevel;
  if (filter != 0 && (filter & kFilterNormalAccount) == 0) return 0;
  BYTE* names = nullptr;
  ::DWORD count = 0;
  ::DWORD total = 0;
  if (const DWORD error = ::NetUserEnum(nullptr, 0, filter, &names, MAX_PREFERRED_LENGTH, &count,
                                        &total, nullptr)) {
    return error;
  }
  *entries_read = *total_entries = count;
  if (level == 0) {
    *buffer = names;
    return 0;
  }
  const auto list = Taken<::USER_INFO_0>(names);
  std::vector<User> users(count);
  std::vector<::USER_INFO_3> records;
  for (::DWORD index = 0; index < count; ++index) {
    if (const DWORD error = ReadUser(list.get()[index].usri0_name, users[index])) return error;
    records.push_back(users[index].record);
  }
  return HandOutUsers(records, buffer);
}

void MendDisplayList(DWORD index, DWORD* entries_returned, void** buffer) {
  auto* const records = static_cast<::NET_DISPLAY_USER*>(*buffer);
  const DWORD count = *entries_returned;
  for (DWORD position = 0; position < count; ++position) {
    records[position].usri1_next_index = position + 1;
  }
  if (index < count) {
    std::move(records + index, records + count, records);
    *entries_returned = count - index;
    return;
  }
  ::NetApiBufferFree(records);
  *buffer = nullptr;
  *entries_returned = 0;
}

DWORD WineLocalGroups(BYTE** buffer, DWORD* entries_read, DWORD* total_entries) {
  const std::vector<std::wstring> names = LocalGroupNames();
  *entries_read = *total_entries = static_cast<DWORD>(names.size());
  return HandOutGroups(names, buffer);
}

DWORD WineLocalGroup(LPCWSTR group_name, BYTE** buffer) {
  const std::wstring name = LocalGroupNamed(group_name);
  return name.empty() ? kErrorNoSuchAlias : HandOutGroups({name}, buffer);
}

DWORD WineLocalGroupMembers(LPCWSTR group_name, BYTE** buffer, DWORD* entries_read,
                            DWORD* total_entries) {
  *buffer = nullptr;
  *entries_read = *total_entries = 0;
  const std::wstring name = LocalGroupNamed(group_name);
  if (name.empty()) return kErrorNoSuchAlias;
  // Wine has the members by name.
  BYTE* members = nullptr;
  ::DWORD count = 0;
  ::DWORD total = 0;
  if (const DWORD error = ::NetLocalGroupGetMembers(
          nullptr, name.c_str(), 3, &members, MAX_PREFERRED_LENGTH, &count, &total, nullptr)) {
    return error;
  }
  const auto list = Taken<::LOCALGROUP_MEMBERS_INFO_3>(members);
  if (list == nullptr || count == 0) return 0;
  constexpr std::size_t kRoom = SECURITY_MAX_SID_SIZE;
  const std::size_t records_size = count * sizeof(::LOCALGROUP_MEMBERS_INFO_0);
  void* block = nullptr;
  if (const DWORD error =
          ::NetApiBufferAllocate(static_cast<::DWORD>(records_size + count * kRoom), &block)) {
    return error;
  }
  auto* const records = static_cast<::LOCALGROUP_MEMBERS_INFO_0*>(block);
  DWORD found = 0;
  for (::DWORD index = 0; index < count; ++index) {
    ::PSID const sid = static_cast<BYTE*>(block) + records_size + found * kRoom;
    ::DWORD sid_size = kRoom;
    wchar_t domain[256];
    ::DWORD domain_size = 256;
    ::SID_NAME_USE use{};
    if (::LookupAccountNameW(nullptr, list.get()[index].lgrmi3_domainandname, sid, &sid_size,
                             domain, &domain_size, &use)) {
      records[found++].lgrmi0_sid = sid;
    }
  }
  *buffer = static_cast<BYTE*>(block);
  *entries_read = *total_entries = found;
  return 0;
}

DWORD WinePolicy(DWORD level, BYTE** buffer) {
  constexpr DWORD kLockoutSeconds = 1800;
  if (level == 0) {
    return HandOutBlock<::USER_MODALS_INFO_0>({{0, TIMEQ_FOREVER, 0, TIMEQ_FOREVER, 0}}, {},
                                              buffer);
  }
  return HandOutBlock<::USER_MODALS_INFO_3>({{kLockoutSeconds, kLockoutSeconds, 0}}, {}, buffer);
}

}  // namespace veldmark
