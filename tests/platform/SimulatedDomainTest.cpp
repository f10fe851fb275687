#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "automation/LastError.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"
#include "platform/simulated/estate_file/EstateFile.h"
#include "platform/simulated/families/SimulatedPlatform.h"
#include "support/NetworkCalls.h"

namespace veldmark::simulated {
namespace {

using Names = std::vector<std::string>;
using Accounts = AccountManagement;

const std::u16string kDomainSid = u"S-1-5-21-1085031214-1563985344-725345543";

struct Example {
  SimulatedPlatform simulated_{ReadEstateFile(VELDMARK_SOURCE_DIR "/examples/estate.json")};
  Platform platform_ = simulated_.platform();
};

// The domain of the example, asked through the operations.
class Domains : public testing::Test, protected Example, protected NetworkCalls {
 protected:
  Domains() : NetworkCalls(platform_) {}
  void TearDown() override {
    buffer.Reset();
    EXPECT_EQ(simulated_.ledger().Report(), "");
  }

  // The names in the records of a list, block by block, or the code that it ends with.
  template <class Record, class Call, class... Asked>
  std::string Walk(Call call, Asked... asked) {
    std::string names;
    resume = 0;
    for (int turn = 0; turn < 50; ++turn) {
      const DWORD code = Ask(call, asked...);
      if (code != 0 && code != kErrorMoreData) return std::to_string(code);
      for (const Text& name : NamesIn<Record>()) names += ToUtf8(name) + "/";
      if (code == 0) break;
      names += " ";
    }
    return names;
  }

  USER_INFO_3 User(LPCWSTR name) {
    EXPECT_EQ(Ask(&Accounts::NetUserGetInfo, u"\\\\beacon", name, 3), 0u);
    return First<USER_INFO_3>();
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
};

TEST_F(Domains, AreWalkedInPiecesThatLoseNothing) {
  const LPCWSTR beacon = u"\\\\BEACON";
  EXPECT_EQ(Walk<GROUP_INFO_0>(&Accounts::NetGroupEnum, beacon, 0),
            "Domain Admins/Domain Computers/ Domain Controllers/Domain Guests/ "
            "Domain Users/Empty Desks/ Enterprise Admins/Group Policy Creator Owners/ "
            "Harbour Staff/Schema Admins/");
  EXPECT_EQ(Walk<GROUP_USERS_INFO_0>(&Accounts::NetGroupGetUsers, beacon, u"harbour staff", 0),
            "HARBOUR$/mreed/ tolver/");
  EXPECT_EQ(Walk<GROUP_USERS_INFO_0>(&Accounts::NetGroupGetUsers, beacon, u"Domain Controllers", 0),
            "BEACON$/SIGNAL$/");
  room = 1;
  EXPECT_EQ(Walk<USER_INFO_3>(&Accounts::NetUserEnum, beacon, 3, 2),
            "Administrator/ Guest/ mreed/ old.hand/ svc.backup/ tolver/")
      << "a record a block at the least";
}

TEST_F(Domains, AreFoundOnTheNetworkByTheirBrowseListAndControllers) {
  const auto browse = [&](LPCWSTR domain, DWORD type) {
    DWORD on = 0;
    const DWORD status =
        net.NetServerEnum(nullptr, 101, buffer.Receive(), room, &read, &total, type, domain, &on);
    return status != 0 ? status : read;
  };
  EXPECT_EQ(browse(u"quillmoss", kServerTypeAll), 6u);
  EXPECT_EQ(browse(nullptr, 0x18), 2u) << "this computer's own domain";
  EXPECT_EQ(browse(nullptr, 0x80000000), 3u) << "domains and workgroups";

  const auto controller = [&](LPCWSTR server, LPCWSTR domain) {
    const DWORD status = Ask(&NetworkManagement::NetGetDCName, server, domain);
    return status != 0 ? std::to_string(status) : ToUtf8(reinterpret_cast<LPCWSTR>(buffer.Get()));
  };
  EXPECT_EQ(controller(nullptr, nullptr), "\\\\BEACON");
  EXPECT_EQ(controller(u"\\\\MILL1", u""), "\\\\MILL1");
  EXPECT_EQ(controller(nullptr, u"fernlea"), "\\\\MILL1");
  EXPECT_EQ(controller(nullptr, u"WORKSHOP"), "2453");
  EXPECT_EQ(controller(u"MILLRACE", nullptr), "2453");
  EXPECT_EQ(controller(u"ATTIC", nullptr), "53");
  EXPECT_EQ(controller(u"\\\\\\\\BEACON", nullptr), "53");
  simulated_.estate().FindComputer(u"BEACON")->SetReachable(false);
  EXPECT_EQ(controller(nullptr, nullptr), "2453") << "SIGNAL isn't the primary one";
  EXPECT_EQ(Account(nullptr, u"mreed").substr(0, 15), "QUILLMOSS\\mreed") << "but it knows them";
}

TEST_F(Domains, TellWhatTheyKnowOfUsersServersAndShares) {
  const USER_INFO_3 mreed = User(u"MREED");
  EXPECT_EQ(ToUtf8(Text(mreed.usri3_name) + mreed.usri3_home_dir + mreed.usri3_home_dir_drive +
                   mreed.usri3_script_path + mreed.usri3_usr_comment),
            "mreed\\\\LANTERN\\Home\\mreedH:staff.vbsRoom 12");
  EXPECT_EQ(mreed.usri3_last_logon, 1709643731u);
  EXPECT_EQ(mreed.usri3_password_age, 14 * 86400u + 6 * 3600 + 1800);
  EXPECT_EQ(mreed.usri3_user_id, 1104u);
  EXPECT_EQ(User(u"tolver").usri3_flags & kAccountLockout, kAccountLockout);
  EXPECT_EQ(User(u"svc.backup").usri3_last_logon, 0u);
  EXPECT_EQ(User(u"svc.backup").usri3_flags, 0x10241u);
  EXPECT_EQ(User(u"old.hand").usri3_acct_expires, 1688162400u);
  EXPECT_EQ(User(u"old.hand").usri3_password_expired, 1u);

  const auto groups = [&](LPCWSTR server, LPCWSTR user) {
    return Walk<GROUP_USERS_INFO_0>(&Accounts::NetUserGetGroups, server, user, 0);
  };
  const auto local_groups = [&](LPCWSTR user, DWORD flags) {
    return Walk<GROUP_USERS_INFO_0>(&Accounts::NetUserGetLocalGroups, nullptr, user, 0, flags);
  };
  EXPECT_EQ(groups(u"BEACON", u"mreed"), "Domain Admins/Domain Users/Harbour Staff/");
  EXPECT_EQ(groups(nullptr, u"mreed"), "2221") << "no account of HARBOUR";
  EXPECT_EQ(local_groups(u"QUILLMOSS\\mreed", 0), "Administrators/");
  EXPECT_EQ(local_groups(u"mreed", kIncludeIndirectGroups), "Administrators/Scan Operators/Users/");
  EXPECT_EQ(local_groups(u"mreed", 2), "87");
  EXPECT_EQ(local_groups(u"Everyone", 0), "2221");

  EXPECT_EQ(Ask(&NetworkManagement::NetServerGetInfo, u"VAULT", 102), kErrorAccessDenied);
  EXPECT_EQ(Ask(&NetworkManagement::NetServerGetInfo, u"VAULT", 101), 0u);
  ASSERT_EQ(Ask(&NetworkManagement::NetServerGetInfo, u"\\\\harbour", 102), 0u);
  const auto info = First<SERVER_INFO_102>();
  EXPECT_EQ(ToUtf8(info.sv102_name) + ToUtf8(info.sv102_comment) + ToUtf8(info.sv102_userpath),
            "HARBOURMargaret's deskC:\\");
  EXPECT_EQ(info.sv102_users, 20u);
  ASSERT_EQ(Ask(&NetworkManagement::NetWkstaGetInfo, nullptr, 100), 0u);
  EXPECT_EQ(Text(First<WKSTA_INFO_100>().wki100_langroup), u"QUILLMOSS");
  ASSERT_EQ(Ask(&Accounts::NetUserModalsGet, u"LANTERN", 0), 0u);
  EXPECT_EQ(First<USER_MODALS_INFO_0>().usrmod0_max_passwd_age, kTimeForever);
  ASSERT_EQ(Ask(&Accounts::NetUserModalsGet, u"BEACON", 0), 0u);
  EXPECT_EQ(First<USER_MODALS_INFO_0>().usrmod0_min_passwd_len, 8u);
  EXPECT_EQ(First<USER_MODALS_INFO_0>().usrmod0_password_hist_len, 12u);
}

TEST_F(Domains, ResolveAccountsAsEachComputerKnowsThem) {
  const std::string domain = ToUtf8(kDomainSid);
  const std::string own = ToUtf8(simulated_.estate().local().own_accounts().sid().ToText());
  simulated_.estate().AddKnownAccount(
      {Sid(5, {21, 1, 2, 3, 1300}), u"QUILLMOSS", u"gone", SidUse::DeletedAccount});
  const std::tuple<LPCWSTR, LPCWSTR, std::string> rows[] = {
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
      {u"\\\\\\\\BEACON", u"mreed", "1722"}};
  for (const auto& [system, name, found] : rows) {
    EXPECT_EQ(Account(system, name), found);
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
  const auto add = [&](LPCWSTR computer) {
    return accounts.NetGroupAdd(computer, 1, bytes(group), &parameter);
  };
  const auto add_local = [&](LPCWSTR computer, DWORD level, const BYTE* record) {
    return accounts.NetLocalGroupAdd(computer, level, record, nullptr);
  };
  const auto set_group = [&](LPCWSTR which, const GROUP_INFO_1& record) {
    return accounts.NetGroupSetInfo(u"BEACON", which, 1, bytes(record), nullptr);
  };
  const auto set_user = [&](LPCWSTR computer, LPCWSTR which, DWORD level, const BYTE* record) {
    return accounts.NetUserSetInfo(computer, which, level, record, &parameter);
  };
  EXPECT_EQ(add(u"BEACON"), 0u);
  EXPECT_EQ(add(u"BEACON"), 2223u);
  EXPECT_EQ(add_local(u"BEACON", 1, bytes(local)), 2223u);
  EXPECT_EQ(add(u"SIGNAL"), 2226u);
  EXPECT_EQ(add(nullptr), 2226u);
  EXPECT_EQ(add_local(u"VAULT", 1, bytes(local)), 5u);
  EXPECT_EQ(add_local(nullptr, 1, bytes(local)), 0u);
  EXPECT_EQ(add_local(nullptr, 0, bytes(local)), 124u);
  EXPECT_EQ(add_local(nullptr, 1, nullptr), 87u);
  EXPECT_EQ(set_group(u"night shift", renamed), 0u);
  EXPECT_EQ(set_group(u"Day Shift", group), 2220u);
  EXPECT_EQ(set_user(u"BEACON", u"tolver", 1003, bytes(bad)), 2245u);
  EXPECT_EQ(set_user(u"BEACON", u"nobody", 1003, bytes(good)), 2221u);
  EXPECT_EQ(set_user(u"VAULT", u"Guest", 1003, bytes(good)), 5u);
  EXPECT_EQ(set_user(u"BEACON", u"tolver", 1003, bytes(good)), 0u);
  EXPECT_EQ(set_user(u"BEACON", u"tolver", 1, bytes(user)), 0u);
  EXPECT_EQ(set_user(u"BEACON", u"tolver", 1, bytes(promoted)), 87u);
  EXPECT_EQ(net.NetShareDel(u"\\\\LANTERN", u"public", 0), 0u);
  EXPECT_EQ(net.NetShareDel(u"\\\\", u"Data", 0), 53u);
  EXPECT_EQ(net.NetShareDel(u"VAULT", u"Drop", 0), 5u);
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
  simulated_.estate().local().GrantBytes(u"SeDebugPrivilege", {9, 1, 0, 0, 0, 0, 0, 5});
  EXPECT_EQ(HoldersOf(u"sebackupprivilege", u"\\\\LANTERN"), (Names{"BA", "S-1-5-32-551"}));
  EXPECT_EQ(HoldersOf(u"SeDebugPrivilege", u""), (Names{"BA", "none"}));
  EXPECT_EQ(HoldersOf(u"SeDebugPrivilege", u"", 0x800), Names{"5"});
  EXPECT_EQ(HoldersOf(u"SeDebugPrivilege", u"\\\\VAULT"), Names{"5"});
  EXPECT_EQ(HoldersOf(u"SeDebugPrivilege", u"\\\\\\\\LANTERN"), Names{"1722"});

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
  EXPECT_EQ(resolve("lantern"), "10 20 0 2 10 20 1 2 ");
  EXPECT_EQ(resolve("intranet"), "10 20 0 80 10 20 0 81 ");
  EXPECT_EQ(resolve(nullptr), "10 20 0 7 ");
  EXPECT_EQ(resolve("nowhere"), "11001");
  EXPECT_EQ(sockets.WSACleanup(), 0);

  const auto pipe = [&](LPCSTR name) {
    const FileHandle handle(
        platform_.files,
        platform_.files.CreateFileA(name, 0xC0000000, 3, nullptr, kOpenExisting, 0, nullptr));
    return handle ? 0 : LastPlatformError();
  };
  EXPECT_EQ(pipe("\\\\SILO\\PIPE\\netappsvc"), 0u);
  EXPECT_EQ(pipe("C:\\Data\\readme.txt"), kErrorAccessDenied) << "an ordinary, read-only file";
}

}  // namespace
}  // namespace veldmark::simulated
