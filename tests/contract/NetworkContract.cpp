#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "automation/CaseMapping.h"
#include "automation/Text.h"
#include "contract/World.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"
#include "platform/operations/Records.h"
#include "support/NetworkCalls.h"

namespace veldmark {
namespace {

using Names = std::vector<Text>;

constexpr LPCWSTR kNobody = u"\\\\nobody-there";

class NetworkContract : public Contract, protected NetworkCalls {
 protected:
  NetworkContract() : NetworkCalls(platform_) {
    if (WhyNot(Trait::ClearedResults)) unset = nullptr;
  }

  static bool Has(const Names& names, TextView name) {
    return std::ranges::any_of(names, [&](const Text& each) { return EqualNoCase(each, name); });
  }
};

using Servers = NetworkContract;
using Accounts = NetworkContract;
using Lookups = NetworkContract;
using Rights = NetworkContract;
using Hosts = NetworkContract;

TEST_F(Servers, TellOfThemselvesLevelByLevel) {
  const Text own = OwnName();
  const Text server = u"\\\\" + own;
  for (const LPCWSTR name : {LPCWSTR{nullptr}, own.c_str(), server.c_str()}) {
    ASSERT_EQ(Ask(&NetworkManagement::NetServerGetInfo, name, 102), 0u);
    const auto record = First<SERVER_INFO_102>();
    const NetworkBuffer whole = std::move(buffer);
    EXPECT_NE(record.sv102_userpath, nullptr);
    ASSERT_EQ(Ask(&NetworkManagement::NetServerGetInfo, name, 101), 0u);
    const auto brief = First<SERVER_INFO_101>();
    EXPECT_TRUE(EqualNoCase(brief.sv101_name, own)) << ToUtf8(brief.sv101_name);
    EXPECT_EQ(brief.sv101_platform_id, kPlatformIdNt);
    EXPECT_GE(brief.sv101_version_major & 15, 5u);
    EXPECT_NE(brief.sv101_type & kServerTypeNt, 0u);
    EXPECT_EQ(Text(record.sv102_name), Text(brief.sv101_name));
    EXPECT_EQ(record.sv102_version_major, brief.sv101_version_major);
    EXPECT_EQ(record.sv102_type, brief.sv101_type);
    EXPECT_EQ(Text(record.sv102_comment), Text(brief.sv101_comment));
    ASSERT_EQ(Ask(&NetworkManagement::NetServerGetInfo, name, 100), 0u);
    EXPECT_TRUE(EqualNoCase(First<SERVER_INFO_100>().sv100_name, own));
    ASSERT_EQ(Ask(&NetworkManagement::NetWkstaGetInfo, name, 100), 0u);
    EXPECT_TRUE(EqualNoCase(First<WKSTA_INFO_100>().wki100_computername, own));
    EXPECT_FALSE(Text(First<WKSTA_INFO_100>().wki100_langroup).empty());
  }
  ASSERT_EQ(Ask(&NetworkManagement::NetServerDiskEnum, nullptr, 0), 0u);
  Names letters;
  for (DWORD index = 0; index < read; ++index) {
    letters.emplace_back(reinterpret_cast<LPCWSTR>(buffer.Get()) + index * 3);
  }
  EXPECT_TRUE(Has(letters, world_->scratch().substr(0, 2)));
  for (const DWORD level : {1, 2}) {
    ASSERT_EQ(Ask(&NetworkManagement::NetShareEnum, nullptr, level), 0u);
    EXPECT_EQ(read, total);
  }
  EXPECT_EQ(Ask(&NetworkManagement::NetServerGetInfo, nullptr, 103), 124u);
  EXPECT_EQ(Ask(&NetworkManagement::NetServerGetInfo, kNobody, 102), 53u);
  EXPECT_EQ(Ask(&NetworkManagement::NetWkstaGetInfo, nullptr, 99), 124u);
  EXPECT_EQ(Ask(&NetworkManagement::NetWkstaGetInfo, u"nobody-there", 100), 53u);
  EXPECT_EQ(Ask(&NetworkManagement::NetShareEnum, nullptr, 9), 124u);
  EXPECT_EQ(Ask(&NetworkManagement::NetShareEnum, kNobody, 1), 53u);
  EXPECT_EQ(Ask(&NetworkManagement::NetServerDiskEnum, nullptr, 1), 124u);
  EXPECT_EQ(Ask(&NetworkManagement::NetServerDiskEnum, kNobody, 0), 53u);
  EXPECT_EQ(Ask(&NetworkManagement::NetShareGetInfo, nullptr, u"no-such-share", 502), 2310u);
  EXPECT_EQ(Ask(&NetworkManagement::NetShareGetInfo, u"", u"no-such-share", 777), 124u);
  EXPECT_EQ(Ask(&NetworkManagement::NetShareGetInfo, kNobody, u"C$", 502), 53u);
  EXPECT_EQ(net.NetShareDel(nullptr, u"no-such-share", 0), 2310u);
  EXPECT_EQ(net.NetShareDel(kNobody, u"x", 0), 53u);
  EXPECT_EQ(Ask(&NetworkManagement::NetGetDCName, nullptr, u"no-such-domain"), 2453u);
  DWORD on = 0;
  EXPECT_EQ(net.NetServerEnum(nullptr, 101, buffer.Receive(), room, &read, &total, kServerTypeAll,
                              u"no-such-domain", &on),
            6118u);
  EXPECT_EQ(net.NetApiBufferFree(nullptr), 0u);
}

TEST_F(Accounts, OfUsersAreListedReadAndRefused) {
  const Text& user = world_->user();
  for (const DWORD level : {0, 3}) {
    const auto list = [&](DWORD filter) {
      EXPECT_EQ(Ask(&AccountManagement::NetUserEnum, nullptr, level, filter), 0u);
      return level == 0 ? NamesIn<USER_INFO_0>() : NamesIn<USER_INFO_3>();
    };
    EXPECT_TRUE(Has(list(kFilterNormalAccount), user)) << level;
    EXPECT_TRUE(Has(list(0), user)) << level;
    EXPECT_EQ(list(kFilterWorkstationTrustAccount | kFilterServerTrustAccount), Names()) << level;
  }
  ASSERT_EQ(Ask(&AccountManagement::NetUserGetInfo, nullptr, user.c_str(), 3), 0u);
  const auto record = First<USER_INFO_3>();
  const NetworkBuffer whole = std::move(buffer);
  ASSERT_EQ(Ask(&AccountManagement::NetUserGetInfo, nullptr, user.c_str(), 10), 0u);
  const auto brief = First<USER_INFO_10>();
  EXPECT_EQ(Text(record.usri3_name), Text(brief.usri10_name));
  EXPECT_EQ(Text(record.usri3_full_name), Text(brief.usri10_full_name));
  EXPECT_EQ(record.usri3_password, nullptr);
  EXPECT_EQ(record.usri3_flags & (kAccountNormal | kAccountDisabled), kAccountNormal);
  EXPECT_EQ(record.usri3_acct_expires, kTimeForever);

  // From an index that each record tells, and to the end: nothing and no block.
  const auto display = [&](DWORD level, DWORD index) {
    void* block = nullptr;
    const DWORD code =
        accounts.NetQueryDisplayInformation(nullptr, level, index, 1000, room, &read, &block);
    buffer.Reset(static_cast<BYTE*>(block));
    return code;
  };
  Names shown;
  DWORD index = 0;
  for (int turns = 0; turns < 100; ++turns) {
    ASSERT_EQ(display(1, index), 0u);
    if (!buffer) break;
    for (const Text& name : NamesIn<NET_DISPLAY_USER>()) shown.push_back(name);
    index = RecordsIn<NET_DISPLAY_USER>(buffer.Get(), read).back().usri1_next_index;
  }
  EXPECT_EQ(read, 0u);
  EXPECT_TRUE(Has(shown, user));
  EXPECT_EQ(shown.size(), index);
  ASSERT_EQ(display(1, 1), 0u);
  EXPECT_EQ(NamesIn<NET_DISPLAY_USER>(), Names(shown.begin() + 1, shown.end()));
  ASSERT_EQ(Ask(&AccountManagement::NetUserGetLocalGroups, nullptr, user.c_str(), 0, 0), 0u);
  EXPECT_TRUE(Has(NamesIn<LOCALGROUP_USERS_INFO_0>(), u"Administrators"));

  EXPECT_EQ(Ask(&AccountManagement::NetUserGetInfo, nullptr, u"nobody-here", 10), 2221u);
  EXPECT_EQ(Ask(&AccountManagement::NetUserGetInfo, nullptr, u"nobody-here", 3), 2221u);
  EXPECT_EQ(Ask(&AccountManagement::NetUserGetInfo, nullptr, user.c_str(), 99), 124u);
  EXPECT_EQ(Ask(&AccountManagement::NetUserGetInfo, kNobody, user.c_str(), 3), 53u);
  EXPECT_EQ(Ask(&AccountManagement::NetUserEnum, nullptr, 99, 0), 124u);
  EXPECT_EQ(display(9, 0), 124u);
  EXPECT_EQ(Ask(&AccountManagement::NetUserGetLocalGroups, nullptr, u"nobody-here", 0, 0), 2221u);
}

TEST_F(Accounts, OfGroupsHaveMembersAndAPolicy) {
  ASSERT_EQ(Ask(&AccountManagement::NetLocalGroupEnum, nullptr, 1), 0u);
  const Names groups = NamesIn<LOCALGROUP_INFO_1>();
  EXPECT_TRUE(Has(groups, u"Administrators") && Has(groups, u"Users"));
  ASSERT_EQ(Ask(&AccountManagement::NetLocalGroupGetInfo, nullptr, u"administrators", 1), 0u);
  EXPECT_EQ(Text(First<LOCALGROUP_INFO_1>().lgrpi1_name), u"Administrators");
  EXPECT_NE(First<LOCALGROUP_INFO_1>().lgrpi1_comment, nullptr);
  ASSERT_EQ(Ask(&AccountManagement::NetLocalGroupGetMembers, nullptr, u"Administrators", 0), 0u);
  Names members;
  for (const auto& record : RecordsIn<LOCALGROUP_MEMBERS_INFO_0>(buffer.Get(), read)) {
    WCHAR name[64], domain[64];
    DWORD name_size = 64, domain_size = 64;
    INT use = 0;
    if (platform_.security.LookupAccountSidW(nullptr, record.lgrmi0_sid, name, &name_size, domain,
                                             &domain_size, &use) != 0) {
      members.emplace_back(name);
    }
  }
  EXPECT_TRUE(Has(members, world_->user()));

  ASSERT_EQ(Ask(&AccountManagement::NetUserModalsGet, nullptr, 0), 0u);
  EXPECT_EQ(First<USER_MODALS_INFO_0>().usrmod0_min_passwd_len, 0u);
  EXPECT_EQ(First<USER_MODALS_INFO_0>().usrmod0_force_logoff, kTimeForever);
  ASSERT_EQ(Ask(&AccountManagement::NetUserModalsGet, nullptr, 3), 0u);
  EXPECT_EQ(First<USER_MODALS_INFO_3>().usrmod3_lockout_threshold, 0u);
  EXPECT_EQ(Ask(&AccountManagement::NetLocalGroupGetInfo, nullptr, u"no-group", 1), 1376u);
  EXPECT_EQ(Ask(&AccountManagement::NetLocalGroupGetInfo, nullptr, u"Users", 9), 124u);
  EXPECT_EQ(Ask(&AccountManagement::NetLocalGroupGetMembers, nullptr, u"no-group", 0), 1376u);
  EXPECT_EQ(Ask(&AccountManagement::NetLocalGroupGetMembers, nullptr, u"Users", 9), 124u);
  EXPECT_EQ(Ask(&AccountManagement::NetLocalGroupEnum, nullptr, 9), 124u);
  EXPECT_EQ(Ask(&AccountManagement::NetUserModalsGet, nullptr, 9), 124u);
  EXPECT_EQ(Ask(&AccountManagement::NetUserModalsGet, kNobody, 0), 53u);

  if (WhyNot(Trait::LocalGroupChanges) == nullptr) {
    Text name = u"Veldmark2 contract", comment = u"one", other = u"two";
    LOCALGROUP_INFO_1 record{name.data(), comment.data()};
    const auto* const bytes = reinterpret_cast<const BYTE*>(&record);
    const auto change = [&](const Text& group) {
      return accounts.NetLocalGroupSetInfo(nullptr, group.c_str(), 1, bytes, nullptr);
    };
    EXPECT_EQ(accounts.NetLocalGroupAdd(nullptr, 1, bytes, nullptr), 0u);
    EXPECT_EQ(accounts.NetLocalGroupAdd(nullptr, 1, bytes, nullptr), 1379u);
    record = {other.data(), other.data()};
    EXPECT_EQ(change(name), 0u);
    EXPECT_EQ(change(other), 1376u);
    ASSERT_EQ(Ask(&AccountManagement::NetLocalGroupGetInfo, nullptr, name.c_str(), 1), 0u);
    EXPECT_EQ(Text(First<LOCALGROUP_INFO_1>().lgrpi1_comment), other);
  }
  if (const char* why = WhyNot(Trait::GlobalGroups)) GTEST_SKIP() << why;
  ASSERT_EQ(Ask(&AccountManagement::NetGroupEnum, nullptr, 0), 0u);
  EXPECT_EQ(NamesIn<GROUP_INFO_0>(), Names{u"None"}) << "of a computer that is no controller";
  ASSERT_EQ(Ask(&AccountManagement::NetUserGetGroups, nullptr, world_->user().c_str(), 0), 0u);
  EXPECT_EQ(NamesIn<GROUP_USERS_INFO_0>(), Names{u"None"});
  ASSERT_EQ(Ask(&AccountManagement::NetGroupGetInfo, nullptr, u"none", 2), 0u);
  EXPECT_EQ(First<GROUP_INFO_2>().grpi2_group_id, 513u);
  EXPECT_EQ(Ask(&AccountManagement::NetGroupGetInfo, nullptr, u"no-group", 2), 2220u);
  EXPECT_EQ(Ask(&AccountManagement::NetUserGetGroups, nullptr, u"nobody-here", 0), 2221u);
  EXPECT_EQ(Ask(&AccountManagement::NetGroupGetUsers, nullptr, u"no-group", 0), 2220u);
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
    const auto find_sid = [&](void* to, WCHAR* its_domain) {
      return Code(security.LookupAccountNameW(nullptr, row.name.c_str(), to, &sid_size, its_domain,
                                              &domain_size, &use));
    };
    const auto find_name = [&](WCHAR* to, WCHAR* its_domain) {
      return Code(
          security.LookupAccountSidW(nullptr, sid, to, &name_size, its_domain, &domain_size, &use));
    };
    ASSERT_EQ(find_sid(nullptr, nullptr), kErrorInsufficientBuffer);
    EXPECT_EQ(sid_size, row.sid_size);
    const DWORD domain_needed = domain_size;
    ASSERT_EQ(find_sid(sid, domain), 0u);
    EXPECT_EQ(use, row.use);
    EXPECT_EQ(domain_size + 1, domain_needed);
    EXPECT_EQ(Text(domain).size(), domain_size);
    EXPECT_TRUE(row.use == 1 || domain == row.domain);
    domain_size = 0;
    EXPECT_EQ(find_name(nullptr, nullptr), kErrorInsufficientBuffer);
    EXPECT_EQ(name_size, row.own_name.size() + 1);
    EXPECT_EQ(domain_size, domain_needed);
    EXPECT_EQ(find_name(name, domain), 0u);
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
  const std::pair<DWORD, DWORD> rows[] = {
      {0, 0},          {0x8000001A, 259},  {0xC0000008, 6},    {0xC000000D, 87},
      {0xC0000022, 5}, {0xC0000060, 1313}, {0xC0020017, 1722}, {0xC001045D, 1117},
      {0x12345, 317}};
  for (const auto& [status, code] : rows) {
    EXPECT_EQ(authority.LsaNtStatusToWinError(static_cast<NTSTATUS>(status)), code) << status;
  }
  using Holders = std::vector<std::string>;
  const Holders away = HoldersOf(u"SeBackupPrivilege", kNobody);
  EXPECT_TRUE(away == Holders{"53"} || away == Holders{"1722"}) << away.front();
  EXPECT_EQ(HoldersOf(u"SeTrustedCredManAccessPrivilege"), Holders{"259"});
  if (const char* why = WhyNot(Trait::UserRights)) GTEST_SKIP() << why;
  EXPECT_EQ(HoldersOf(u"SeNoSuchPrivilege"), Holders{"1313"});
  EXPECT_EQ(std::ranges::count(HoldersOf(u"SeBackupPrivilege"), "BA"), 1);
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
  EXPECT_NE(Code(sockets.gethostbyname("no.such.host.invalid")), 0u);
  EXPECT_EQ(sockets.WSACleanup(), 0);
  if (const char* why = WhyNot(Trait::SocketStarts)) GTEST_SKIP() << why;
  EXPECT_EQ(Code(sockets.gethostbyname("localhost")), 10093u);
}

TEST_F(Hosts, OfferPipesOrNot) {
  const auto open = [&](LPCSTR name) {
    return Code(FileHandle(
        files_, files_.CreateFileA(name, 0xC0000000, 3, nullptr, kOpenExisting, 0, nullptr)));
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

TEST_F(Servers, HaveANetworkPathForRedirectedDrivesOnly) {
  DWORD size = 0;
  const auto ask = [&](LPCWSTR path, DWORD level) {
    return platform_.network_provider.WNetGetUniversalNameW(path, level, nullptr, &size);
  };
  EXPECT_EQ(ask(u"C:\\", kUniversalNameInfoLevel), kErrorNotConnected);
  EXPECT_EQ(ask(u"nonsense", kUniversalNameInfoLevel), kErrorBadDevice);
  EXPECT_EQ(ask(u"C:\\", 7), kErrorInvalidLevel);
}

}  // namespace
}  // namespace veldmark
