#include "network/NetworkFixture.h"
#include "storage/CShare.h"
#include "storage/CShares.h"

namespace veldmark {
namespace {

using ServerWalks = NetworkTest;

/// Names, domains, states and levels of what is known: "FS1/CORP/known/5", unmasked.
std::string Shown(const Ref<CServers>& servers) {
  std::string shown;
  for (std::int32_t i = 1; i <= servers->Count(); ++i) {
    const Ref<CServer> server = servers->ItemByIndex(i);
    shown += " " + ToUtf8(server->ServerName) + "/" + ToUtf8(server->DomainName) +
             (server->StateUnknown() ? "/unknown" : "/known");
  }
  return shown;
}

TEST_F(ServerWalks, AddToTheBrowseListTheComputersThatOnlyHaveAnAccount) {
  std::string log;
  Log(log);
  const Ref<CServers> servers = root_->GetDomain(u"corp")->GetServers();
  EXPECT_EQ(Shown(servers), " DC1/CORP/known FS1/CORP/known PC1/CORP/known PC9/corp/unknown");
  EXPECT_EQ(log,
            "Retrieving Servers for Domain CORP\nRetrieving Servers from corp\n"
            "Retrieved Server PC9\n");
  EXPECT_EQ(Calls(),
            "NetGetDCName  corp\nNetWkstaGetInfo DC1 100\nNetServerEnum - CORP 101\n"
            "NetUserEnum \\\\DC1 0 48\n");

  const Ref<CServer> listed = servers->ItemByKey(u"FS1");
  EXPECT_EQ(listed->ServerType(), static_cast<ServerTypeEnum>(0x80009003));
  EXPECT_EQ(listed->ServerTypeRaw(), 0);
  EXPECT_EQ(listed->VersionMajor(), 0x8005);
  EXPECT_EQ(listed->VersionMinor(), 2);
  EXPECT_EQ(listed->Comment(), u"Files");
  EXPECT_EQ(listed->PlatformId(), 500);
  const Ref<CServer> unlisted = servers->ItemByKey(u"PC9");
  EXPECT_EQ(unlisted->PlatformId(), 0);
  EXPECT_EQ(Calls(), "");
  EXPECT_EQ(ErrorOf([&] { unlisted->Comment(); }), 53);
  EXPECT_TRUE(unlisted->StateUnknown());
  EXPECT_EQ(Calls(), "NetServerGetInfo \\\\PC9 102\n");
}

TEST_F(ServerWalks, WalkMachineAccountsPageByPageAndTakeNamesAsTheyAre) {
  auto& accounts = *estate().FindDomain(u"CORP")->accounts;
  accounts.AddUser(u"odd").flags = kAccountWorkstationTrust;
  accounts.AddUser(u"pc1$$").flags = kAccountServerTrust;
  computer(u"DC1").SetPage(1);
  const Ref<CDomain> domain = root_->GetDomain(u"CORP");
  // Names in another case and with a "$" left are other names.
  EXPECT_EQ(NamesIn(domain->GetServers(), u"ServerName"), " DC1 FS1 PC1 odd pc1$ PC9");
  EXPECT_EQ(Count("NetUserEnum"), 6u);
  faults().FailNthOf("NetUserEnum", 3, 5);
  EXPECT_EQ(FailureOf([&] { domain->GetServers(); }), u"5|Veldmark2.CDomain|Access is denied.");
  faults().FailNthOf("NetUserEnum", 2, 234);
  EXPECT_EQ(ErrorOf([&] { domain->GetServers(); }), 234) << "more, and no way to it";
}

TEST_F(ServerWalks, ListSharesAndOfEachWhatTheyAreTold) {
  simulated::Computer& server = computer(u"FS1");
  server.AddDrive(u'D');
  server.AddFolder(u"D:\\Books");
  server.AddShare(u"Books", u"D:\\Books").remark = u"Ledgers";
  server.AddShare(u"Closed", u"D:\\Books").details_denied = true;
  server.AddShare(u"Drafts", u"D:\\Books").maximum_uses = 7;
  const Ref<CServer> fs1 = root_->GetServer(u"FS1", u"");
  Calls();
  std::string log;
  Log(log);
  const Ref<CShares> shares = fs1->GetShares();
  EXPECT_TRUE(log.starts_with("Retrieving Shares for Server FS1\n"));
  EXPECT_TRUE(log.ends_with(
      "Share Closed\nRetrieved Share D$\nRetrieved Share Drafts\nRetrieved Share IPC$\n"))
      << log;
  // The second page is denied, and from there on all come poorer.
  EXPECT_EQ(Calls(), "NetShareEnum FS1 2\nNetShareEnum FS1 2\nNetShareEnum FS1 1\n");
  const Ref<CShare> books = shares->ItemByKey(u"Books");
  EXPECT_EQ(books->Comment, u"Ledgers");
  EXPECT_EQ(books->SharePath(), u"D:\\Books");
  EXPECT_EQ(books->MaxUses, -1);
  EXPECT_EQ(books->ServerName, u"FS1");
  const Ref<CShare> drafts = shares->ItemByKey(u"Drafts");
  EXPECT_EQ(drafts->SharePath(), u"");
  EXPECT_EQ(drafts->MaxUses, 0);

  for (const DWORD code : {5u, 53u}) {
    faults().FailNthOf("NetShareEnum", 3, code);
    EXPECT_EQ(ErrorOf([&] { fs1->GetShares(); }), static_cast<std::int32_t>(code));
    Calls();
  }
}

TEST_F(ServerWalks, DeliverEveryServerOfBothListsByEventsUntilCancel) {
  const Ref<CDomain> domain = root_->GetDomain(u"CORP");
  domain->AsyncFetch = true;
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
    EXPECT_EQ(Calls(), "NetServerEnum - CORP 101\nNetServerEnum - CORP 100\n");
    EXPECT_FALSE(server->StateUnknown());
    EXPECT_EQ(server->PlatformId(), 500);
    EXPECT_EQ(server->Comment(), u"Files");
    EXPECT_EQ(server->VersionMajor(), 5);
    EXPECT_EQ(Calls(), "NetServerGetInfo \\\\FS1 102\n");
  }
  const std::pair<DWORD, TextView> failures[] = {{5, u"Access is denied."},
                                                 {234, u"More data is available."}};
  for (const auto& [status, text] : failures) {
    faults().Clear();
    faults().FailEvery("NetServerEnum", status);
    EXPECT_EQ(FailureOf([&] { domain->GetServers(); }),
              ToText(std::int64_t{status}) + u"|Veldmark2.CDomain|Error Retrieving Servers: " +
                  Text(text));
  }
  faults().Clear();
  EXPECT_EQ(Count("NetServerEnum"), 3u);
}

TEST_F(ServerWalks, AskTheBrowseListAloneWithoutAControllerOrWhereThatIsWanted) {
  const struct {
    const char16_t* domain;
    bool ignore;
    std::int32_t filter;
    const char* servers;
  } cases[] = {
      {u"CORP", true, -1, " DC1 FS1 PC1"}, {u"CORP", true, 0, " DC1 FS1 PC1"},
      {u"CORP", true, 8, " DC1"},          {u"CORP", true, SV_TYPE_SERVER_NT, " DC1 FS1"},
      {u"CORP", true, 0x40, ""},           {u"CORP", false, 8, " DC1 FS1 PC1 PC9"},
      {u"LAB", false, -1, " BENCH"},       {u"", false, -1, " LOCALHOST"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(ToUtf8(c.domain));
    const Ref<CDomain> domain = root_->GetDomain(c.domain);
    domain->IgnoreMachineAccounts = c.ignore;
    domain->ServerTypeFilter = static_cast<ServerTypeEnum>(c.filter);
    EXPECT_EQ(NamesIn(domain->GetServers(), u"ServerName"), c.servers);
    EXPECT_EQ(Err().Number(), 0);
    EXPECT_EQ(Count("NetUserEnum"), *c.domain == u'C' && !c.ignore ? 1u : 0u);
  }
  for (const Text& name : {Text(u"NOWHERE"), Text(300, u'x')}) {
    Calls();
    const Ref<CDomain> nowhere = root_->GetDomain(name);
    EXPECT_EQ(Calls(), "");
    EXPECT_EQ(ErrorOf([&] { nowhere->GetServers(); }), 6118);
    EXPECT_EQ(ErrorOf([&] { nowhere->GetPDC(); }), 2453);
    EXPECT_EQ(Err().Source(), u"Veldmark2.CDomain");
  }
}

TEST_F(ServerWalks, TellTheControllerWithoutAskingIt) {
  const Ref<CServer> controller = root_->GetDomain(u"CORP")->GetPDC();
  EXPECT_EQ(controller->ServerName, u"DC1");
  EXPECT_EQ(controller->DomainName, u"CORP");
  EXPECT_EQ(controller->PlatformId(), 500);
  EXPECT_TRUE(controller->StateUnknown());
  EXPECT_EQ(Calls(), "NetGetDCName  CORP\n");
  EXPECT_EQ(controller->VersionMajor(), 10);
  EXPECT_FALSE(controller->StateUnknown());
}

}  // namespace
}  // namespace veldmark
