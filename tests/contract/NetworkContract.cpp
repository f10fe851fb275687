#include <algorithm>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "automation/CaseMapping.h"
#include "automation/LastError.h"
#include "automation/Text.h"
#include "contract/World.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"
#include "platform/operations/Records.h"

namespace veldmark {
namespace {

using Names = std::vector<Text>;

constexpr LPCWSTR kNobody = u"\\\\nobody-there";

struct NamedCall {
  const char* name;
  DWORD code;
  std::function<DWORD()> call;
};

class NetworkContract : public Contract {
 protected:
  // The calls end with these codes and hand nothing out.
  void Fail(const std::vector<NamedCall>& calls) {
    for (const NamedCall& row : calls) {
      buffer_.Reset();
      EXPECT_EQ(row.call(), row.code) << row.name;
      EXPECT_FALSE(buffer_) << row.name;
    }
  }

  // The record that lies at the start of the block.
  template <class Record>
  Record First() {
    Record record{};
    EXPECT_TRUE(buffer_);
    if (buffer_) std::memcpy(&record, buffer_.Get(), sizeof record);
    return record;
  }

  // What the first field of each record names.
  template <class Record>
  Names NamesIn() const {
    Names names;
    for (const Record& record : RecordsIn<Record>(buffer_.Get(), read_)) {
      LPWSTR name;
      std::memcpy(&name, &record, sizeof name);
      names.emplace_back(name);
    }
    return names;
  }

  static bool Has(const Names& names, TextView name) {
    return std::ranges::any_of(names, [&](const Text& each) { return EqualNoCase(each, name); });
  }

  NetworkManagement& net_ = platform_.network_management;
  AccountManagement& accounts_ = platform_.accounts;
  NetworkBuffer buffer_{net_};
  DWORD read_ = 0;
  DWORD total_ = 0;
  DWORD resume_ = 0;
  UINT_PTR wide_resume_ = 0;
};

class Servers : public NetworkContract {};
class Accounts : public NetworkContract {};
class Lookups : public NetworkContract {};
class Rights : public NetworkContract {};
class Hosts : public NetworkContract {};

constexpr DWORD kAll = kMaxPreferredLength;

TEST_F(Servers, TellOfThemselvesLevelByLevel) {
  WCHAR own[32];
  DWORD size = 32;
  ASSERT_NE(platform_.system.GetComputerNameW(own, &size), 0);
  const Text server = u"\\\\" + Text(own);
  for (const LPCWSTR name : {LPCWSTR{nullptr}, LPCWSTR{own}, server.c_str()}) {
    ASSERT_EQ(net_.NetServerGetInfo(name, 101, buffer_.Receive()), 0u);
    const auto brief = First<SERVER_INFO_101>();
    EXPECT_TRUE(EqualNoCase(brief.sv101_name, own)) << ToUtf8(brief.sv101_name);
    EXPECT_EQ(brief.sv101_platform_id, kPlatformIdNt);
    EXPECT_GE(brief.sv101_version_major & 15, 5u);
    EXPECT_NE(brief.sv101_type & kServerTypeNt, 0u);
    NetworkBuffer whole(net_);
    ASSERT_EQ(net_.NetServerGetInfo(name, 102, whole.Receive()), 0u);
    SERVER_INFO_102 record;
    std::memcpy(&record, whole.Get(), sizeof record);
    EXPECT_EQ(Text(record.sv102_name), Text(brief.sv101_name));
    EXPECT_EQ(record.sv102_version_major, brief.sv101_version_major);
    EXPECT_EQ(record.sv102_type, brief.sv101_type);
    EXPECT_EQ(Text(record.sv102_comment), Text(brief.sv101_comment));
    EXPECT_NE(record.sv102_userpath, nullptr);
    ASSERT_EQ(net_.NetServerGetInfo(name, 100, buffer_.Receive()), 0u);
    EXPECT_TRUE(EqualNoCase(First<SERVER_INFO_100>().sv100_name, own));
    ASSERT_EQ(net_.NetWkstaGetInfo(name, 100, buffer_.Receive()), 0u);
    EXPECT_TRUE(EqualNoCase(First<WKSTA_INFO_100>().wki100_computername, own));
    EXPECT_FALSE(Text(First<WKSTA_INFO_100>().wki100_langroup).empty());
  }
  const auto shares = [&](LPCWSTR name, DWORD level) {
    return net_.NetShareEnum(name, level, buffer_.Receive(), kAll, &read_, &total_, &resume_);
  };
  const auto disks = [&](LPCWSTR name, DWORD level) {
    return net_.NetServerDiskEnum(name, level, buffer_.Receive(), kAll, &read_, &total_, &resume_);
  };
  ASSERT_EQ(disks(nullptr, 0), 0u);
  Names letters;
  for (DWORD index = 0; index < read_; ++index) {
    letters.emplace_back(reinterpret_cast<LPCWSTR>(buffer_.Get()) + index * 3);
  }
  EXPECT_TRUE(Has(letters, world_->scratch().substr(0, 2)));
  EXPECT_EQ(resume_, 0u);
  for (const DWORD level : {1, 2}) {
    ASSERT_EQ(shares(nullptr, level), 0u);
    EXPECT_EQ(resume_, 0u);
    EXPECT_EQ(read_, total_);
  }
  Fail(
      {{"server level", 124,
        [&] { return net_.NetServerGetInfo(nullptr, 103, buffer_.Receive()); }},
       {"server", 53, [&] { return net_.NetServerGetInfo(kNobody, 102, buffer_.Receive()); }},
       {"station level", 124, [&] { return net_.NetWkstaGetInfo(nullptr, 99, buffer_.Receive()); }},
       {"station", 53,
        [&] { return net_.NetWkstaGetInfo(u"nobody-there", 100, buffer_.Receive()); }},
       {"controller", 2453,
        [&] { return net_.NetGetDCName(nullptr, u"no-such-domain", buffer_.Receive()); }},
       {"browse list", 6118,
        [&] {
          return net_.NetServerEnum(nullptr, 101, buffer_.Receive(), kAll, &read_, &total_,
                                    kServerTypeAll, u"no-such-domain", &resume_);
        }},
       {"share level", 124, [&] { return shares(nullptr, 9); }},
       {"shares", 53, [&] { return shares(kNobody, 1); }},
       {"disk level", 124, [&] { return disks(nullptr, 1); }},
       {"disks", 53, [&] { return disks(kNobody, 0); }},
       {"share", 2310,
        [&] { return net_.NetShareGetInfo(nullptr, u"no-such-share", 502, buffer_.Receive()); }},
       {"share deleted", 2310, [&] { return net_.NetShareDel(nullptr, u"no-such-share", 0); }},
       {"share elsewhere", 53, [&] { return net_.NetShareDel(kNobody, u"x", 0); }}});
  EXPECT_EQ(net_.NetApiBufferFree(nullptr), 0u);
}

TEST_F(Accounts, OfUsersAreListedReadAndRefused) {
  const Text& user = world_->user();
  for (const DWORD level : {0, 3}) {
    const auto list = [&](DWORD filter) {
      EXPECT_EQ(accounts_.NetUserEnum(nullptr, level, filter, buffer_.Receive(), kAll, &read_,
                                      &total_, &resume_),
                0u);
      EXPECT_EQ(resume_, 0u);
      return level == 0 ? NamesIn<USER_INFO_0>() : NamesIn<USER_INFO_3>();
    };
    EXPECT_TRUE(Has(list(kFilterNormalAccount), user)) << level;
    EXPECT_TRUE(Has(list(0), user)) << level;
    EXPECT_EQ(list(kFilterWorkstationTrustAccount | kFilterServerTrustAccount), Names()) << level;
  }
  ASSERT_EQ(accounts_.NetUserGetInfo(nullptr, user.c_str(), 10, buffer_.Receive()), 0u);
  NetworkBuffer whole(net_);
  ASSERT_EQ(accounts_.NetUserGetInfo(nullptr, user.c_str(), 3, whole.Receive()), 0u);
  USER_INFO_3 record;
  std::memcpy(&record, whole.Get(), sizeof record);
  const auto brief = First<USER_INFO_10>();
  EXPECT_EQ(Text(record.usri3_name), Text(brief.usri10_name));
  EXPECT_EQ(Text(record.usri3_full_name), Text(brief.usri10_full_name));
  EXPECT_EQ(record.usri3_password, nullptr);
  EXPECT_EQ(record.usri3_flags & (kAccountNormal | kAccountDisabled), kAccountNormal);
  EXPECT_EQ(record.usri3_acct_expires, kTimeForever);

  // From an index that each record tells, and to the end: nothing and no block.
  Names shown;
  DWORD index = 0;
  int turns = 0;
  for (; turns < 100; ++turns) {
    void* block = nullptr;
    ASSERT_EQ(accounts_.NetQueryDisplayInformation(nullptr, 1, index, 1000, kAll, &read_, &block),
              0u);
    buffer_.Reset(static_cast<BYTE*>(block));
    if (!buffer_) break;
    for (const Text& name : NamesIn<NET_DISPLAY_USER>()) shown.push_back(name);
    index = RecordsIn<NET_DISPLAY_USER>(block, read_).back().usri1_next_index;
  }
  EXPECT_EQ(read_, 0u);
  EXPECT_TRUE(Has(shown, user));
  EXPECT_EQ(shown.size(), index);
  void* block = nullptr;
  ASSERT_EQ(accounts_.NetQueryDisplayInformation(nullptr, 1, 1, 1000, kAll, &read_, &block), 0u);
  buffer_.Reset(static_cast<BYTE*>(block));
  EXPECT_EQ(NamesIn<NET_DISPLAY_USER>(), Names(shown.begin() + 1, shown.end()));

  const auto groups_of = [&](LPCWSTR name, DWORD level) {
    return accounts_.NetUserGetLocalGroups(nullptr, name, level, 0, buffer_.Receive(), kAll, &read_,
                                           &total_);
  };
  ASSERT_EQ(groups_of(user.c_str(), 0), 0u);
  EXPECT_TRUE(Has(NamesIn<LOCALGROUP_USERS_INFO_0>(), u"Administrators"));
  Fail({{"brief", 2221,
         [&] { return accounts_.NetUserGetInfo(nullptr, u"nobody-here", 10, buffer_.Receive()); }},
        {"whole", 2221,
         [&] { return accounts_.NetUserGetInfo(nullptr, u"nobody-here", 3, buffer_.Receive()); }},
        {"level", 124,
         [&] { return accounts_.NetUserGetInfo(nullptr, user.c_str(), 99, buffer_.Receive()); }},
        {"elsewhere", 53,
         [&] { return accounts_.NetUserGetInfo(kNobody, user.c_str(), 3, buffer_.Receive()); }},
        {"enumeration's level", 124,
         [&] {
           return accounts_.NetUserEnum(nullptr, 99, 0, buffer_.Receive(), kAll, &read_, &total_,
                                        &resume_);
         }},
        {"display's level", 124,
         [&] {
           void* none = nullptr;
           return accounts_.NetQueryDisplayInformation(nullptr, 9, 0, 10, kAll, &read_, &none);
         }},
        {"groups", 2221, [&] { return groups_of(u"nobody-here", 0); }}});
}

TEST_F(Accounts, OfGroupsHaveMembersAndAPolicy) {
  const auto enumerate = [&](DWORD level) {
    return accounts_.NetLocalGroupEnum(nullptr, level, buffer_.Receive(), kAll, &read_, &total_,
                                       &wide_resume_);
  };
  ASSERT_EQ(enumerate(1), 0u);
  EXPECT_EQ(wide_resume_, 0u);
  const Names groups = NamesIn<LOCALGROUP_INFO_1>();
  EXPECT_TRUE(Has(groups, u"Administrators") && Has(groups, u"Users"));
  ASSERT_EQ(accounts_.NetLocalGroupGetInfo(nullptr, u"administrators", 1, buffer_.Receive()), 0u);
  EXPECT_EQ(Text(First<LOCALGROUP_INFO_1>().lgrpi1_name), u"Administrators");
  EXPECT_NE(First<LOCALGROUP_INFO_1>().lgrpi1_comment, nullptr);
  const auto members_of = [&](LPCWSTR group, DWORD level) {
    return accounts_.NetLocalGroupGetMembers(nullptr, group, level, buffer_.Receive(), kAll, &read_,
                                             &total_, &wide_resume_);
  };
  ASSERT_EQ(members_of(u"Administrators", 0), 0u);
  Names members;
  for (const auto& record : RecordsIn<LOCALGROUP_MEMBERS_INFO_0>(buffer_.Get(), read_)) {
    WCHAR name[64], domain[64];
    DWORD name_size = 64, domain_size = 64;
    INT use = 0;
    if (platform_.security.LookupAccountSidW(nullptr, record.lgrmi0_sid, name, &name_size, domain,
                                             &domain_size, &use) != 0) {
      members.emplace_back(name);
    }
  }
  EXPECT_TRUE(Has(members, world_->user()));

  ASSERT_EQ(accounts_.NetUserModalsGet(nullptr, 0, buffer_.Receive()), 0u);
  EXPECT_EQ(First<USER_MODALS_INFO_0>().usrmod0_min_passwd_len, 0u);
  EXPECT_EQ(First<USER_MODALS_INFO_0>().usrmod0_force_logoff, kTimeForever);
  ASSERT_EQ(accounts_.NetUserModalsGet(nullptr, 3, buffer_.Receive()), 0u);
  EXPECT_EQ(First<USER_MODALS_INFO_3>().usrmod3_lockout_threshold, 0u);

  Fail(
      {{"group", 1376,
        [&] { return accounts_.NetLocalGroupGetInfo(nullptr, u"no-group", 1, buffer_.Receive()); }},
       {"group's level", 124,
        [&] { return accounts_.NetLocalGroupGetInfo(nullptr, u"Users", 9, buffer_.Receive()); }},
       {"members", 1376, [&] { return members_of(u"no-group", 0); }},
       {"members' level", 124, [&] { return members_of(u"Users", 9); }},
       {"groups' level", 124, [&] { return enumerate(9); }},
       {"policy's level", 124,
        [&] { return accounts_.NetUserModalsGet(nullptr, 9, buffer_.Receive()); }},
       {"policy", 53, [&] { return accounts_.NetUserModalsGet(kNobody, 0, buffer_.Receive()); }}});

  if (WhyNot(Trait::LocalGroupChanges) == nullptr) {
    Text name = u"Veldmark2 contract", comment = u"one", other = u"two";
    LOCALGROUP_INFO_1 record{name.data(), comment.data()};
    const auto* const bytes = reinterpret_cast<const BYTE*>(&record);
    Fail({{"added", 0, [&] { return accounts_.NetLocalGroupAdd(nullptr, 1, bytes, nullptr); }},
          {"again", 1379, [&] { return accounts_.NetLocalGroupAdd(nullptr, 1, bytes, nullptr); }}});
    record = {other.data(), other.data()};
    Fail(
        {{"changed", 0,
          [&] { return accounts_.NetLocalGroupSetInfo(nullptr, name.c_str(), 1, bytes, nullptr); }},
         {"missing", 1376, [&] {
            return accounts_.NetLocalGroupSetInfo(nullptr, other.c_str(), 1, bytes, nullptr);
          }}});
    ASSERT_EQ(accounts_.NetLocalGroupGetInfo(nullptr, name.c_str(), 1, buffer_.Receive()), 0u);
    EXPECT_EQ(Text(First<LOCALGROUP_INFO_1>().lgrpi1_comment), other);
  }
  if (const char* why = WhyNot(Trait::GlobalGroups)) GTEST_SKIP() << why;
  ASSERT_EQ(
      accounts_.NetGroupEnum(nullptr, 0, buffer_.Receive(), kAll, &read_, &total_, &wide_resume_),
      0u);
  EXPECT_EQ(NamesIn<GROUP_INFO_0>(), Names{u"None"}) << "of a computer that is no controller";
  ASSERT_EQ(accounts_.NetUserGetGroups(nullptr, world_->user().c_str(), 0, buffer_.Receive(), kAll,
                                       &read_, &total_),
            0u);
  EXPECT_EQ(NamesIn<GROUP_USERS_INFO_0>(), Names{u"None"});
  ASSERT_EQ(accounts_.NetGroupGetInfo(nullptr, u"none", 2, buffer_.Receive()), 0u);
  EXPECT_EQ(First<GROUP_INFO_2>().grpi2_group_id, 513u);
  Fail({{"global group", 2220,
         [&] { return accounts_.NetGroupGetInfo(nullptr, u"no-group", 2, buffer_.Receive()); }},
        {"its users", 2220,
         [&] {
           return accounts_.NetGroupGetUsers(nullptr, u"no-group", 0, buffer_.Receive(), kAll,
                                             &read_, &total_, &wide_resume_);
         }},
        {"whose groups", 2221, [&] {
           return accounts_.NetUserGetGroups(nullptr, u"nobody-here", 0, buffer_.Receive(), kAll,
                                             &read_, &total_);
         }}});
}

TEST_F(Lookups, GoFromNamesToSidsAndBack) {
  Security& security = platform_.security;
  struct Row {
    Text name;
    TextView own_name, domain;
    std::size_t sid_size;
    INT use;
  };
  BYTE sid[68];
  WCHAR name[64], domain[64];
  INT use = 0;
  for (const Row& row :
       std::vector<Row>{{u"everyone", u"Everyone", u"", 12, 5},
                        {u"SYSTEM", u"SYSTEM", u"NT AUTHORITY", 12, 5},
                        {u"NT AUTHORITY\\SYSTEM", u"SYSTEM", u"NT AUTHORITY", 12, 5},
                        {u"Administrators", u"Administrators", u"BUILTIN", 16, 4},
                        {u"BUILTIN\\Users", u"Users", u"BUILTIN", 16, 4},
                        {world_->user(), world_->user(), u"", 28, 1}}) {
    SCOPED_TRACE(ToUtf8(row.name));
    // A probe tells what is needed, the NUL counted.
    DWORD sid_size = 0, domain_size = 0, name_size = 0;
    ASSERT_EQ(Code(security.LookupAccountNameW(nullptr, row.name.c_str(), nullptr, &sid_size,
                                               nullptr, &domain_size, &use)),
              kErrorInsufficientBuffer);
    EXPECT_EQ(sid_size, row.sid_size);
    const DWORD domain_needed = domain_size;
    ASSERT_EQ(Code(security.LookupAccountNameW(nullptr, row.name.c_str(), sid, &sid_size, domain,
                                               &domain_size, &use)),
              0u);
    EXPECT_EQ(use, row.use);
    EXPECT_EQ(domain_size + 1, domain_needed);
    EXPECT_EQ(Text(domain).size(), domain_size);
    if (row.use != 1) {
      EXPECT_EQ(Text(domain), row.domain);
    }
    domain_size = 0;
    EXPECT_EQ(Code(security.LookupAccountSidW(nullptr, sid, nullptr, &name_size, nullptr,
                                              &domain_size, &use)),
              kErrorInsufficientBuffer);
    EXPECT_EQ(name_size, row.own_name.size() + 1);
    EXPECT_EQ(domain_size, domain_needed);
    EXPECT_EQ(Code(security.LookupAccountSidW(nullptr, sid, name, &name_size, domain, &domain_size,
                                              &use)),
              0u);
    EXPECT_EQ(Text(name), row.own_name);
    EXPECT_EQ(name_size, row.own_name.size());
    EXPECT_EQ(use, row.use);
  }
  const auto by_name = [&](LPCWSTR system, LPCWSTR account) {
    DWORD sid_size = sizeof sid, domain_size = 64;
    return Code(
        security.LookupAccountNameW(system, account, sid, &sid_size, domain, &domain_size, &use));
  };
  const auto by_sid = [&](LPCWSTR system, std::vector<BYTE> bytes) {
    DWORD name_size = 64, domain_size = 64;
    return Code(security.LookupAccountSidW(system, bytes.data(), name, &name_size, domain,
                                           &domain_size, &use));
  };
  const std::vector<BYTE> orphan = {1, 5, 0, 0, 0, 0, 0, 5, 21, 0, 0,   0,  1, 0,
                                    0, 0, 2, 0, 0, 0, 3, 0, 0,  0, 103, 18, 0, 0};
  EXPECT_EQ(by_name(nullptr, u"no-such-account"), kErrorNoneMapped);
  EXPECT_EQ(by_name(nullptr, u"no-such-domain\\user"), kErrorNoneMapped);
  EXPECT_EQ(by_name(kNobody, u"Everyone"), kErrorRpcServerUnavailable);
  EXPECT_EQ(by_sid(nullptr, orphan), kErrorNoneMapped);
  EXPECT_EQ(by_sid(kNobody, orphan), kErrorRpcServerUnavailable);
  if (const char* why = WhyNot(Trait::EmptyAccountNames)) GTEST_SKIP() << why;
  EXPECT_EQ(by_name(nullptr, u""), kErrorNoneMapped);
  EXPECT_EQ(by_sid(nullptr, {9, 1, 0, 0, 0, 0, 0, 5, 18, 0, 0, 0}), kErrorInvalidSid);
}

TEST_F(Rights, AreHeldByAccounts) {
  LocalSecurityAuthority& authority = platform_.authority;
  for (const auto& [status, code] : std::vector<std::pair<DWORD, DWORD>>{{0, 0},
                                                                         {0x8000001A, 259},
                                                                         {0xC0000008, 6},
                                                                         {0xC000000D, 87},
                                                                         {0xC0000022, 5},
                                                                         {0xC0000060, 1313},
                                                                         {0xC0020017, 1722},
                                                                         {0xC001045D, 1117},
                                                                         {0x12345, 317}}) {
    EXPECT_EQ(authority.LsaNtStatusToWinError(static_cast<NTSTATUS>(status)), code) << status;
  }
  LSA_OBJECT_ATTRIBUTES attributes{};
  const auto named = [](Text& text) {
    const auto size = static_cast<WORD>(text.size() * sizeof(WCHAR));
    return LSA_UNICODE_STRING{size, size, text.data()};
  };
  Text nobody = kNobody;
  LSA_UNICODE_STRING system = named(nobody);
  Policy policy(authority);
  const DWORD away = authority.LsaNtStatusToWinError(
      authority.LsaOpenPolicy(&system, &attributes, 0x801, policy.Receive()));
  EXPECT_TRUE(away == kErrorBadNetPath || away == kErrorRpcServerUnavailable) << away;
  ASSERT_EQ(authority.LsaOpenPolicy(nullptr, &attributes, 0x801, policy.Receive()), 0);
  AuthorityMemory memory(authority);
  DWORD count = 0;
  const auto holders = [&](Text right) {
    LSA_UNICODE_STRING name = named(right);
    return authority.LsaNtStatusToWinError(
        authority.LsaEnumerateAccountsWithUserRight(policy.Get(), &name, memory.Receive(), &count));
  };
  EXPECT_EQ(holders(u"SeTrustedCredManAccessPrivilege"), kErrorNoMoreItems);
  if (const char* why = WhyNot(Trait::UserRights)) GTEST_SKIP() << why;
  EXPECT_EQ(holders(u"SeNoSuchPrivilege"), kErrorNoSuchPrivilege);
  ASSERT_EQ(holders(u"SeBackupPrivilege"), 0u);
  const BYTE administrators[] = {1, 2, 0, 0, 0, 0, 0, 5, 32, 0, 0, 0, 32, 2, 0, 0};
  bool found = false;
  for (const auto& holder : RecordsIn<LSA_ENUMERATION_INFORMATION>(memory.Get(), count)) {
    found = found || std::memcmp(holder.Sid, administrators, sizeof administrators) == 0;
  }
  EXPECT_TRUE(found);
}

TEST_F(Hosts, AreResolvedWhileTheLibraryIsStarted) {
  Sockets& sockets = platform_.sockets;
  SOCKETS_DATA data{};
  EXPECT_EQ(sockets.WSAStartup(0, &data), 10092);
  EXPECT_EQ(sockets.WSAStartup(0x0101, nullptr), 10014);
  ASSERT_EQ(sockets.WSAStartup(0x0101, &data), 0);
  EXPECT_EQ(data.wVersion, 0x0101);
  EXPECT_GE(data.wHighVersion & 0xFF, 1);
  EXPECT_GE(data.iMaxSockets, 1);
  const HOSTENT* const host = sockets.gethostbyname("localhost");
  ASSERT_NE(host, nullptr);
  EXPECT_EQ(host->h_addrtype, 2);
  ASSERT_EQ(host->h_length, 4);
  ASSERT_NE(host->h_addr_list[0], nullptr);
  EXPECT_EQ(host->h_addr_list[0][0], 127);
  EXPECT_EQ(sockets.gethostbyname("no.such.host.invalid"), nullptr);
  EXPECT_NE(LastPlatformError(), 0u);
  EXPECT_EQ(sockets.WSACleanup(), 0);
  if (const char* why = WhyNot(Trait::SocketStarts)) GTEST_SKIP() << why;
  EXPECT_EQ(sockets.gethostbyname("localhost"), nullptr);
  EXPECT_EQ(LastPlatformError(), 10093u);
}

TEST_F(Hosts, OfferPipesOrNot) {
  const auto open = [&](LPCSTR name) {
    const FileHandle pipe(
        files_, files_.CreateFileA(name, 0xC0000000, 3, nullptr, kOpenExisting, 0, nullptr));
    return pipe ? 0 : LastPlatformError();
  };
  EXPECT_EQ(open("\\\\.\\PIPE\\veldmark2-no-such-pipe"), kErrorFileNotFound);
  EXPECT_EQ(open("\\\\nobody-there\\PIPE\\NETAPPSVC"), kErrorBadNetPath);
}

TEST_F(Servers, StandInNetworks) {
  NetworkProvider& provider = platform_.network_provider;
  NetworkEnumeration open(provider);
  NETINFOSTRUCT info{};
  info.cbStructure = sizeof info;
  if (const char* why = WhyNot(Trait::Connections)) {
    EXPECT_EQ(provider.WNetOpenEnumW(kResourceGlobalNet, 0, 0, nullptr, open.Receive()),
              kErrorNoNetwork);
    GTEST_SKIP() << why;
  }
  ASSERT_EQ(provider.WNetOpenEnumW(kResourceGlobalNet, 0, 0, nullptr, open.Receive()), 0u);
  std::vector<std::max_align_t> buffer(1024);
  DWORD count = 0xFFFFFFFF, size = 8;
  EXPECT_EQ(provider.WNetEnumResourceW(open.Get(), &count, buffer.data(), &size), kErrorMoreData);
  EXPECT_GT(size, sizeof(NETRESOURCEW));
  count = 0xFFFFFFFF;
  size = 16384;
  ASSERT_EQ(provider.WNetEnumResourceW(open.Get(), &count, buffer.data(), &size), 0u);
  bool has_usual = false;
  for (const auto& record : RecordsIn<NETRESOURCEW>(buffer.data(), count)) {
    ASSERT_EQ(provider.WNetGetNetworkInformationW(record.lpProvider, &info), 0u);
    has_usual = has_usual || (info.wNetType == 2 && record.dwDisplayType == kDisplayTypeNetwork);
  }
  EXPECT_TRUE(has_usual);
  count = 0xFFFFFFFF;
  EXPECT_EQ(provider.WNetEnumResourceW(open.Get(), &count, buffer.data(), &size),
            kErrorNoMoreItems);
  EXPECT_EQ(count, 0xFFFFFFFF);
  EXPECT_EQ(provider.WNetGetNetworkInformationW(u"No such provider", &info), kErrorBadProvider);
  info.cbStructure = 8;
  EXPECT_EQ(provider.WNetGetNetworkInformationW(u"No such provider", &info),
            kErrorInvalidParameter);
}

}  // namespace
}  // namespace veldmark
