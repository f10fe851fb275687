#include <tuple>
#include <vector>

#include "accounts/CGroup.h"
#include "accounts/CGroups.h"
#include "accounts/CUser.h"
#include "automation/CaseMapping.h"
#include "security/SecurityFixture.h"
#include "security/WellKnownGroups.h"

namespace veldmark {
namespace {

using simulated::Role;
using simulated::Sid;

constexpr TextView kCorp = u"S-1-5-21-1-2-3";

/// HOST, which is in the domain CORP of the controller DC1, and the workgroup's LONER.
struct DomainWorld : SimulatedApartment {
  DomainWorld() {
    auto& domain = estate().AddDomain(u"CORP", *Sid::FromText(Text(kCorp)));
    domain.accounts->AddUser(u"ann", 1104);
    domain.accounts->AddGroup(u"Staff", {u"ann"}, 1105);
    domain.accounts->AddLocalGroup(u"Readers", {}, 1106);
    estate().AddMember(u"CORP", u"DC1", Role::PrimaryController);
    estate().Join(local(), u"CORP", Role::Workstation);
    local().own_accounts().AddUser(u"bob", 1001);
    local().own_accounts().AddLocalGroup(u"Ops", {}, 1002);
    estate().AddComputer(u"LONER").own_accounts().AddUser(u"eve", 1001);
    journal().Clear();
  }

  Text Host() { return local().name(); }
  Text OwnSid(const char16_t* number) { return local().own_accounts().sid().ToText() + number; }
};

class Accounts : public TestIn<DomainWorld> {
 protected:
  static Ref<CSid> SidOf(const Text& text, const Text& server = {}) {
    return SystemRoot().GetSidFromText2(text, server);
  }
  std::size_t LookUps() { return journal().Count("LookupAccountSidW"); }
};

/// "user 1|CORP|DC1|ann": what `GetAccount` makes of a SID.
std::string AccountOf(CSid& sid) {
  const Ref<Object> account = sid.GetAccount();
  if (!account) return "nothing";
  const bool is_user = dynamic_cast<CUser*>(account.Get()) != nullptr;
  return (is_user ? "user " : "group ") +
         ValuesOf(*account, {is_user ? u"UserType" : u"GroupType", u"DomainName", u"ServerName",
                             is_user ? u"UserName" : u"GroupName"});
}

TEST_F(Accounts, BecomeTheObjectOfTheirKind) {
  using simulated::SidUse;
  const auto gone = [](const char16_t* number) {
    return *Sid::FromText(u"S-1-5-21-9-9-9-" + Text(number));
  };
  estate().AddKnownAccount({gone(u"1"), u"OLD", u"gone", SidUse::DeletedAccount});
  estate().AddKnownAccount({gone(u"2"), u"BUILTIN", u"gone", SidUse::DeletedAccount});
  estate().AddKnownAccount({gone(u"3"), u"OLD", u"bad", SidUse::Invalid});
  const std::string host = ToUtf8(Host());
  const Text corp(kCorp);
  const std::tuple<Text, Text, std::string, std::string, std::int32_t> cases[] = {
      {corp + u"-1104", u"", "user 1|CORP|DC1|ann", "CORP\\ann", 1},
      {OwnSid(u"-1001"), Host(), "user 0||" + host + "|bob", "\\\\" + host + "\\bob", 1},
      {OwnSid(u"-1001"), u"\\\\" + Host(), "user 0||" + host + "|bob", "\\\\" + host + "\\bob", 1},
      // Without a server the domain is taken for a real one, which has no controller.
      {OwnSid(u"-1001"), u"", "user 0||" + host + "|bob", "\\\\" + host + "\\bob", 1},
      {corp + u"-1105", u"", "group 1|CORP|DC1|Staff", "CORP\\Staff", 2},
      {corp + u"-1106", u"DC1", "group 0|CORP|DC1|Readers", "CORP\\Readers", 4},
      {OwnSid(u"-1002"), Host(), "group 0||" + host + "|Ops", "\\\\" + host + "\\Ops", 4},
      {corp, u"", "nothing", "(Account Unknown)", 3},
      {u"S-1-5-32-544", u"", "group 0|BUILTIN||Administrators", "BUILTIN\\Administrators", 4},
      {u"S-1-5-32-544", Host(), "group 0||" + host + "|Administrators",
       "\\\\" + host + "\\Administrators", 4},
      {u"S-1-5-32-544", u"DC1", "group 0|CORP|DC1|Administrators", "CORP\\Administrators", 4},
      {u"S-1-5-18", u"", "group 2|NT AUTHORITY||SYSTEM", "NT AUTHORITY\\SYSTEM", 5},
      {u"S-1-1-0", u"", "group 2|||Everyone", "Everyone", 5},
      {corp + u"-4711", u"", "user 2|||(Account Unknown)", "(Account Unknown)", 0},
      {u"S-1-5-21-9-9-9-1", u"", "user 1|OLD||(Deleted Account)", "OLD\\(Deleted Account)", 6},
      {u"S-1-5-21-9-9-9-2", u"", "user 0|||(Deleted Account)", "\\\\\\(Deleted Account)", 6},
      {u"S-1-5-21-9-9-9-3", u"", "user 1|OLD||(Account Invalid)", "OLD\\(Account Invalid)", 7},
  };
  for (const auto& [text, server, account, name, type] : cases) {
    Apartment::Current().sid_cache = Make<Collection>();
    Apartment::Current().account_cache = Make<Collection>();
    SCOPED_TRACE(ToUtf8(text + u" on " + server));
    const auto sid = SidOf(text, server);
    EXPECT_EQ(sid->SIDType(), 0);
    EXPECT_EQ(AccountOf(*sid), account);
    EXPECT_EQ(ToUtf8(sid->AccountDisplayName()), name);
    EXPECT_EQ(sid->SIDType(), type);
    EXPECT_EQ(sid->IsBuiltin(), text.starts_with(u"S-1-5-32") || text.ends_with(u"-9-9-2"));
    EXPECT_EQ(sid->AccountUnknown(), name == "(Account Unknown)");
  }
}

TEST_F(Accounts, AreLookedUpOnceASidAndAgainForAServerThatMayKnowMore) {
  const Text ann = Text(kCorp) + u"-1104";
  EXPECT_EQ(SidOf(ann)->AccountName(), u"ann");
  EXPECT_EQ(SidOf(ann, u"LONER")->AccountDomain(), u"CORP") << "a name is served for any server";
  EXPECT_EQ(LookUps(), 1u);
  const Text eve = estate().FindComputer(u"LONER")->own_accounts().sid().ToText() + u"-1001";
  EXPECT_EQ(SidOf(eve, Host())->AccountName(), u"(Account Unknown)");
  const std::size_t failed = LookUps();
  EXPECT_EQ(SidOf(eve, ToUpper(Host()))->AccountName(), u"(Account Unknown)");
  EXPECT_EQ(LookUps(), failed) << "the failure is remembered for its server";
  EXPECT_EQ(SidOf(eve, u"LONER")->AccountName(), u"eve");
  EXPECT_EQ(SidOf(eve, Host())->AccountName(), u"eve");
  EXPECT_EQ(LookUps(), failed + 1);
  SystemRoot().ClearSidCache();
  EXPECT_EQ(SidOf(ann)->AccountName(), u"ann");
  EXPECT_EQ(LookUps(), failed + 2);
  // By name the other cache still answers, in any case.
  const auto by_name = Make<CSid>();
  EXPECT_EQ(by_name->ResolveFromAccount(u"corp", u"ANN"), ann);
  EXPECT_EQ(by_name->SIDType(), SidTypeUser);
  EXPECT_EQ(journal().Count("LookupAccountNameW"), 0u);
  EXPECT_EQ(AsBytes(by_name->SidBuffer()).size(), 28u) << "made from the text";
  // One cache alone serves nobody.
  Apartment::Current().account_cache = nullptr;
  EXPECT_EQ(SidOf(ann)->AccountName(), u"ann");
  EXPECT_EQ(SidOf(Text(kCorp) + u"-1105")->AccountName(), u"Staff");
  EXPECT_EQ(LookUps(), failed + 4);
}

TEST_F(Accounts, AreAskedOfTheControllerWhereTheServerDoesNotKnow) {
  // The server has lost its way to the domain; its controller is still asked by the library.
  faults().FailNthOf("LookupAccountSidW", 1, 1722);
  const auto sid = SidOf(Text(kCorp) + u"-1104", u"\\\\" + Host());
  EXPECT_EQ(ValuesOf(*sid, {u"AccountServer", u"AccountDomain", u"AccountName"}), "|CORP|ann");
  std::vector<std::string> asked;
  for (const auto& call : journal().entries()) asked.push_back(call.operation);
  EXPECT_EQ(asked,
            (std::vector<std::string>{"LookupAccountSidW", "NetWkstaGetInfo", "NetApiBufferFree",
                                      "NetGetDCName", "NetApiBufferFree", "LookupAccountSidW"}));
  // Any other failure on both leaves nothing behind, and is asked anew each time.
  faults().FailEvery("LookupAccountSidW", 5);
  const auto other = SidOf(Text(kCorp) + u"-1105", Host());
  EXPECT_EQ(other->AccountName(), u"");
  EXPECT_FALSE(other->AccountUnknown());
  EXPECT_EQ(AccountOf(*other), "user 2|||(Account Unknown)");
  faults().Clear();
  EXPECT_EQ(SidOf(Text(kCorp) + u"-1105", Host())->AccountName(), u"Staff");
}

TEST_F(Accounts, GiveTheirSidByName) {
  SystemRoot root;
  EXPECT_EQ(root.LookupSidText(u"", u"ignored", u"CORP\\ann"), Text(kCorp) + u"-1104");
  EXPECT_EQ(root.LookupSidText(Host(), u"", u"bob"), OwnSid(u"-1001"));
  EXPECT_EQ(root.LookupSidText(u"LONER", u"", u"CORP\\ann"), u"");
  EXPECT_EQ(root.LookupSidText(u"nobody", u"", u"bob"), u"");
  EXPECT_EQ(root.LookupSidText(u"", u"", Text(300, u'x')), u"");
  EXPECT_EQ(root.LookupSidText(u"", u"", u"SYSTEM"), u"S-1-5-18");
  Ref<CSid> sid;
  Text domain;
  SidWords words;
  SidTypeEnum type{};
  Engine().GetSid(u"", domain, u"SYSTEM", words, type, sid);
  EXPECT_EQ(domain, u"NT AUTHORITY");
  EXPECT_EQ(type, SidTypeWellKnownGroup);
  EXPECT_EQ(words, sid->SidBuffer());
  EXPECT_EQ(sid->WellKnownGroupType(), WKG_SYSTEM);
}

TEST_F(Accounts, OfAliasesComeFromTheTableAndTheServersDomain) {
  Text told;
  for (const char16_t* alias :
       {u"WD", u"co", u"CG", u"nu", u"IU", u"SU", u"AN", u"ED", u"PS", u"AU", u"RC", u"SY",
        u"LS", u"NS", u"BA", u"BU", u"BG", u"PU", u"AO", u"SO", u"PO", u"BO", u"RE", u"RU",
        u"RD", u"NO", u"DA", u"DU", u"DG", u"DC", u"DD", u"CA", u"SA", u"PA", u"RS", u"EA"}) {
    Engine().TranslateSid(alias, Host(), Text());
    // From now on its name is remembered, which leaves the type alone.
    const auto sid = Engine().TranslateSid(alias, Host(), Text());
    told += sid->SidText().substr(4) + u" ";
    if (sid->WellKnownGroupType() >= 0) {
      told += u"is " + ToText(std::int64_t{sid->WellKnownGroupType()}) + u", ";
    }
    EXPECT_EQ(sid->ResidesOnServer(), sid->WellKnownGroupType() < 0 ? Host() : Text());
  }
  EXPECT_EQ(ToUtf8(told),
            "1-0 is 0, 3-0 is 2, 3-1 is 3, 5-2 is 5, 5-4 is 7, 5-6 is 8, 5-7 is 9, 5-9 is 21, "
            "5-10 is 19, 5-11 is 16, 5-12 is 20, 5-18 is 17, 5-19 is 8, 5-20 is 5, "
            "5-32-544 5-32-545 5-32-546 5-32-547 5-32-548 5-32-549 5-32-550 5-32-551 5-32-552 "
            "5-32-554 5-32-555 5-32-556 5-21-1-2-3-512 5-21-1-2-3-513 5-21-1-2-3-514 "
            "5-21-1-2-3-515 5-21-1-2-3-516 5-21-1-2-3-517 5-21-1-2-3-518 5-21-1-2-3-520 "
            "5-21-1-2-3-553 5-21-1-2-3-519 ");
  // The enterprise is that of the forest's root.
  estate().AddDomain(u"ROOT", *Sid::FromText(u"S-1-5-21-7-8-9"));
  estate().AddMember(u"ROOT", u"RDC", Role::PrimaryController);
  EXPECT_EQ(Engine().TranslateSid(u"EA", Host(), u"\\\\RDC")->SidText(), u"S-1-5-21-7-8-9-519");
  EXPECT_EQ(Engine().TranslateSid(u"SA", Host(), u"RDC")->SidText(), u"S-1-5-21-1-2-3-518");
  for (const char16_t* unknown : {u"XX", u"", u"W", u"WDX", u"LA", u"lg"}) {
    EXPECT_EQ(ErrorOf([&] { Engine().TranslateSid(unknown, Host(), Text()); }), 91)
        << ToUtf8(unknown);
  }
  EXPECT_EQ(ErrorOf([&] { Engine().TranslateSid(u"LA", u"nobody", Text()); }), 53);
  EXPECT_EQ(Engine().GetDomainAuthorities(u""), (std::vector<std::int32_t>{21, 1, 2, 3}));
  EXPECT_EQ(ErrorOf([&] { Engine().GetDomainAuthorities(u"LONER"); }), 6);
}

TEST_F(Accounts, OfNumbersCountUpToTheLastThatIsNotZero) {
  const auto text = [](std::uint8_t authority, std::vector<std::int32_t> values) {
    return Engine().InitializeSid(authority, values)->SidText();
  };
  EXPECT_EQ(text(5, {32, 544, 0, 0, 0, 0, 0, 0}), u"S-1-5-32-544");
  EXPECT_EQ(text(5, {0, 1, 0}), u"S-1-5-0-1");
  EXPECT_EQ(text(1, {0}), u"S-1-1-0");
  EXPECT_EQ(text(5, {1, 2, 3, 4, 5, 6, 7, -1}), u"S-1-5-1-2-3-4-5-6-7-4294967295");
  EXPECT_EQ(text(5, {1, 2, 3, 4, 5, 6, 7, 8, 9}), u"");
}

using WellKnownGroups = ApartmentFixture;

TEST_F(WellKnownGroups, StandThreeTimesWithTheNamesOfThePlatform) {
  SystemRoot root;
  const Ref<CGroups> groups = root.GetWellKnownGroups();
  EXPECT_EQ(groups.Get(), SystemRoot().GetWellKnownGroups().Get());
  std::string listed;
  for (std::int32_t index = 1; index <= groups->Count(); index += 3) {
    const auto group = groups->ItemByIndex(index);
    EXPECT_EQ(group.Get(), groups->ItemByIndex(index + 1).Get());
    EXPECT_EQ(group.Get(), groups->ItemByIndex(index + 2).Get());
    EXPECT_EQ(group->GroupType, GT_WellKnownGroup);
    EXPECT_EQ(group->GetSid()->WellKnownGroupType(), group->WellKnownGroupType);
    listed += ToUtf8(group->GetSid()->SidText() + u"=" + group->AccountDisplayName()) + " " +
              std::to_string(group->WellKnownGroupType) + ", ";
  }
  EXPECT_EQ(listed,
            "S-1-1-0=Everyone 0, S-1-2-0=LOCAL 1, S-1-3-0=CREATOR OWNER 2, "
            "S-1-3-1=CREATOR GROUP 3, S-1-5-1=NT AUTHORITY\\DIALUP 4, "
            "S-1-5-2=NT AUTHORITY\\NETWORK 5, S-1-5-3=NT AUTHORITY\\BATCH 6, "
            "S-1-5-4=NT AUTHORITY\\INTERACTIVE 7, S-1-5-6=NT AUTHORITY\\SERVICE 8, "
            "S-1-5-7=NT AUTHORITY\\ANONYMOUS LOGON 9, "
            "S-1-5-11=NT AUTHORITY\\Authenticated Users 16, "
            "S-1-5-13=NT AUTHORITY\\TERMINAL SERVER USER 18, S-1-5-18=NT AUTHORITY\\SYSTEM 17, "
            "S-1-5-19=NT AUTHORITY\\LOCAL SERVICE 22, S-1-5-20=NT AUTHORITY\\NETWORK SERVICE 23, ");
  EXPECT_EQ(groups->ItemByKey(u"S-1-1-0")->GroupName, u"Everyone");
  EXPECT_EQ(groups->ItemByKey(u"Everyone")->GroupName, u"Everyone");
  EXPECT_EQ(ErrorOf([&] { groups->ItemByKey(u"EVERYONE"); }), 5);
  // The type of a group whose key the engine's look-up misses is found by its SID.
  const auto everyone = root.GetSidFromText(u"S-1-1-0");
  EXPECT_EQ(everyone->WellKnownGroupType(), -1) << "before it was looked up";
  everyone->AccountName();
  everyone->SidText();
  EXPECT_EQ(everyone->WellKnownGroupType(), WKG_EVERYONE);
  // That of one which it finds is known from the look-up on.
  const auto system = root.GetSidFromText(u"S-1-5-18");
  system->AccountName();
  Apartment::Current().well_known_groups = nullptr;
  EXPECT_EQ(system->WellKnownGroupType(), WKG_SYSTEM);
}

TEST_F(WellKnownGroups, LackWhatTheComputerHasNoNameForAndGrowAtRunTime) {
  estate().ForgetKnownAccount(*Sid::FromText(u"S-1-5-13"));
  local().description().version_major = 4;
  const Ref<CGroups> groups = BuildWellKnownGroups();
  Apartment::Current().well_known_groups = groups;
  EXPECT_EQ(groups->Count(), 3 * 12);
  const auto sid = SystemRoot().GetSidFromText(u"S-1-5-19");
  EXPECT_EQ(AccountOf(*sid), "group 2|NT AUTHORITY||LOCAL SERVICE");
  EXPECT_EQ(groups->Count(), 3 * 12 + 1);
  sid->GetAccount();
  EXPECT_EQ(groups->Count(), 3 * 12 + 1);
}

TEST(AccountFaults, LeaveNoBufferAndCacheNoFailureAsASuccess) {
  SweepFaults<DomainWorld>(
      {"LookupAccountSidW", "NetWkstaGetInfo", "NetGetDCName", "NetServerGetInfo",
       "NetApiBufferFree", "LoadLibraryExW", "FormatMessageW", "LocalFree", "FreeLibrary"},
      [](DomainWorld& world) {
        for (const char16_t* text : {u"S-1-5-21-1-2-3-1104", u"S-1-5-21-1-2-3-1105",
                                     u"S-1-5-32-544", u"S-1-5-21-1-2-3-4711"}) {
          SystemRoot().GetSidFromText2(text, world.Host())->AccountDisplayName();
        }
      },
      [](DomainWorld& world, const std::string&, bool) {
        world.faults().Clear();
        SystemRoot().ClearSidCache();
        const auto ann = SystemRoot().GetSidFromText2(u"S-1-5-21-1-2-3-1104", world.Host());
        EXPECT_EQ(ann->AccountDisplayName(), u"CORP\\ann");
      });
}

}  // namespace
}  // namespace veldmark
