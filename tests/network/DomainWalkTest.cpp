#include "network/NetworkFixture.h"
#include "storage/CFolder.h"
#include "storage/CFolders.h"
#include "support/MixedPlatform.h"

namespace veldmark {
namespace {

using simulated::Network;
using DomainWalks = NetworkTest;

constexpr const char* kWindows = "Microsoft Windows Network";

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
  EXPECT_EQ(NamesIn(networks, u"NetworkName"),
            std::string(" Dark Network Far Network ") + kWindows);
  EXPECT_EQ(NamesIn(networks, u"Comment"), " No provider answers  The usual one");
  EXPECT_EQ(NamesIn(networks, u"NetworkType"), " 0 -32765 2");
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
  EXPECT_EQ(NamesIn(domains, u"DomainName"), " WORKGROUP CORP LAB FAR");
  EXPECT_EQ(NamesIn(domains, u"Comment"), "  Head office  Elsewhere");
  EXPECT_EQ(ToUtf8(domains->ItemByKey(u"CORP")->NetworkName()), kWindows);
  EXPECT_EQ(log, std::string("Retrieving Available Networks\nRetrieving Domains for Network ") +
                     kWindows +
                     "\nRetrieved Domain WORKGROUP\nRetrieved Domain CORP\nRetrieved Domain LAB\n"
                     "Retrieved Domain FAR\n");
  EXPECT_EQ(Count("WNetEnumResourceW"), 7u) << "one for the networks, five with an entry, the end";
  EXPECT_EQ(NamesIn(root_->GetNetHood()->GetDomains(), u"DomainName"), " WORKGROUP CORP LAB FAR");

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
  local().AddFolder(u"C:\\D\\x");
  const auto folder = Make<CFolder>();
  folder->PutPath(u"C:\\D");
  folder->PutAsyncFetch(true);
  EXPECT_EQ(ErrorOf([&] { folder->GetSubFolders(); }), 13);
  network->PutAsyncFetch(false);
  EXPECT_EQ(ErrorOf([&] { folder->GetSubFolders(); }), 0);
}

TEST_F(DomainWalks, TellTrustedDomainsAndNoneWhereThatFails) {
  const auto trusted = [] { return NamesIn(Engine().GetTrustedDomains(), u"DomainName"); };
  EXPECT_EQ(trusted(), "");
  estate().Join(local(), u"CORP");
  estate().FindDomain(u"CORP")->trusts = {u"ONE", u"TWO", u"ONE"};
  EXPECT_EQ(trusted(), " ONE TWO");
  faults().FailEvery("NetEnumerateTrustedDomains", 5);
  EXPECT_EQ(trusted(), "");
}

/// A provider that answers `WNetEnumResourceW` by a script, whose last line goes on for ever.
class ScriptedProvider final : public NetworkProvider {
 public:
  struct Answer {
    DWORD status;
    std::vector<const char16_t*> names{};
    DWORD size = 0;   ///< 0 leaves the caller's
    DWORD count = 0;  ///< 0: of the names; none of either leaves the caller's
  };

  DWORD WNetGetUniversalNameW(LPCWSTR, DWORD, void*, DWORD*) override { return 2250; }
  DWORD WNetAddConnection3W(HWND, const NETRESOURCEW*, LPCWSTR, LPCWSTR, DWORD) override {
    return 50;
  }
  DWORD WNetCancelConnection2W(LPCWSTR, DWORD, BOOL) override { return 50; }
  DWORD WNetOpenEnumW(DWORD scope, DWORD type, DWORD usage, const NETRESOURCEW* parent,
                      HANDLE* enumeration) override {
    asked += std::to_string(scope) + std::to_string(type) + std::to_string(usage) + " ";
    if (parent) {
      for (const DWORD word : {parent->dwScope, parent->dwType, parent->dwDisplayType}) {
        asked += std::to_string(word);
      }
      EXPECT_EQ(parent->lpRemoteName, parent->lpProvider);
      EXPECT_TRUE(!parent->lpLocalName && !parent->lpComment);
      asked += " " + ToUtf8(parent->lpRemoteName) + " ";
    }
    ++open;
    *enumeration = this;
    return 0;
  }
  DWORD WNetEnumResourceW(HANDLE, DWORD* count, void* buffer, DWORD* size) override {
    asked += std::to_string(*size) + " ";
    EXPECT_EQ(*count, 0xFFFFFFFF);
    const Answer& answer = script[std::min(next++, script.size() - 1)];
    auto* record = static_cast<NETRESOURCEW*>(buffer);
    for (const char16_t* name : answer.names) {
      *record++ = {.dwScope = 2,
                   .dwType = 3,
                   .dwDisplayType = display_type,
                   .dwUsage = 5,
                   .lpLocalName = nullptr,
                   .lpRemoteName = const_cast<LPWSTR>(name),
                   .lpComment = nullptr,
                   .lpProvider = nullptr};
    }
    if (!answer.names.empty()) *count = static_cast<DWORD>(answer.names.size());
    if (answer.count != 0) *count = answer.count;
    if (answer.status == 259) *count = 0;
    if (answer.size != 0) *size = answer.size;
    return answer.status;
  }
  DWORD WNetCloseEnum(HANDLE) override {
    --open;
    return 0;
  }
  DWORD WNetGetNetworkInformationW(LPCWSTR, NETINFOSTRUCT* information) override {
    EXPECT_EQ(information->cbStructure, sizeof *information);
    return 1204;
  }

  std::vector<Answer> script;
  std::size_t next = 0;
  DWORD display_type = kDisplayTypeNetwork;
  std::string asked;
  int open = 0;
};

TEST(ResourceWalks, KeepToTheirBufferAndComeToAnEndWhateverTheProviderAnswers) {
  using Answers = std::vector<ScriptedProvider::Answer>;
  const struct {
    Answers script;
    const char *networks, *networks_asked, *domains, *domains_asked;
  } cases[] = {
      {{{0, {u"A", u"B"}}, {259}}, " A B", "200 16384 ", " A B", "200 236 N 16383 16383 "},
      {{{259}}, "259", "200 16384 ", "", "200 236 N 16383 "},
      {{{0, {u"A"}, 4096}, {259}}, " A", "200 16384 ", " A", "200 236 N 16383 4096 "},
      {{{0, {u"A"}, 1u << 30}, {259}}, " A", "200 16384 ", " A", "200 236 N 16383 16383 "},
      // More than fits: asked for again with the size that it takes.
      {{{234, {}, 40000}, {0, {u"A"}}, {259}}, " A", "200 16384 40000 ", "234", "200 236 N 16383 "},
      // The list of the second call is read from behind the first one's.
      {{{234, {u"A"}}, {0, {u"B", u"C", u"D"}}, {259}},
       " A C D",
       "200 16384 16384 ",
       "234",
       "200 236 N 16383 "},
      {{{234}, {0, {u"A"}}, {259}}, " A", "200 16384 16384 ", "234", "200 236 N 16383 "},
      {{{234}}, "234", "200 16384 16384 ", "234", "200 236 N 16383 "},
      {{{5}}, "5", "200 16384 ", "5", "200 236 N 16383 "},
      {{{0, {u"A"}, 0, 1u << 20}}, "13", "200 16384 ", "13", "200 236 N 16383 "},
      {{{0}}, "", "200 16384 ", "", "200 236 N 16383 "},
  };
  for (const auto& c : cases) {
    simulated::SimulatedPlatform simulated;
    ScriptedProvider provider;
    provider.script = c.script;
    Platform mixed = Mixed(simulated.platform(), provider);
    Apartment::Start(mixed);
    const auto run = [&](auto&& walk) {
      std::string found;
      const std::int32_t error = ErrorOf([&] { found = walk(); });
      EXPECT_EQ(provider.open, 0);
      return error == 0 ? found : std::to_string(error);
    };
    EXPECT_EQ(run([] { return NamesIn(Engine().GetNetworks(), u"NetworkName"); }), c.networks);
    EXPECT_EQ(provider.asked, c.networks_asked);

    const auto network = Make<CNetwork>();
    network->NetworkName = u"N";
    NETRESOURCEW record{};
    record.dwScope = 2;
    record.dwType = 3;
    record.dwDisplayType = 6;
    network->SetResource(record);
    provider.next = 0;
    provider.display_type = kDisplayTypeDomain;
    provider.asked.clear();
    EXPECT_EQ(run([&] { return NamesIn(Engine().GetDomains(*network, false), u"DomainName"); }),
              c.domains);
    EXPECT_EQ(provider.asked, c.domains_asked);
    Apartment::End();
  }
}

}  // namespace
}  // namespace veldmark
