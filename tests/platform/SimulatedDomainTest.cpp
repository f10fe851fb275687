#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "automation/LastError.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"
#include "platform/operations/Records.h"
#include "platform/simulated/estate_file/EstateFile.h"
#include "platform/simulated/families/SimulatedPlatform.h"

namespace veldmark::simulated {
namespace {

using Names = std::vector<std::string>;

const std::u16string kDomainSid = u"S-1-5-21-1085031214-1563985344-725345543";

// The domain of the example, asked through the operations.
class Domains : public testing::Test {
 protected:
  Domains()
      : simulated_(ReadEstateFile(VELDMARK_SOURCE_DIR "/examples/estate.json")),
        platform_(simulated_.platform()),
        net_(platform_.network_management),
        accounts_(platform_.accounts) {}
  void TearDown() override { EXPECT_EQ(simulated_.ledger().Report(), ""); }

  NetworkBuffer Buffer() { return NetworkBuffer(net_); }

  // Walks an enumeration of records that begin with a name to its end; `calls` counts its turns.
  template <class Record, class Handle, class Call>
  Names Walk(const Call& call, int* calls = nullptr) {
    Names names;
    Handle resume = 0;
    DWORD status = kErrorMoreData;
    for (int turn = 1; status == kErrorMoreData && turn < 50; ++turn) {
      NetworkBuffer buffer = Buffer();
      DWORD read = 0, total = 0;
      status = call(buffer.Receive(), &read, &total, &resume);
      EXPECT_TRUE(status == 0 || status == kErrorMoreData) << status;
      EXPECT_LE(read, total);
      EXPECT_EQ(resume == 0, status == 0);
      for (const Record& record : RecordsIn<Record>(buffer.Get(), read)) {
        LPWSTR name;
        std::memcpy(&name, &record, sizeof name);
        names.push_back(ToUtf8(name));
      }
      if (calls != nullptr) *calls = turn;
    }
    return names;
  }

  USER_INFO_3 User(LPCWSTR name, NetworkBuffer& buffer) {
    EXPECT_EQ(accounts_.NetUserGetInfo(u"\\\\beacon", name, 3, buffer.Receive()), 0u);
    USER_INFO_3 record{};
    if (buffer) std::memcpy(&record, buffer.Get(), sizeof record);
    return record;
  }

  // "DOMAIN\name S-1-... use", or the code that asking failed with; there and back.
  std::string Account(LPCWSTR system, LPCWSTR name) {
    BYTE sid[68];
    WCHAR text[64], domain[64];
    DWORD sid_size = sizeof sid, domain_size = 64, name_size = 64;
    INT use = 0, back = 0;
    Security& security = platform_.security;
    if (security.LookupAccountNameW(system, name, sid, &sid_size, domain, &domain_size, &use) ==
        0) {
      return std::to_string(LastPlatformError());
    }
    const auto found = Sid::FromBytes({sid, sid_size});
    domain_size = 64;
    EXPECT_EQ(
        security.LookupAccountSidW(system, sid, text, &name_size, domain, &domain_size, &back), 1)
        << LastPlatformError();
    EXPECT_EQ(use, back);
    return ToUtf8(domain) + "\\" + ToUtf8(text) + " " + (found ? ToUtf8(found->ToText()) : "?") +
           " " + std::to_string(use);
  }

  SimulatedPlatform simulated_;
  Platform platform_;
  NetworkManagement& net_;
  AccountManagement& accounts_;
};

TEST_F(Domains, AreWalkedInPiecesThatLoseNothing) {
  const LPCWSTR beacon = u"\\\\BEACON";
  constexpr DWORD kAll = kMaxPreferredLength;
  int calls = 0;
  EXPECT_EQ((Walk<USER_INFO_0, DWORD>(
                [&](BYTE** buffer, DWORD* read, DWORD* total, DWORD* resume) {
                  return accounts_.NetUserEnum(beacon, 0, 48, buffer, kAll, read, total, resume);
                },
                &calls)),
            (Names{"ATTIC$", "BEACON$", "HARBOUR$", "LANTERN$", "SIGNAL$", "VAULT$"}));
  EXPECT_EQ(calls, 3);
  EXPECT_EQ((Walk<USER_INFO_3, DWORD>(
                [&](BYTE** buffer, DWORD* read, DWORD* total, DWORD* resume) {
                  // Room for one record at most, so it goes one by one.
                  return accounts_.NetUserEnum(beacon, 3, 2, buffer, 1, read, total, resume);
                },
                &calls)),
            (Names{"Administrator", "Guest", "mreed", "old.hand", "svc.backup", "tolver"}));
  EXPECT_EQ(calls, 6);
  EXPECT_EQ((Walk<GROUP_INFO_0, UINT_PTR>(
                [&](BYTE** buffer, DWORD* read, DWORD* total, UINT_PTR* resume) {
                  return accounts_.NetGroupEnum(beacon, 0, buffer, kAll, read, total, resume);
                },
                &calls)),
            (Names{"Domain Admins", "Domain Computers", "Domain Controllers", "Domain Guests",
                   "Domain Users", "Empty Desks", "Enterprise Admins",
                   "Group Policy Creator Owners", "Harbour Staff", "Schema Admins"}));
  EXPECT_EQ(calls, 5);
  const auto members = [&](LPCWSTR group) {
    return Walk<GROUP_USERS_INFO_0, UINT_PTR>(
        [&](BYTE** buffer, DWORD* read, DWORD* total, UINT_PTR* resume) {
          return accounts_.NetGroupGetUsers(beacon, group, 0, buffer, kAll, read, total, resume);
        });
  };
  EXPECT_EQ(members(u"harbour staff"), (Names{"HARBOUR$", "mreed", "tolver"}));
  EXPECT_EQ(members(u"Domain Controllers"), (Names{"BEACON$", "SIGNAL$"}));
  EXPECT_EQ(members(u"Empty Desks"), Names());
  EXPECT_EQ((Walk<SHARE_INFO_1, DWORD>(
                [&](BYTE** buffer, DWORD* read, DWORD* total, DWORD* resume) {
                  return net_.NetShareEnum(u"LANTERN", 1, buffer, kAll, read, total, resume);
                },
                &calls)),
            (Names{"Backup", "C$", "D$", "Front desk", "Home", "IPC$", "Payroll", "Public", "Vault",
                   "Watch"}));
  EXPECT_EQ(calls, 5);

  // The members of a local group are SIDs, of anybody.
  Names sids;
  UINT_PTR resume = 0;
  DWORD read = 0, total = 0;
  NetworkBuffer buffer = Buffer();
  EXPECT_EQ(accounts_.NetLocalGroupGetMembers(nullptr, u"administrators", 0, buffer.Receive(), kAll,
                                              &read, &total, &resume),
            0u);
  for (const auto& record : RecordsIn<LOCALGROUP_MEMBERS_INFO_0>(buffer.Get(), read)) {
    sids.push_back(ToUtf8(Sid::FromAddress(record.lgrmi0_sid)->ToText()));
  }
  const std::string domain = ToUtf8(kDomainSid);
  const std::string own = ToUtf8(simulated_.estate().local().own_accounts().sid().ToText());
  EXPECT_EQ(sids, (Names{own + "-500", domain + "-512", domain + "-1104", domain + "-4711"}));
  EXPECT_NE(own, domain);

  // Users for display come with the index to go on with.
  Names shown;
  DWORD index = 0, status = kErrorMoreData;
  for (int turn = 0; turn < 10; ++turn) {
    void* block = nullptr;
    status = accounts_.NetQueryDisplayInformation(beacon, 1, index, 1000, kAll, &read, &block);
    buffer.Reset(static_cast<BYTE*>(block));
    if (block == nullptr) break;
    for (const auto& record : RecordsIn<NET_DISPLAY_USER>(block, read)) {
      shown.push_back(ToUtf8(record.usri1_name) + "/" + ToUtf8(record.usri1_full_name) + "/" +
                      std::to_string(record.usri1_flags));
      index = record.usri1_next_index;
    }
  }
  EXPECT_EQ(status, 0u);
  EXPECT_EQ(index, 6u);
  EXPECT_EQ(shown, (Names{"Administrator//66049", "Guest//66051", "mreed/Margaret Reed/513",
                          "old.hand/Oliver Hand/513", "svc.backup/Backup service/66113",
                          "tolver/Thomas Olver/529"}));
}

TEST_F(Domains, AreFoundOnTheNetworkByTheirBrowseListAndControllers) {
  const auto browse = [&](LPCWSTR domain, DWORD type) {
    NetworkBuffer buffer = Buffer();
    DWORD read = 0, total = 0, resume = 0;
    const DWORD status = net_.NetServerEnum(nullptr, 101, buffer.Receive(), kMaxPreferredLength,
                                            &read, &total, type, domain, &resume);
    Names lines;
    if (status != 0) lines.push_back(std::to_string(status));
    for (const auto& record : RecordsIn<SERVER_INFO_101>(buffer.Get(), read)) {
      lines.push_back(ToUtf8(record.sv101_name) + " " + std::to_string(record.sv101_version_major) +
                      " " + std::to_string(record.sv101_type) + " " + ToUtf8(record.sv101_comment));
    }
    return lines;
  };
  EXPECT_EQ(browse(u"quillmoss", kServerTypeAll),
            (Names{"BEACON 10 36875 Primary controller", "HARBOUR 10 4099 Margaret's desk",
                   "LANTERN 10 37379 Files and printers", "SIGNAL 10 36883 Backup controller",
                   "SILO 5 36867 Filer", "VAULT 10 36867 Nobody's business"}));
  EXPECT_EQ(browse(nullptr, 0x18).size(), 2u) << "this computer's own domain";
  EXPECT_EQ(browse(u"WORKSHOP", kServerTypeAll).size(), 1u);
  EXPECT_EQ(browse(u"WORKGROUP", kServerTypeAll), Names{"6118"});
  EXPECT_EQ(browse(u"NOWHERE", kServerTypeAll), Names{"6118"});
  EXPECT_EQ(browse(nullptr, 0x80000000).size(), 3u) << "domains and workgroups";

  struct Row {
    LPCWSTR server, domain;
    std::string answer;
  };
  const auto controller = [&](LPCWSTR server, LPCWSTR domain) {
    NetworkBuffer buffer = Buffer();
    const DWORD status = net_.NetGetDCName(server, domain, buffer.Receive());
    return status != 0 ? std::to_string(status) : ToUtf8(reinterpret_cast<LPCWSTR>(buffer.Get()));
  };
  for (const Row& row : std::vector<Row>{{nullptr, nullptr, "\\\\BEACON"},
                                         {u"", u"", "\\\\BEACON"},
                                         {u"\\\\MILL1", u"", "\\\\MILL1"},
                                         {nullptr, u"fernlea", "\\\\MILL1"},
                                         {nullptr, u"WORKSHOP", "2453"},
                                         {u"MILLRACE", nullptr, "2453"},
                                         {u"ATTIC", nullptr, "53"},
                                         {u"\\\\\\\\BEACON", nullptr, "53"}}) {
    EXPECT_EQ(controller(row.server, row.domain), row.answer);
  }
  simulated_.estate().FindComputer(u"BEACON")->SetReachable(false);
  EXPECT_EQ(controller(nullptr, nullptr), "2453") << "SIGNAL isn't the primary one";
  EXPECT_EQ(Account(nullptr, u"mreed").substr(0, 15), "QUILLMOSS\\mreed") << "but it knows them";

  LPWSTR trusted = nullptr;
  EXPECT_EQ(net_.NetEnumerateTrustedDomains(u"SIGNAL", &trusted), 0u);
  NetworkBuffer names(net_, reinterpret_cast<BYTE*>(trusted));
  EXPECT_EQ(TextView(trusted, 9), TextView(u"FERNLEA\0\0", 9));
  names.Reset();

  // Networks, and the domains of one; the texts lie in the caller's buffer.
  NetworkProvider& provider = platform_.network_provider;
  const auto resources = [&](const NETRESOURCEW* parent, DWORD size, int& calls) {
    Names lines;
    NetworkEnumeration open(provider);
    DWORD status = provider.WNetOpenEnumW(kResourceGlobalNet, 0, 0, parent, open.Receive());
    std::vector<std::max_align_t> buffer(1024);
    for (calls = 0; status == 0; ++calls) {
      DWORD count = 0xFFFFFFFF, bytes = size;
      status = provider.WNetEnumResourceW(open.Get(), &count, buffer.data(), &bytes);
      if (status != 0) break;
      for (const auto& record : RecordsIn<NETRESOURCEW>(buffer.data(), count)) {
        lines.push_back(ToUtf8(record.lpRemoteName) + "/" + ToUtf8(record.lpComment) + "/" +
                        std::to_string(record.dwDisplayType));
      }
    }
    lines.push_back(std::to_string(status));
    return lines;
  };
  int calls = 0;
  EXPECT_EQ(resources(nullptr, 16384, calls),
            (Names{"Microsoft Windows Network/The computers of the house/6",
                   "Quillmoss Print Network/The presses in the yard/6", "259"}));
  EXPECT_EQ(calls, 1);
  Text name(kUsualNetwork);
  NETRESOURCEW parent{};
  parent.lpRemoteName = parent.lpProvider = name.data();
  EXPECT_EQ(resources(&parent, 16384, calls),
            (Names{"QUILLMOSS/Quillmoss & Daughters/1", "FERNLEA/Fernlea Mills/1",
                   "WORKSHOP/Machines of the workshop/1", "259"}));
  EXPECT_EQ(calls, 2) << "two at a time";
  EXPECT_EQ(resources(&parent, 60, calls), Names{"234"});
  Text missing = u"Nothing";
  parent.lpProvider = missing.data();
  EXPECT_EQ(resources(&parent, 16384, calls), Names{"1204"});
  NETINFOSTRUCT info{};
  info.cbStructure = sizeof info;
  EXPECT_EQ(provider.WNetGetNetworkInformationW(u"Quillmoss Print Network", &info), 0u);
  EXPECT_EQ(info.wNetType, 20);
  simulated_.estate().networks().clear();
  EXPECT_EQ(resources(nullptr, 16384, calls), Names{"1222"});
}

TEST_F(Domains, TellWhatTheyKnowOfUsersServersAndShares) {
  NetworkBuffer buffer = Buffer();
  const USER_INFO_3 mreed = User(u"MREED", buffer);
  EXPECT_EQ(ToUtf8(mreed.usri3_name), "mreed");
  EXPECT_EQ(ToUtf8(mreed.usri3_home_dir) + ToUtf8(mreed.usri3_home_dir_drive),
            "\\\\LANTERN\\Home\\mreedH:");
  EXPECT_EQ(ToUtf8(mreed.usri3_script_path) + ToUtf8(mreed.usri3_usr_comment), "staff.vbsRoom 12");
  EXPECT_EQ(mreed.usri3_password, nullptr);
  EXPECT_EQ(mreed.usri3_last_logon, 1709643731u);
  EXPECT_EQ(mreed.usri3_acct_expires, kTimeForever);
  EXPECT_EQ(mreed.usri3_password_age, 14 * 86400u + 6 * 3600 + 1800);
  EXPECT_EQ(mreed.usri3_user_id, 1104u);
  EXPECT_EQ(User(u"tolver", buffer).usri3_flags & kAccountLockout, kAccountLockout);
  const USER_INFO_3 backup = User(u"svc.backup", buffer);
  EXPECT_EQ(backup.usri3_last_logon, 0u);
  EXPECT_EQ(backup.usri3_flags, 0x10241u);
  const USER_INFO_3 hand = User(u"old.hand", buffer);
  EXPECT_EQ(hand.usri3_acct_expires, 1688162400u);
  EXPECT_EQ(hand.usri3_password_expired, 1u);

  const auto groups_of = [&](LPCWSTR server, LPCWSTR user, DWORD flags, bool is_local) {
    DWORD read = 0, total = 0;
    const DWORD status =
        is_local ? accounts_.NetUserGetLocalGroups(server, user, 0, flags, buffer.Receive(),
                                                   kMaxPreferredLength, &read, &total)
                 : accounts_.NetUserGetGroups(server, user, 0, buffer.Receive(),
                                              kMaxPreferredLength, &read, &total);
    Names names;
    if (status != 0) names.push_back(std::to_string(status));
    for (const auto& record : RecordsIn<GROUP_USERS_INFO_0>(buffer.Get(), read)) {
      names.push_back(ToUtf8(record.grui0_name));
    }
    return names;
  };
  EXPECT_EQ(groups_of(u"BEACON", u"mreed", 0, false),
            (Names{"Domain Admins", "Domain Users", "Harbour Staff"}));
  EXPECT_EQ(groups_of(nullptr, u"QUILLMOSS\\mreed", 0, true), Names{"Administrators"});
  EXPECT_EQ(groups_of(nullptr, u"mreed", kIncludeIndirectGroups, true),
            (Names{"Administrators", "Scan Operators", "Users"}));
  EXPECT_EQ(groups_of(nullptr, u"mreed", 2, true), Names{"87"});
  EXPECT_EQ(groups_of(nullptr, u"Everyone", 0, true), Names{"2221"});
  EXPECT_EQ(groups_of(nullptr, u"mreed", 0, false), Names{"2221"}) << "no account of HARBOUR";

  const auto server = [&](LPCWSTR name, DWORD level) {
    return net_.NetServerGetInfo(name, level, buffer.Receive());
  };
  EXPECT_EQ(server(u"VAULT", 102), kErrorAccessDenied);
  EXPECT_EQ(server(u"VAULT", 101), 0u);
  ASSERT_EQ(server(u"\\\\harbour", 102), 0u);
  SERVER_INFO_102 info;
  std::memcpy(&info, buffer.Get(), sizeof info);
  EXPECT_EQ(ToUtf8(info.sv102_name) + ToUtf8(info.sv102_comment) + ToUtf8(info.sv102_userpath),
            "HARBOURMargaret's deskC:\\");
  EXPECT_EQ(info.sv102_users, 20u);
  ASSERT_EQ(net_.NetWkstaGetInfo(nullptr, 100, buffer.Receive()), 0u);
  WKSTA_INFO_100 station;
  std::memcpy(&station, buffer.Get(), sizeof station);
  EXPECT_EQ(ToUtf8(station.wki100_langroup), "QUILLMOSS");

  USER_MODALS_INFO_0 rules[2];
  for (const int index : {0, 1}) {
    const LPCWSTR asked = index == 0 ? u"LANTERN" : u"BEACON";
    ASSERT_EQ(accounts_.NetUserModalsGet(asked, 0, buffer.Receive()), 0u);
    std::memcpy(&rules[index], buffer.Get(), sizeof rules[index]);
  }
  EXPECT_EQ(rules[0].usrmod0_max_passwd_age, kTimeForever);
  EXPECT_EQ(rules[1].usrmod0_min_passwd_len, 8u);
  EXPECT_EQ(rules[1].usrmod0_password_hist_len, 12u);
}

TEST_F(Domains, ResolveAccountsAsEachComputerKnowsThem) {
  const std::string domain = ToUtf8(kDomainSid);
  const std::string own = ToUtf8(simulated_.estate().local().own_accounts().sid().ToText());
  struct Row {
    LPCWSTR system, name;
    std::string found;
  };
  simulated_.estate().AddKnownAccount(
      {Sid(5, {21, 1, 2, 3, 1300}), u"QUILLMOSS", u"gone", SidUse::DeletedAccount});
  for (const Row& row : std::vector<Row>{
           {u"LANTERN", u"nt authority\\system", "NT AUTHORITY\\SYSTEM S-1-5-18 5"},
           {nullptr, u"scanner", "HARBOUR\\scanner " + own + "-1200 1"},
           {nullptr, u"Administrator", "HARBOUR\\Administrator " + own + "-500 1"},
           {nullptr, u"quillmoss\\administrator", "QUILLMOSS\\Administrator " + domain + "-500 1"},
           {u"\\\\BEACON", u"administrator", "QUILLMOSS\\Administrator " + domain + "-500 1"},
           {nullptr, u"mreed", "QUILLMOSS\\mreed " + domain + "-1104 1"},
           {nullptr, u"QUILLMOSS\\Harbour Staff", "QUILLMOSS\\Harbour Staff " + domain + "-1110 2"},
           {u"BEACON", u"Ledger Readers", "QUILLMOSS\\Ledger Readers " + domain + "-1112 4"},
           {nullptr, u"QUILLMOSS", "QUILLMOSS\\ " + domain + " 3"},
           {nullptr, u"HARBOUR", "HARBOUR\\ " + own + " 3"},
           {nullptr, u"FERNLEA\\scanner", "1332"},
           {nullptr, u"gone", "QUILLMOSS\\gone S-1-5-21-1-2-3-1300 6"},
           {u"MILLRACE", u"mreed", "1332"},
           {u"MILLRACE", u"HARBOUR\\scanner", "1332"},
           {u"MILL1", u"QUILLMOSS\\mreed", "1332"},
           {u"ATTIC", u"mreed", "1722"},
           {u"\\\\\\\\BEACON", u"mreed", "1722"},
           {nullptr, u"", "1332"}}) {
    EXPECT_EQ(Account(row.system, row.name), row.found);
  }
  EXPECT_EQ(Account(nullptr, u"miller").substr(0, 14), "FERNLEA\\miller");
  EXPECT_EQ(Account(nullptr, u"HARBOUR$").substr(0, 18), "QUILLMOSS\\HARBOUR$");
  simulated_.estate().ForgetKnownAccount(Sid(5, {13}));
  EXPECT_EQ(Account(nullptr, u"TERMINAL SERVER USER"), "1332");
  for (const TextView controller : {u"BEACON", u"SIGNAL"}) {
    simulated_.estate().FindComputer(controller)->SetReachable(false);
  }
  EXPECT_EQ(Account(nullptr, u"mreed"), "1332");
  EXPECT_EQ(Account(nullptr, u"FERNLEA\\miller"), "1332") << "it is asked of the own controllers";
  EXPECT_EQ(Account(nullptr, u"scanner").substr(0, 7), "HARBOUR");
}

TEST_F(Domains, KeepWhatIsWrittenAndGuardIt) {
  Estate& estate = simulated_.estate();
  AccountDatabase& domain = *estate.FindDomain(u"QUILLMOSS")->accounts;
  Text name = u"Night Shift", comment = u"Works late", other = u"Another name";
  const GROUP_INFO_1 group{name.data(), comment.data()};
  const LOCALGROUP_INFO_1 local{name.data(), comment.data()};
  const GROUP_INFO_1 renamed{other.data(), other.data()};
  const auto bytes = [](const auto& record) { return reinterpret_cast<const BYTE*>(&record); };
  DWORD parameter = 0;
  const std::string password = "a long new password";
  Text secret(password.begin(), password.end()), brief = u"short";
  const USER_INFO_1003 good{secret.data()}, bad{brief.data()};
  USER_INFO_1 user{};
  user.usri1_priv = 1;
  user.usri1_home_dir = other.data();
  user.usri1_comment = comment.data();
  user.usri1_flags = kAccountNormal | kAccountDisabled;
  USER_INFO_1 promoted = user;
  promoted.usri1_priv = 2;
  const std::vector<std::pair<DWORD, std::function<DWORD()>>> calls = {
      {0, [&] { return accounts_.NetGroupAdd(u"BEACON", 1, bytes(group), &parameter); }},
      {2223, [&] { return accounts_.NetGroupAdd(u"BEACON", 1, bytes(group), &parameter); }},
      {2223, [&] { return accounts_.NetLocalGroupAdd(u"BEACON", 1, bytes(local), nullptr); }},
      {2226, [&] { return accounts_.NetGroupAdd(u"SIGNAL", 1, bytes(group), nullptr); }},
      {2226, [&] { return accounts_.NetGroupAdd(nullptr, 1, bytes(group), nullptr); }},
      {5, [&] { return accounts_.NetLocalGroupAdd(u"VAULT", 1, bytes(local), nullptr); }},
      {0, [&] { return accounts_.NetLocalGroupAdd(nullptr, 1, bytes(local), nullptr); }},
      {124, [&] { return accounts_.NetLocalGroupAdd(nullptr, 0, bytes(local), nullptr); }},
      {87, [&] { return accounts_.NetLocalGroupAdd(nullptr, 1, nullptr, nullptr); }},
      {0,
       [&] {
         return accounts_.NetGroupSetInfo(u"BEACON", u"night shift", 1, bytes(renamed), nullptr);
       }},
      {2220,
       [&] {
         return accounts_.NetGroupSetInfo(u"BEACON", u"Day Shift", 1, bytes(group), nullptr);
       }},
      {2245,
       [&] { return accounts_.NetUserSetInfo(u"BEACON", u"tolver", 1003, bytes(bad), nullptr); }},
      {2221,
       [&] { return accounts_.NetUserSetInfo(u"BEACON", u"nobody", 1003, bytes(good), nullptr); }},
      {5, [&] { return accounts_.NetUserSetInfo(u"VAULT", u"Guest", 1003, bytes(good), nullptr); }},
      {0,
       [&] { return accounts_.NetUserSetInfo(u"BEACON", u"tolver", 1003, bytes(good), nullptr); }},
      {0, [&] { return accounts_.NetUserSetInfo(u"BEACON", u"tolver", 1, bytes(user), nullptr); }},
      {87,
       [&] {
         return accounts_.NetUserSetInfo(u"BEACON", u"tolver", 1, bytes(promoted), &parameter);
       }},
      {0, [&] { return net_.NetShareDel(u"\\\\LANTERN", u"public", 0); }},
      {53, [&] { return net_.NetShareDel(u"\\\\", u"Data", 0); }},
      {5, [&] { return net_.NetShareDel(u"VAULT", u"Drop", 0); }}};
  for (std::size_t index = 0; index < calls.size(); ++index) {
    EXPECT_EQ(calls[index].second(), calls[index].first) << "call " << index;
  }
  EXPECT_EQ(parameter, 5u) << "the privilege can't be changed so";
  EXPECT_EQ(ToUtf8(domain.group(u"Night Shift").comment), "Another name")
      << "and is still so called";
  EXPECT_EQ(domain.FindGroup(u"Another name"), nullptr);
  EXPECT_EQ(estate.local().own_accounts().local_group(u"Night Shift").comment, comment);
  const UserAccount& tolver = domain.user(u"tolver");
  EXPECT_EQ(Text(tolver.password->c_str()), secret);
  EXPECT_EQ(*tolver.password_set, estate.unix_time());
  EXPECT_EQ(tolver.flags, kAccountNormal | kAccountDisabled) << "and unlocked";
  EXPECT_EQ(tolver.home_folder + tolver.comment, other + comment);
  EXPECT_EQ(estate.FindComputer(u"LANTERN")->FindShare(u"Public"), nullptr);
  for (const auto& entry : simulated_.journal().entries()) {
    EXPECT_EQ(entry.argument.find(password), std::string::npos) << entry.operation;
  }
}

TEST_F(Domains, TellWhoHoldsARightAndWhereAHostIs) {
  LocalSecurityAuthority& authority = platform_.authority;
  simulated_.estate().local().GrantBytes(u"SeDebugPrivilege", {9, 1, 0, 0, 0, 0, 0, 5});
  const auto holders = [&](TextView system, TextView right, DWORD access = 0x801) {
    Text system_text(system), right_text(right);
    const auto record = [](Text& text) {
      const auto size = static_cast<WORD>(text.size() * sizeof(WCHAR));
      return LSA_UNICODE_STRING{size, size, text.data()};
    };
    LSA_UNICODE_STRING system_name = record(system_text), name = record(right_text);
    LSA_OBJECT_ATTRIBUTES attributes{};
    Policy policy(authority);
    AuthorityMemory memory(authority);
    DWORD count = 0;
    NTSTATUS status = authority.LsaOpenPolicy(&system_name, &attributes, access, policy.Receive());
    if (status == 0) {
      status = authority.LsaEnumerateAccountsWithUserRight(policy.Get(), &name, memory.Receive(),
                                                           &count);
    }
    Names sids;
    if (status != 0) sids.push_back(std::to_string(authority.LsaNtStatusToWinError(status)));
    for (const auto& holder : RecordsIn<LSA_ENUMERATION_INFORMATION>(memory.Get(), count)) {
      const auto sid = Sid::FromAddress(holder.Sid);
      sids.push_back(sid ? ToUtf8(sid->ToText()) : "none");
    }
    return sids;
  };
  EXPECT_EQ(holders(u"\\\\LANTERN", u"sebackupprivilege"), (Names{"S-1-5-32-544", "S-1-5-32-551"}));
  EXPECT_EQ(holders(u"", u"SeDebugPrivilege"), (Names{"S-1-5-32-544", "none"}));
  EXPECT_EQ(holders(u"", u"SeDebugPrivilege", 0x800), Names{"5"});
  EXPECT_EQ(holders(u"\\\\VAULT", u"SeDebugPrivilege"), Names{"5"});
  EXPECT_EQ(holders(u"\\\\\\\\LANTERN", u"SeDebugPrivilege"), Names{"1722"});

  Sockets& sockets = platform_.sockets;
  const auto resolve = [&](LPCSTR name) {
    const HOSTENT* const host = sockets.gethostbyname(name);
    if (host == nullptr) return std::to_string(LastPlatformError());
    std::string text;
    for (char** address = host->h_addr_list; *address != nullptr; ++address) {
      for (int index = 0; index < host->h_length; ++index) {
        text += std::to_string(static_cast<BYTE>((*address)[index])) + " ";
      }
    }
    return text;
  };
  SOCKETS_DATA data{};
  EXPECT_EQ(sockets.WSAStartup(0x0101, &data), 0);
  EXPECT_EQ(data.wHighVersion, 0x0202);
  EXPECT_EQ(resolve("lantern"), "10 20 0 2 10 20 1 2 ");
  EXPECT_EQ(resolve("intranet"), "10 20 0 80 10 20 0 81 ");
  EXPECT_EQ(resolve(nullptr), "10 20 0 7 ");
  EXPECT_EQ(resolve("nowhere"), "11001");
  simulated_.faults().FailEvery("WSACleanup", 10050);
  EXPECT_EQ(sockets.WSACleanup(), -1);
  EXPECT_EQ(LastPlatformError(), 10050u);
  simulated_.estate().socket_library() = {0x0001, 0};
  EXPECT_EQ(sockets.WSAStartup(0x0101, &data), 0);
  EXPECT_EQ(data.wVersion, 0x0001);
  EXPECT_EQ(data.iMaxSockets, 0);
  simulated_.faults().Clear();
  EXPECT_EQ(sockets.WSACleanup(), 0);

  const auto pipe = [&](LPCSTR name) {
    const FileHandle handle(
        platform_.files,
        platform_.files.CreateFileA(name, 0xC0000000, 3, nullptr, kOpenExisting, 0, nullptr));
    return handle ? 0 : LastPlatformError();
  };
  EXPECT_EQ(pipe("\\\\SILO\\PIPE\\netappsvc"), 0u);
  EXPECT_EQ(pipe("\\\\LANTERN\\PIPE\\NETAPPSVC"), kErrorFileNotFound);
  EXPECT_EQ(pipe("\\\\ATTIC\\PIPE\\NETAPPSVC"), kErrorBadNetPath);
  EXPECT_EQ(pipe("C:\\Data\\readme.txt"), kErrorAccessDenied) << "an ordinary, read-only file";
}

}  // namespace
}  // namespace veldmark::simulated
