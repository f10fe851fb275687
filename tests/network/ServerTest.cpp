#include "collections/Collection.h"
#include "network/CSocket.h"
#include "security/CSid.h"
#include "security/CSids.h"
#include "support/NetworkFixture.h"

namespace veldmark {
namespace {

using Names = NetworkTest;
using Servers = NetworkTest;
using Rights = NetworkTest;

TEST_F(Names, OfDomainsAreAskedOncePerServerAsItIsWritten) {
  const std::pair<Text, const char*> cases[] = {
      {u"FS1", "WkstaGetInfo FS1 100;"},
      {u"fs1", ""},
      {u"\\\\FS1", "WkstaGetInfo \\\\FS1 100;"},
      {Text(u"FS1\0x", 5), "WkstaGetInfo FS1 100;"},
  };
  for (const auto& [server, calls] : cases) {
    EXPECT_EQ(Engine().GetDomainFromServer(server), u"CORP");
    EXPECT_EQ(Called({"Net"}), calls) << ToUtf8(server);
  }
  EXPECT_EQ(root_->GetDomainFromServerName(u"")->DomainName, u"WORKGROUP");
  EXPECT_EQ(root_->GetDomainFromServerName(u"BENCH")->DomainName, u"LAB");
  EXPECT_EQ(Err().Number(), 0);
  EXPECT_EQ(ErrorOf([&] { root_->GetDomainFromServerName(u"PC9"); }), 53);
  EXPECT_EQ(Err().Source(), u"Veldmark2.SystemRoot");
  EXPECT_EQ(Apartment::Current().domain_cache->Count(), 5);
  computer(u"PC9").SetReachable(true);
  EXPECT_EQ(Engine().GetDomainFromServer(u"PC9"), u"CORP") << "a failure is not remembered";
  Apartment::Current().domain_cache = nullptr;
  EXPECT_EQ(ErrorOf([&] { Engine().GetDomainFromServer(u"FS1"); }), 91);
}

TEST_F(Names, OfControllersAreAskedOncePerDomainOrElsePerServer) {
  const struct {
    Text domain, server;
    const char* calls;
  } cases[] = {
      {u"CORP", u"", "GetDCName  CORP;"},
      {u"corp", u"", ""},
      {u"Corp", u"NOBODY", ""},
      {u"", u"\\\\FS1", "GetDCName \\\\FS1 ;"},
      {u"", u"fs1", ""},
      {u"", u"PC1", "GetDCName \\\\PC1 ;"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Engine().GetPDCName(c.domain, c.server), u"\\\\DC1");
    EXPECT_EQ(Called({"Net"}), c.calls);
  }
  EXPECT_EQ(FailureOf([] { Engine().GetPDCName(u"", u"").size(); }).substr(0, 24),
            u"2453|Veldmark2.CSupport|");
  estate().Join(local(), u"CORP");
  for (int i = 0; i < 2; ++i) EXPECT_EQ(Engine().GetPDCName(u"", u""), u"\\\\DC1");
  EXPECT_EQ(journal().Count("NetGetDCName"), 3u) << "without a name nothing is remembered";
  EXPECT_EQ(Apartment::Current().pdc_cache->Count(), 3);

  // Without the cache it goes on, and the error of the look-up stays.
  Apartment::Current().pdc_cache = nullptr;
  Err().Clear();
  EXPECT_EQ(Engine().GetPDCName(u"CORP", u""), u"\\\\DC1");
  EXPECT_EQ(Err().Number(), 91);
}

TEST_F(Servers, AreOneObjectPerNameInAnyCaseWithWhatTheComputerSays) {
  std::string log;
  Log(log);
  const Ref<CServer> server = root_->GetServer(u"fs1", u"");
  EXPECT_EQ(log, "Retrieving Information for Server fs1\n");
  EXPECT_EQ(Called({"Net"}), "WkstaGetInfo fs1 100;ServerGetInfo \\\\fs1 102;");
  EXPECT_EQ(root_->GetServer(u"FS1", u"OTHER"), server);
  EXPECT_EQ(ValuesOf(*server, {u"ServerName", u"DomainName", u"Comment", u"PlatformId",
                               u"VersionMajor", u"VersionMinor", u"ServerType", u"ServerTypeRaw",
                               u"NumUsers", u"DisconnectTime", u"Hidden", u"AnnounceRate",
                               u"AnnounceDelta", u"Licenses", u"UserPath", u"StateUnknown"}),
            "FS1|CORP|Files|500|5|2|-2147446781|-2147446781|40|-1|True|241|3001|7|D:\\Users|False");
  EXPECT_EQ(Called({"Net"}), "");

  const Ref<CServer> other = root_->GetServer(u"\\\\FS1", u"GIVEN");
  EXPECT_NE(other, server);
  EXPECT_EQ(other->DomainName, u"GIVEN");
  EXPECT_EQ(Called({"Net"}), "ServerGetInfo \\\\FS1 102;");
  EXPECT_EQ(ToObject(Call(*root_, u"GetServer", MemberKind::kMethod, {Variant(u"Fs1")})).Get(),
            server.Get());

  for (const TextView domain : {u"", u"CORP"}) {
    EXPECT_EQ(ErrorOf([&] { root_->GetServer(u"PC9", Text(domain)); }), 53);
    EXPECT_EQ(Err().Source(), u"Veldmark2.SystemRoot");
  }
  EXPECT_EQ(Apartment::Current().server_cache->Count(), 2);
}

TEST_F(Servers, FetchWhatTheirLevelLacksAndKeepWhatTheyHaveWhereThatFails) {
  const Ref<CDomain> domain = root_->GetDomain(u"CORP");
  const Ref<CServer> listed = domain->GetServers()->ItemByKey(u"FS1");
  listed->PutComment(u"Mine");
  journal().Clear();
  EXPECT_EQ(ValuesOf(*listed, {u"Comment", u"ServerTypeRaw"}), "Mine|0");
  EXPECT_EQ(Called({"Net"}), "");
  EXPECT_EQ(listed->Licenses(), 7);
  EXPECT_EQ(Called({"Net"}), "ServerGetInfo \\\\FS1 102;");
  EXPECT_EQ(ValuesOf(*listed, {u"Comment", u"ServerTypeRaw", u"VersionMajor"}),
            "Files|-2147446781|5")
      << "what was put is overwritten by the fetch";

  const auto plain = Make<CServer>();
  EXPECT_TRUE(plain->StateUnknown());
  EXPECT_EQ(ErrorOf([&] { plain->UserPath(); }), 53) << "asked of \\\\";
  plain->ServerName = u"\\\\FS1";
  plain->PutComment(u"Mine");
  journal().Clear();
  faults().FailEvery("NetServerGetInfo", 53);
  for (const TextView name :
       {u"Comment", u"VersionMajor", u"VersionMinor", u"ServerType", u"NumUsers", u"DisconnectTime",
        u"Hidden", u"AnnounceRate", u"Licenses", u"AnnounceDelta", u"UserPath", u"ServerTypeRaw"}) {
    EXPECT_EQ(FailureOf([&] { ValuesOf(*plain, {name}); }).substr(0, 22),
              u"53|Veldmark2.CSupport|");
    EXPECT_EQ(Called({"Net"}), "ServerGetInfo \\\\FS1 102;");
  }
  EXPECT_TRUE(plain->StateUnknown());
  faults().Clear();
  EXPECT_EQ(ValuesOf(*plain, {u"Comment", u"ServerName"}), "Files|FS1");
}

TEST_F(Servers, AskAgainForEachValueThatAComputerDenies) {
  computer(u"FS1").SetMayBeAdministered(false);
  const Ref<CServer> server = root_->GetServer(u"FS1", u"CORP");
  const std::string refused = "ServerGetInfo \\\\FS1 102;ServerGetInfo \\\\FS1 101;";
  EXPECT_EQ(Called({"Net"}), refused);
  EXPECT_EQ(ValuesOf(*server, {u"VersionMajor", u"ServerTypeRaw"}), "5|-2147446781");
  EXPECT_EQ(Called({"Net"}), "");
  EXPECT_EQ(ValuesOf(*server, {u"NumUsers", u"UserPath", u"NumUsers"}), "0||0");
  EXPECT_EQ(Called({"Net"}), refused + refused + refused);
  computer(u"FS1").SetMayBeAdministered(true);
  EXPECT_EQ(server->NumUsers(), 40);
  faults().FailEvery("NetServerGetInfo", 5);
  EXPECT_EQ(ErrorOf([&] { root_->GetServer(u"DC1", u"CORP"); }), 5);
}

TEST_F(Servers, TellTheFirstAddressOfTheirNameAndTheSocketLibrarysTroubles) {
  computer(u"FS1").SetAddresses({{10, 1, 2, 255}, {10, 1, 2, 4}});
  const Ref<CServer> server = Server(u"fs1");
  for (int i = 0; i < 2; ++i) EXPECT_EQ(server->PrimaryIPAddress(), u"10.1.2.255");
  EXPECT_EQ(journal().Count("WSAStartup"), 2u);
  {
    CSocket socket;
    socket.PutHostName(u"FS1");
    socket.PutHostName(u"localhost");
    EXPECT_EQ(socket.IPAddress(), u"127.0.0.1");
    EXPECT_EQ(ErrorOf([&] { socket.PutHostName(u"NOBODY"); }), -2147221503);
    EXPECT_EQ(socket.IPAddress(), u"127.0.0.1");
    EXPECT_EQ(socket.HostName(), u"NOBODY");
  }
  const auto failure = [&] { return FailureOf([&] { server->PrimaryIPAddress(); }); };
  const Text silent = u"-2147221503|Veldmark2.CSocket|Winsock.dll is not responding.";
  server->ServerName = u"\\\\FS1";
  EXPECT_EQ(failure(), silent);
  server->ServerName = u"FS1";
  faults().FailNthOf("WSAStartup", 1, 10091);
  EXPECT_EQ(failure(), silent);
  faults().FailNthOf("WSACleanup", 1, 10050);
  EXPECT_EQ(failure(), u"-2147221500|Veldmark2.CSocket|Socket error -1 occurred in Cleanup \"");
  estate().socket_library().most_sockets = 0;
  EXPECT_EQ(failure(),
            u"-2147221501|Veldmark2.CSocket|This application requires a minimum of 1 supported "
            u"sockets.");
  estate().socket_library().version = 0x0001;
  EXPECT_EQ(failure(),
            u"-2147221502|Veldmark2.CSocket|Windows Sockets version 1.0 is not supported by "
            u"winsock.dll ");
}

TEST_F(Servers, AreFilersWhereTheirPipeOpens) {
  const Ref<CServer> server = Server(u"FS1");
  EXPECT_TRUE(server->IsNetAppFiler());
  EXPECT_EQ(Called({"CreateFileA"}), "\\\\FS1\\PIPE\\NETAPPSVC;");
  for (const TextView unknown : {u"DC1", u"NOBODY", u"", u"\\\\FS1"}) {
    server->ServerName = unknown;
    EXPECT_FALSE(server->IsNetAppFiler());
  }
}

TEST_F(Rights, AndPolicyComeAsThePlatformGivesThem) {
  computer(u"FS1").own_accounts().policy = {1, kTimeForever, 3, 4, 5, 6, 7, 8};
  const Ref<CServer> server = Server(u"FS1");
  std::string log;
  Log(log);
  const Ref<CServerAccountPolicy> policy = server->GetServerAccountPolicy();
  EXPECT_EQ(log, "Retrieving Account Policy Information for Server FS1\n");
  EXPECT_EQ(ValuesOf(*policy, {u"MinPasswordLength", u"MaxPasswordAge", u"MinPasswordAge",
                               u"ForceLogoff", u"PasswordHistoryLength", u"LockoutDuration",
                               u"LockoutObservationWindow", u"LockoutThreshold"}),
            "1|-1|3|4|5|6|7|8");
  EXPECT_EQ(Called({"NetUserModalsGet"}), "\\\\FS1 0;\\\\FS1 3;");
  server->ServerName = u"\\\\FS1";
  EXPECT_NE(ErrorOf([&] { server->GetServerAccountPolicy(); }), 0);
  EXPECT_EQ(Called({"NetUserModalsGet"}), "\\\\\\\\FS1 0;");
}

TEST_F(Rights, ListTheirHoldersWithoutLookingThemUp) {
  simulated::Computer& machine = computer(u"FS1");
  const auto sid = [](const char16_t* text) { return *simulated::Sid::FromText(text); };
  machine.RevokeFromAll(u"SeBackupPrivilege");
  machine.RevokeFromAll(u"SeDebugPrivilege");
  machine.Grant(u"SeBackupPrivilege", {sid(u"S-1-5-32-551"), sid(u"S-1-5-32-544")});
  machine.GrantBytes(u"SeBackupPrivilege", {2, 1, 0, 0, 0, 0, 0, 5, 18, 0, 0, 0});
  machine.GrantBytes(u"SeBackupPrivilege", {1, 16, 0, 0, 0, 0, 0, 5});
  machine.Grant(u"SeBackupPrivilege", {sid(u"S-1-5-32-551"), sid(u"S-1-1-0")});
  const Ref<CServer> server = Server(u"FS1");
  const Ref<CSids> sids = server->GetSidsWithUserRight(u"sebackupprivilege");
  EXPECT_EQ(ListOf(sids, {u"SidText"}), "S-1-5-32-551, S-1-5-32-544, S-1-1-0");
  Variant first(1);
  EXPECT_EQ(sids->Item(first)->ResidesOnServer(), u"FS1");
  EXPECT_EQ(journal().Count("LookupAccountSidW"), 0u);
  EXPECT_EQ(server->GetSidsWithUserRight(u"SeDebugPrivilege")->Count(), 0);

  std::string log;
  Log(log, server.Get(), u"SidText", 2);
  server->PutAsyncFetch(true);
  EXPECT_EQ(server->GetSidsWithUserRight(u"SeBackupPrivilege")->Count(), 0);
  EXPECT_EQ(log, "6 CSid S-1-5-32-551\n6 CSid S-1-5-32-544\n");
  EXPECT_EQ(ledger().Report(), "");
  // What its class has no event for passes it by.
  bool cancel = false;
  Engine().RaiseObjectFound(*root_->GetDomain(u"CORP"), cancel);
  server->PutAsyncFetch(false);

  const auto error_of = [&](const Text& name, const Text& right) {
    return ErrorOf([&] { Server(name)->GetSidsWithUserRight(right); });
  };
  EXPECT_EQ(error_of(u"FS1", u"SeNothingPrivilege"), 1313);
  EXPECT_EQ(error_of(u"\\\\FS1", u"SeBackupPrivilege"), 1722);
  EXPECT_EQ(error_of(Text(40000, u'x'), u"SeBackupPrivilege"), 6);
  EXPECT_EQ(error_of(u"FS1", Text(40000, u'x')), 6);
  machine.SetMayBeAdministered(false);
  EXPECT_EQ(FailureOf([&] { server->GetSidsWithUserRight(u"SeBackupPrivilege"); }),
            u"5|Veldmark2.CServer|Access is denied.");
}

TEST(NetworkFaults, ReachTheCallerLeaveNothingOpenAndAreNotRemembered) {
  using Calls = std::set<std::string>;
  const struct {
    void (*scenario)(SystemRoot& root);
    Calls swallowed, either;
  } cases[] = {
      {[](SystemRoot& root) {
         EXPECT_EQ(root.GetServer(u"FS1", u"")->NumUsers(), 40);
         const Ref<CDomain> domain = root.GetDomain(u"CORP");
         domain->IgnoreMachineAccounts = true;
         EXPECT_EQ(domain->GetServers()->Count(), 3);
         const Ref<CServer> server = NetworkWorld::Server(u"FS1");
         server->GetServerAccountPolicy();
         EXPECT_EQ(server->GetSidsWithUserRight(u"SeBackupPrivilege")->Count(), 2);
       },
       {"NetApiBufferFree"},
       {}},
      {[](SystemRoot& root) { root.GetDomain(u"CORP")->GetServers(); },
       {"NetApiBufferFree", "NetGetDCName"},
       {}},
      // Without its type the network isn't found.
      {[](SystemRoot& root) { EXPECT_EQ(root.GetNetHood()->GetDomains()->Count(), 3); },
       {"WNetCloseEnum"},
       {"WNetGetNetworkInformationW"}},
      // The socket library's failures have numbers of their own.
      {[](SystemRoot&) { EXPECT_NE(NetworkWorld::Server(u"FS1")->PrimaryIPAddress(), u""); },
       {},
       {"WSAStartup", "WSACleanup", "gethostbyname"}},
      {[](SystemRoot&) {
         NetworkWorld::Server(u"FS1")->IsNetAppFiler();
         Engine().GetTrustedDomains();
       },
       {"CreateFileA", "CloseHandle", "WideCharToMultiByte", "GetComputerNameW",
        "NetEnumerateTrustedDomains", "NetApiBufferFree"},
       {}},
  };
  for (const auto& c : cases) {
    SweepFaults<NetworkWorld>(
        c.swallowed, [&](NetworkWorld&) { c.scenario(*Make<SystemRoot>()); },
        [&](NetworkWorld& world, const std::string& failed, bool raised) {
          EXPECT_EQ(raised, !c.swallowed.contains(failed));
          EXPECT_EQ(ErrorOf([&] { c.scenario(*Make<SystemRoot>()); }), 0) << "the second time";
          EXPECT_EQ(world.ledger().Report(), "");
        },
        c.either);
  }
}

}  // namespace
}  // namespace veldmark
