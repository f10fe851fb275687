#include "accounts/CUser.h"
#include "accounts/CUsers.h"
#include "network/ServerNames.h"
#include "storage/CShare.h"
#include "storage/CShares.h"
#include "support/MixedPlatform.h"
#include "support/NetworkFixture.h"

namespace veldmark {
namespace {

using DomainWalks = NetworkTest;

TEST_F(DomainWalks, FindNetworksByNameInAnyCaseWithWhatTheirProvidersTell) {
  estate().networks() = {
      {.name = u"Dark Network", .comment = u"No provider answers", .type = {}},
      {.name = u"A folder", .display_type = 9},
      {.name = u"Far Network", .provider = u"Far Provider", .type = WORD{0x8003}},
      {.name = u"Microsoft Windows Network", .comment = u"The usual one"}};
  std::string log;
  Log(log);
  const Ref<CNetworks> networks = root_->GetNetHood()->GetNetworks();
  EXPECT_EQ(log, "Retrieving Available Networks\n");
  EXPECT_EQ(ListOf(networks, {u"NetworkName", u"Comment", u"NetworkType"}),
            "Dark Network|No provider answers|0, Far Network||-32765, "
            "Microsoft Windows Network|The usual one|2");
  Variant name(u"MICROSOFT windows NETWORK");
  EXPECT_EQ(networks->Item(name)->NetworkType, NET_LANMAN);

  estate().networks().back().type = WORD{3};
  EXPECT_EQ(FailureOf([&] { root_->GetNetHood()->GetDomains(); }),
            u"-2147220803|Veldmark2.CNetHood|Unable to locate the 'Microsoft Windows Network'");
  estate().networks().clear();
  EXPECT_EQ(ErrorOf([&] { root_->GetNetHood()->GetNetworks(); }), 1222);
}

TEST_F(DomainWalks, AskForTheNetworkAnewAndLeaveOutWhatIsNoDomain) {
  estate().networks().front().others = {{.name = u"\\\\SRV", .display_type = 2},
                                        {.name = u"FAR", .comment = u"Elsewhere"}};
  estate().networks().front().page = 1;
  const auto network = Make<CNetwork>();
  network->NetworkName = u"microsoft windows network";
  std::string log;
  Log(log);
  const Ref<CDomains> domains = network->GetDomains();
  EXPECT_EQ(ListOf(domains, {u"DomainName", u"Comment"}),
            "WORKGROUP|, CORP|Head office, LAB|, FAR|Elsewhere");
  EXPECT_EQ(domains->ItemByKey(u"CORP")->NetworkName(), u"Microsoft Windows Network");
  EXPECT_EQ(log,
            "Retrieving Available Networks\n"
            "Retrieving Domains for Network Microsoft Windows Network\n"
            "Retrieved Domain WORKGROUP\nRetrieved Domain CORP\nRetrieved Domain LAB\n"
            "Retrieved Domain FAR\n");
  EXPECT_EQ(journal().Count("WNetEnumResourceW"), 7u)
      << "one for the networks, five with an entry, the end";
  EXPECT_EQ(root_->GetNetHood()->GetDomains()->Count(), 4);

  network->NetworkName = u"No Network";
  EXPECT_EQ(FailureOf([&] { network->GetDomains(); }),
            u"5|Veldmark2.CNetwork|Invalid procedure call or argument");
  EXPECT_EQ(ErrorOf([&] { Engine().GetDomains(*network, false); }), 1204);
}

TEST_F(DomainWalks, DeliverDomainsByEventsUntilCancelAndSwallowWhatAListenerRaises) {
  const auto network = Make<CNetwork>();
  network->NetworkName = u"Microsoft Windows Network";
  network->PutAsyncFetch(true);
  std::string log;
  Log(log, network.Get(), u"DomainName", 2);
  EXPECT_EQ(network->GetDomains()->Count(), 0);
  EXPECT_EQ(log.substr(log.find("Retrieved")),
            "Retrieved Domain WORKGROUP\n1 CDomain WORKGROUP\nRetrieved Domain CORP\n"
            "1 CDomain CORP\n");

  int raised = 0;
  Listen(*network, [&](std::int32_t, std::span<Variant>) {
    ++raised;
    Raise(1234);
  });
  EXPECT_EQ(network->GetDomains()->Count(), 0);
  EXPECT_EQ(raised, 3);
  EXPECT_EQ(Err().Number(), 0);

  // What isn't a domain can't be handed on as one.
  const auto find_server = [&] {
    bool cancel = false;
    Engine().RaiseObjectFound(*Server(u"FS1"), cancel);
  };
  EXPECT_EQ(ErrorOf(find_server), 13);
  network->PutAsyncFetch(false);
  EXPECT_EQ(ErrorOf(find_server), 0);
}

TEST_F(DomainWalks, TellTrustedDomainsAndNoneWhereThatFails) {
  const auto trusted = [] { return ListOf(Engine().GetTrustedDomains(), {u"DomainName"}); };
  EXPECT_EQ(trusted(), "");
  estate().Join(local(), u"CORP");
  estate().FindDomain(u"CORP")->trusts = {u"ONE", u"TWO", u"ONE"};
  EXPECT_EQ(trusted(), "ONE, TWO");
  faults().FailEvery("NetEnumerateTrustedDomains", 5);
  EXPECT_EQ(trusted(), "");
}

/// The estate's provider, but that it walks by a script, whose last line goes on for ever.
class ScriptedProvider final : public simulated::SimulatedNetworkProvider {
 public:
  struct Answer {
    DWORD status;
    std::vector<const char16_t*> names{};
    DWORD size = 0;   ///< 0 leaves the caller's
    DWORD count = 0;  ///< 0: of the names; none of either leaves the caller's
  };

  using SimulatedNetworkProvider::SimulatedNetworkProvider;
  DWORD WNetOpenEnumW(DWORD scope, DWORD type, DWORD usage, const NETRESOURCEW* parent,
                      HANDLE* enumeration) override {
    opened = std::to_string(scope) + std::to_string(type) + std::to_string(usage);
    if (parent) {
      for (const DWORD word : {parent->dwScope, parent->dwType, parent->dwDisplayType}) {
        opened += " " + std::to_string(word);
      }
      EXPECT_EQ(parent->lpRemoteName, parent->lpProvider);
      EXPECT_TRUE(!parent->lpLocalName && !parent->lpComment);
      opened += " " + ToUtf8(parent->lpRemoteName);
    }
    return SimulatedNetworkProvider::WNetOpenEnumW(scope, type, usage, nullptr, enumeration);
  }
  DWORD WNetEnumResourceW(HANDLE, DWORD* count, void* buffer, DWORD* size) override {
    asked += " " + std::to_string(*size);
    EXPECT_EQ(*count, 0xFFFFFFFF);
    const Answer& answer = script[std::min(next++, script.size() - 1)];
    auto* record = static_cast<NETRESOURCEW*>(buffer);
    for (const char16_t* name : answer.names) {
      *record = {};
      record->dwDisplayType = display_type;
      record++->lpRemoteName = const_cast<LPWSTR>(name);
    }
    if (!answer.names.empty()) *count = static_cast<DWORD>(answer.names.size());
    if (answer.count != 0) *count = answer.count;
    if (answer.status == 259) *count = 0;
    if (answer.size != 0) *size = answer.size;
    return answer.status;
  }

  std::vector<Answer> script;
  std::size_t next = 0;
  DWORD display_type = kDisplayTypeNetwork;
  std::string opened, asked;
};

TEST(ResourceWalks, KeepToTheirBufferAndComeToAnEndWhateverTheProviderAnswers) {
  // What is found, or the error, and the sizes that are asked with.
  const struct {
    std::vector<ScriptedProvider::Answer> script;
    const char *networks, *domains;
  } cases[] = {
      {{{0, {u"A", u"B"}}, {259}}, "A, B: 16384", "A, B: 16383 16383"},
      {{{259}}, "error 259: 16384", ": 16383"},
      {{{0, {u"A"}, 4096}, {259}}, "A: 16384", "A: 16383 4096"},
      {{{0, {u"A"}, 1u << 30}, {259}}, "A: 16384", "A: 16383 16383"},
      // More than fits: asked for again with the size that it takes.
      {{{234, {}, 40000}, {0, {u"A"}}, {259}}, "A: 16384 40000", "error 234: 16383"},
      // The list of the second call is read from behind the first one's.
      {{{234, {u"A"}}, {0, {u"B", u"C", u"D"}}, {259}}, "A, C, D: 16384 16384", "error 234: 16383"},
      {{{234}, {0, {u"A"}}, {259}}, "A: 16384 16384", "error 234: 16383"},
      {{{234}}, "error 234: 16384 16384", "error 234: 16383"},
      {{{5}}, "error 5: 16384", "error 5: 16383"},
      {{{0, {u"A"}, 0, 1u << 20}}, "error 13: 16384", "error 13: 16383"},
      {{{0}}, ": 16384", ": 16383"},
  };
  for (const auto& c : cases) {
    MixedWorld<SimulatedApartment, ScriptedProvider> world;
    ScriptedProvider& provider = world.own;
    provider.script = c.script;
    const auto run = [&](auto&& walk) {
      provider.next = 0;
      provider.asked.clear();
      const std::string found = OutcomeOf(walk);
      EXPECT_EQ(world.ledger().Report(), "");
      return found + ":" + provider.asked;
    };
    EXPECT_EQ(run([] { return ListOf(Engine().GetNetworks(), {u"NetworkName"}); }), c.networks);
    EXPECT_EQ(provider.opened, "200");
    const auto network = Make<CNetwork>();
    network->NetworkName = u"N";
    NETRESOURCEW record{};
    record.dwScope = 2;
    record.dwType = 3;
    record.dwDisplayType = 6;
    network->SetResource(record);
    provider.display_type = kDisplayTypeDomain;
    EXPECT_EQ(run([&] { return ListOf(Engine().GetDomains(*network, false), {u"DomainName"}); }),
              c.domains);
    EXPECT_EQ(provider.opened, "200 2 3 6 N");
  }
}

using ServerWalks = NetworkTest;

TEST_F(ServerWalks, AddToTheBrowseListTheComputersThatOnlyHaveAnAccount) {
  std::string log;
  Log(log);
  const Ref<CServers> servers = root_->GetDomain(u"corp")->GetServers();
  EXPECT_EQ(ListOf(servers, {u"ServerName", u"DomainName", u"StateUnknown", u"PlatformId"}),
            "DC1|CORP|False|500, FS1|CORP|False|500, PC1|CORP|False|500, PC9|corp|True|0");
  EXPECT_EQ(log,
            "Retrieving Servers for Domain CORP\nRetrieving Servers from corp\n"
            "Retrieved Server PC9\n");
  EXPECT_EQ(Called({"Net"}),
            "GetDCName  corp;WkstaGetInfo DC1 100;ServerEnum - CORP 101;UserEnum \\\\DC1 0 48;");

  const Ref<CServer> listed = servers->ItemByKey(u"FS1");
  EXPECT_EQ(ValuesOf(*listed, {u"ServerType", u"ServerTypeRaw", u"VersionMajor", u"VersionMinor",
                               u"Comment"}),
            "-2147446781|0|32773|2|Files");
  EXPECT_EQ(Called({"Net"}), "");
  const Ref<CServer> unlisted = servers->ItemByKey(u"PC9");
  EXPECT_EQ(ErrorOf([&] { unlisted->Comment(); }), 53);
  EXPECT_TRUE(unlisted->StateUnknown());
  EXPECT_EQ(Called({"Net"}), "ServerGetInfo \\\\PC9 102;");
}

TEST_F(ServerWalks, WalkMachineAccountsPageByPageAndTakeNamesAsTheyAre) {
  auto& accounts = *estate().FindDomain(u"CORP")->accounts;
  accounts.AddUser(u"odd").flags = kAccountWorkstationTrust;
  accounts.AddUser(u"pc1$$").flags = kAccountServerTrust;
  computer(u"DC1").SetPage(1);
  const Ref<CDomain> domain = root_->GetDomain(u"CORP");
  // Names in another case and with a "$" left are other names.
  EXPECT_EQ(ListOf(domain->GetServers(), {u"ServerName"}), "DC1, FS1, PC1, odd, pc1$, PC9");
  EXPECT_EQ(journal().Count("NetUserEnum"), 6u);
}

TEST_F(ServerWalks, ListSharesAndOfEachWhatTheyAreTold) {
  simulated::Computer& server = computer(u"FS1");
  server.AddDrive(u'D');
  server.AddFolder(u"D:\\Books");
  server.AddShare(u"Books", u"D:\\Books").remark = u"Ledgers";
  server.AddShare(u"Closed", u"D:\\Books").details_denied = true;
  server.AddShare(u"Drafts", u"D:\\Books").maximum_uses = 7;
  const Ref<CServer> fs1 = root_->GetServer(u"FS1", u"");
  journal().Clear();
  std::string log;
  Log(log);
  const Ref<CShares> shares = fs1->GetShares();
  EXPECT_TRUE(log.starts_with("Retrieving Shares for Server FS1\n"));
  EXPECT_TRUE(log.ends_with(
      "Share Closed\nRetrieved Share D$\nRetrieved Share Drafts\nRetrieved Share IPC$\n"))
      << log;
  // The second page is denied, and from there on all come poorer.
  EXPECT_EQ(Called({"Net"}), "ShareEnum FS1 2;ShareEnum FS1 2;ShareEnum FS1 1;");
  const auto values = [&](TextView share) {
    return ValuesOf(*shares->ItemByKey(share), {u"Comment", u"SharePath", u"MaxUses"});
  };
  EXPECT_EQ(values(u"Books"), "Ledgers|D:\\Books|-1");
  EXPECT_EQ(values(u"Drafts"), "||0");
  faults().FailNthOf("NetShareEnum", 3, 5);
  EXPECT_EQ(ErrorOf([&] { fs1->GetShares(); }), 5);
}

TEST_F(ServerWalks, DeliverEveryServerOfBothListsByEventsUntilCancel) {
  const std::string browse =
      "Retrieving Servers for Domain CORP\n3 CServer DC1\n3 CServer FS1\n3 CServer PC1\n";
  const std::string accounts = "Retrieving Servers from CORP\n";
  const std::string all = browse + accounts +
                          "3 CServer DC1\nRetrieved Server DC1\n3 CServer FS1\n"
                          "Retrieved Server FS1\n3 CServer PC1\nRetrieved Server PC1\n"
                          "3 CServer PC9\nRetrieved Server PC9\n";
  const std::pair<int, std::string> cases[] = {
      {0, all},
      {1, browse.substr(0, browse.find("3 CServer FS1")) + accounts},
      {3, browse + accounts},
      {4, browse + accounts + "3 CServer DC1\n"},
      {7, all.substr(0, all.rfind("Retrieved"))},
  };
  for (const auto& [cancelled, expected] : cases) {
    SCOPED_TRACE(cancelled);
    const Ref<CDomain> source = root_->GetDomain(u"CORP");
    source->AsyncFetch = true;
    std::string log;
    Apartment::Current().status = Make<CStatus>();
    Log(log, source.Get(), u"ServerName", cancelled);
    EXPECT_EQ(source->GetServers()->Count(), 0);
    EXPECT_EQ(log, expected);
  }
  Apartment::Current().status = Make<CStatus>();
  // A listener's error ends the walk, and so does one that lets go of the domain.
  Ref<CDomain> fragile = root_->GetDomain(u"CORP");
  fragile->AsyncFetch = true;
  Listen(*fragile, [&](std::int32_t, std::span<Variant>) {
    fragile = nullptr;
    Raise(1234, u"Listener", u"No more");
  });
  CDomain* const last_reference = fragile.Get();
  EXPECT_EQ(FailureOf([&] { last_reference->GetServers(); }), u"1234|Veldmark2.CDomain|No more");
}

TEST_F(ServerWalks, FallToNamesWhereTheLevelIsRefusedAndRaiseAnythingElse) {
  const Ref<CDomain> domain = root_->GetDomain(u"CORP");
  domain->IgnoreMachineAccounts = true;
  for (const DWORD refusal : {5, 124}) {
    faults().FailNthOf("NetServerEnum", 1, refusal);
    const Ref<CServer> server = domain->GetServers()->ItemByKey(u"FS1");
    EXPECT_EQ(Called({"Net"}), "ServerEnum - CORP 101;ServerEnum - CORP 100;");
    EXPECT_EQ(ValuesOf(*server, {u"StateUnknown", u"PlatformId", u"Comment", u"VersionMajor"}),
              "False|500|Files|5");
    EXPECT_EQ(Called({"Net"}), "ServerGetInfo \\\\FS1 102;");
  }
  faults().FailEvery("NetServerEnum", 5);
  EXPECT_EQ(FailureOf([&] { domain->GetServers(); }),
            u"5|Veldmark2.CDomain|Error Retrieving Servers: Access is denied.");
  faults().Clear();
  faults().FailEvery("NetServerEnum", 234);
  EXPECT_EQ(ErrorOf([&] { domain->GetServers(); }), 234);
  EXPECT_EQ(journal().Count("NetServerEnum"), 3u);
}

TEST_F(ServerWalks, AskTheBrowseListAloneWithoutAControllerOrWhereThatIsWanted) {
  const struct {
    const char16_t* domain;
    bool ignore;
    std::int32_t filter;
    const char* servers;
  } cases[] = {
      {u"CORP", true, -1, "DC1, FS1, PC1"},
      {u"CORP", true, 0, "DC1, FS1, PC1"},
      {u"CORP", true, 8, "DC1"},
      {u"CORP", true, SV_TYPE_SERVER_NT, "DC1, FS1"},
      {u"CORP", true, 0x40, ""},
      {u"CORP", false, 8, "DC1, FS1, PC1, PC9"},
      {u"LAB", false, -1, "BENCH"},
      {u"", false, -1, "LOCALHOST"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(ToUtf8(c.domain));
    const Ref<CDomain> domain = root_->GetDomain(c.domain);
    domain->IgnoreMachineAccounts = c.ignore;
    domain->ServerTypeFilter = static_cast<ServerTypeEnum>(c.filter);
    EXPECT_EQ(ListOf(domain->GetServers(), {u"ServerName"}), c.servers);
    EXPECT_EQ(Err().Number(), 0);
    const bool asks = *c.domain == u'C' && !c.ignore;
    EXPECT_EQ(Called({"NetUserEnum"}), asks ? "\\\\DC1 0 48;" : "");
  }
  const Ref<CDomain> nowhere = root_->GetDomain(u"NOWHERE");
  EXPECT_EQ(Called({"Net"}), "");
  EXPECT_EQ(ErrorOf([&] { nowhere->GetServers(); }), 6118);
  EXPECT_EQ(ErrorOf([&] { nowhere->GetPDC(); }), 2453);
  EXPECT_EQ(Err().Source(), u"Veldmark2.CDomain");
}

TEST_F(ServerWalks, TellTheControllerWithoutAskingIt) {
  const Ref<CServer> controller = root_->GetDomain(u"CORP")->GetPDC();
  EXPECT_EQ(ValuesOf(*controller, {u"ServerName", u"DomainName", u"PlatformId", u"StateUnknown"}),
            "DC1|CORP|500|True");
  EXPECT_EQ(Called({"Net"}), "GetDCName  CORP;");
  EXPECT_EQ(ValuesOf(*controller, {u"VersionMajor", u"StateUnknown"}), "10|False");
  // A domain whose controller has no name has none.
  Remember(Apartment::Current().pdc_cache, u"NAMELESS", Variant(Text()));
  const Ref<CDomain> nameless = root_->GetDomain(u"NAMELESS");
  EXPECT_EQ(nameless->GetPDC(), nullptr);
  EXPECT_EQ(ErrorOf([&] { nameless->GetUsers(); }), 91);
  EXPECT_EQ(ErrorOf([&] { nameless->GetServers(); }), 91);
}

}  // namespace
}  // namespace veldmark
