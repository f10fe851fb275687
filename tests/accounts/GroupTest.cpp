#include "accounts/AccountsFixture.h"
#include "automation/Interface.h"
#include "network/CDomain.h"
#include "support/MixedPlatform.h"

namespace veldmark {
namespace {

using simulated::Sid;
using testing::ElementsAre;

using Groups = AccountsTest;

TEST_F(Groups, HaveMembersOfAnyKindAndOfAnyDomainThatTheirListShowsWhole) {
  far().AddUser(u"eve");
  far().AddGroup(u"Readers");
  srv->own_accounts().AddUser(u"O'Neil (x) \x263A");
  srv->own_accounts().AddLocalGroup(
      u"Ops",
      {corp().sid(), srv->own_accounts().SidOf(u"ann"), corp().SidOf(u"bob"), corp().SidOf(u"bob"),
       corp().SidOf(u"Staff"), corp().SidOf(u"Staff"), far().SidOf(u"eve"), far().SidOf(u"Readers"),
       srv->own_accounts().SidOf(u"O'Neil (x) \x263A"), *Sid::FromText(u"S-1-5-21-1-2-3-1000"),
       simulated::AuthenticatedUsersSid()});
  const Ref<CGroup> group = Group(u"Ops", GT_LocalGroup, u"SRV");
  Ref<CGroups> groups;
  Ref<CUsers> users;
  journal().Clear();
  group->GetGroupMembers(groups, users);
  // Each distinct member is looked up once.
  EXPECT_EQ(journal().Count("LookupAccountSidW"), 10u);
  EXPECT_EQ(Shown(users), ToUtf8(u"ann|0|SRV|, bob|1|DC1|CORP, bob|1|DC1|CORP, eve|0|FAR|, "
                                 u"O'Neil (x) \x263A|0|SRV|, (Account Unknown)|2||"));
  // A domain is no member that can be shown. No primary controller answers for the group of FAR; of
  // two of a name the first stays.
  EXPECT_EQ(Shown(groups), "Staff|1|DC1|CORP, Readers|1||FAR, Authenticated Users|2||NT AUTHORITY");
  journal().Clear();
  EXPECT_EQ(users->ItemByIndex(2)->GetSid()->SidText(), corp().SidOf(u"bob").ToText());
  EXPECT_EQ(groups->ItemByIndex(1)->GetSid()->SidText(), corp().SidOf(u"Staff").ToText());
  EXPECT_TRUE(journal().entries().empty());
}

/// The estate's accounts, but that they answer with records such as no server should send.
class OddAccounts final : public simulated::SimulatedAccountManagement {
 public:
  using SimulatedAccountManagement::SimulatedAccountManagement;
  DWORD NetLocalGroupGetMembers(LPCWSTR, LPCWSTR, DWORD, BYTE** buffer, DWORD, DWORD* read, DWORD*,
                                UINT_PTR* resume) override {
    *resume = *resume == 0 ? 7 : 0;
    *buffer = *resume == 0 ? nullptr : reinterpret_cast<BYTE*>(members_);
    *read = 3;
    return 0;
  }
  DWORD NetUserGetLocalGroups(LPCWSTR, LPCWSTR, DWORD, DWORD, BYTE** buffer, DWORD, DWORD* read,
                              DWORD* total) override {
    *buffer = reinterpret_cast<BYTE*>(&no_name_);
    *read = 1;
    *total = 1000;
    return 0;
  }
  DWORD NetQueryDisplayInformation(LPCWSTR, DWORD, DWORD, DWORD, DWORD, DWORD* returned,
                                   void** buffer) override {
    *buffer = display_;
    *returned = 2;
    return 0;
  }
  DWORD NetUserGetInfo(LPCWSTR, LPCWSTR, DWORD, BYTE**) override { return 0; }
  DWORD NetLocalGroupGetInfo(LPCWSTR, LPCWSTR, DWORD, BYTE**) override { return 0; }

 private:
  // The first SID has no sound length, the second no place, and the third is one.
  std::array<std::uint8_t, 8> unsound_ = {1, 200, 0, 0, 0, 0, 0, 5};
  std::array<std::uint8_t, 12> everyone_ = {1, 1, 0, 0, 0, 0, 0, 1};
  LOCALGROUP_MEMBERS_INFO_0 members_[3] = {{unsound_.data()}, {nullptr}, {everyone_.data()}};
  LPWSTR no_name_ = nullptr;
  NET_DISPLAY_USER display_[2] = {};
};

TEST(OddRecords, AreNotReadBeyondWhatTheyHold) {
  MixedWorld<AccountsWorld, OddAccounts> world;
  const Ref<CGroup> group = world.Group(u"Ops", GT_LocalGroup, u"SRV");
  const Ref<CUser> user = world.User(u"x", UT_LocalUser, u"SRV");
  Ref<CGroups> groups;
  Ref<CUsers> users;
  group->GetGroupMembers(groups, users);
  EXPECT_EQ(Shown(users), "(Account Unknown)|2||, (Account Unknown)|2||");
  EXPECT_EQ(Shown(groups), "Everyone|2||");
  EXPECT_EQ(Shown(user->GetGroups()), "|0|SRV|");
  EXPECT_EQ(Shown(Engine().GetUsers(*world.Server(u"SRV"), false)), "|0|SRV|, |0|SRV|");
  EXPECT_EQ(ErrorOf([&] { user->Comment(); }), 13);
  EXPECT_EQ(ErrorOf([&] { group->Comment(); }), 13);
}

TEST_F(Groups, GiveGlobalAndWellKnownOnesUsersOrNothing) {
  const Ref<CGroup> staff = Group(u"Staff", GT_GlobalGroup, u"", u"CORP");
  auto groups = Make<CGroups>();
  Ref<CUsers> users;
  staff->GetGroupMembers(groups, users);
  EXPECT_EQ(groups, nullptr);
  EXPECT_EQ(Shown(users), "bob|1|\\\\DC1|CORP");
  EXPECT_EQ(staff->GetGroups(), nullptr);
  for (const GroupTypeEnum type : {GT_WellKnownGroup, GT_AccountUnknown}) {
    const Ref<CGroup> group = Group(u"Staff", type, u"DC1");
    EXPECT_EQ(group->GetUsers(), nullptr);
    groups = Make<CGroups>();
    const Ref<CUsers> before = users;
    group->GetGroupMembers(groups, users);
    EXPECT_NE(groups, nullptr);
    EXPECT_EQ(users, before);
  }
}

TEST_F(Groups, DeliverTheirMembersByEventsAndThemselvesInTheirGroupsPlace) {
  srv->own_accounts().AddLocalGroup(
      u"Ops", {corp().SidOf(u"Staff"), corp().SidOf(u"bob"), corp().SidOf(u"Staff")});
  const Ref<CGroup> group = Group(u"Ops", GT_LocalGroup, u"SRV");
  group->PutAsyncFetch(true);
  std::vector<std::string> heard;
  std::size_t most = 1000;
  Listen(*group, [&](std::int32_t event, std::span<Variant> arguments) {
    const Ref<Object> object = ToObject(arguments[0]);
    heard.push_back(std::to_string(event) + ToUtf8(TypeName(object.Get())) +
                    (object == Ref<Object>(group) ? " itself" : ""));
    if (heard.size() == most) arguments[1].Assign(Variant(true));
  });
  EXPECT_EQ(Shown(group->GetUsers()), "");
  EXPECT_THAT(heard, ElementsAre("2CGroup itself", "1CUser", "2CGroup itself"));
  for (most = 1; most <= 2; ++most) {
    heard.clear();
    EXPECT_EQ(Shown(group->GetGroups()), "");
    EXPECT_EQ(heard.size(), most);
  }
}

TEST_F(Groups, FetchCommentNumberAndAttributesOnce) {
  const Ref<CGroup> staff = Group(u"staff", GT_GlobalGroup, u"ELSEWHERE", u"CORP");
  staff->PutComment(u"overwritten by the fetch");
  EXPECT_EQ(static_cast<DWORD>(staff->GroupId()), corp().group(u"Staff").number);
  EXPECT_EQ(ValuesOf(*staff, {u"Comment", u"GroupName", u"Attributes"}), "All of us|Staff|7");
  EXPECT_EQ(Called({"NetGroupGetInfo"}), "\\\\DC1 staff 2;");
  staff->PutComment(u"kept");
  EXPECT_EQ(staff->Comment(), u"kept");
  EXPECT_EQ(ErrorOf([&] { Group(u"x", GT_GlobalGroup, u"DC1", u"NONE")->GroupId(); }), 5);

  srv->own_accounts().AddLocalGroup(u"Ops").comment = u"of SRV";
  journal().Clear();
  const Ref<CGroup> ops = Group(u"Ops", GT_LocalGroup, u"SRV");
  faults().FailNthOf("NetLocalGroupGetInfo", 1, 1722);
  EXPECT_EQ(ErrorOf([&] { ops->Comment(); }), 1722);
  EXPECT_EQ(ops->Comment(), u"of SRV");
  EXPECT_EQ(ops->GroupId() + ops->Attributes(), 0);
  EXPECT_EQ(journal().Count("NetLocalGroupGetInfo"), 2u);
  EXPECT_EQ(Engine().GetLocalGroups(Server(u"SRV").Get(), false)->Count(),
            static_cast<std::int32_t>(srv->own_accounts().local_groups().size()));
  EXPECT_EQ(Group(u"x", GT_WellKnownGroup, u"")->Comment(), u"");
  EXPECT_EQ(journal().Count("NetLocalGroupGetInfo"), 2u);

  EXPECT_EQ(Shown(*root.GetGroup(u"\\\\SRV", u"ops")), "Ops|0|SRV|");
  EXPECT_EQ(Shown(*root.GetGroup(u"CORP", u"staff")), "Staff|1|DC1|CORP");
  EXPECT_EQ(ErrorOf([&] { root.GetGroup(u"\\\\SRV", u"none"); }), 1376);
  EXPECT_EQ(ErrorOf([&] { root.GetGroup(u"FAR", u"Readers"); }), 2453);
}

TEST_F(Groups, AndUsersAreDisplayedWithTheirComputerOrDomain) {
  const auto shown = [&](std::int32_t type, TextView server, TextView domain) {
    const Ref<CUser> user = User(u"x", UserTypeEnum{type}, server, domain);
    const Ref<CGroup> group = Group(u"x", GroupTypeEnum{type}, server, domain);
    return user->AccountDisplayName() + u" " + group->AccountDisplayName();
  };
  EXPECT_EQ(shown(0, u"SRV", u""), u"\\\\SRV\\x \\\\SRV\\x");
  EXPECT_EQ(shown(0, u"\\\\SRV", u""), u"\\\\SRV\\x \\\\SRV\\x");
  EXPECT_EQ(shown(0, u"DC1", u"CORP"), u"\\\\DC1\\x CORP\\x");
  EXPECT_EQ(shown(1, u"DC1", u"CORP"), u"CORP\\x CORP\\x");
  EXPECT_EQ(shown(1, u"DC1", u""), u"x x");
  EXPECT_EQ(shown(2, u"DC1", u"CORP"), u"x CORP\\x");
  EXPECT_EQ(shown(3, u"DC1", u"CORP"), u"x x");
}

TEST_F(Groups, TellTheirSidByTheirKind) {
  simulated::AccountDatabase& accounts = srv->own_accounts();
  accounts.AddLocalGroup(u"Ops");
  const auto sid = [&](GroupTypeEnum type, TextView name, TextView server, TextView domain) {
    const Ref<CSid> found = Group(name, type, server, domain)->GetSid();
    return found->SidText() + u" " + found->ResidesOnServer();
  };
  EXPECT_EQ(sid(GT_LocalGroup, u"Ops", u"SRV", u""), accounts.SidOf(u"Ops").ToText() + u" SRV");
  EXPECT_EQ(sid(GT_GlobalGroup, u"Staff", u"SRV", u"CORP"),
            corp().SidOf(u"Staff").ToText() + u" SRV");
  EXPECT_EQ(sid(GT_WellKnownGroup, u"Everyone", u"SRV", u""), u"S-1-1-0 ");
  EXPECT_EQ(sid(GT_AccountUnknown, u"Everyone", u"SRV", u""), u" ");
}

TEST_F(Groups, AreWrittenAsNewOnesOrAsTheyAre) {
  const Ref<CGroup> made = Server(u"SRV")->CreateLocalGroup(u"Made");
  EXPECT_EQ(made->Comment(), u"");
  made->PutComment(u"new");
  EXPECT_EQ(srv->own_accounts().FindLocalGroup(u"Made"), nullptr);
  made->Update();
  EXPECT_EQ(srv->own_accounts().local_group(u"Made").comment, u"new");
  // It stays a new one.
  Err().Clear();
  Swallow([] { Raise(1, u"an earlier source"); });
  EXPECT_EQ(FailureOf([&] { made->Update(); }).substr(0, 23), u"1379|an earlier source|");
  made->GroupType = GT_GlobalGroup;
  made->GroupName = u"Global";
  made->ServerName = u"\\\\DC1";
  made->Update();
  EXPECT_EQ(corp().group(u"Global").comment, u"new");

  for (const auto& group :
       {Group(u"Made", GT_LocalGroup, u"SRV"), Group(u"Staff", GT_GlobalGroup, u"DC1")}) {
    group->PutComment(u"changed");
    group->Update();
  }
  EXPECT_EQ(srv->own_accounts().local_group(u"Made").comment, u"changed");
  EXPECT_EQ(corp().group(u"Staff").comment, u"changed");
}

/// A world in which every walk of accounts has something to find.
struct FullWorld : AccountsWorld {
  FullWorld() {
    srv->own_accounts().AddLocalGroup(u"Ops",
                                      {srv->own_accounts().SidOf(u"ann"), corp().SidOf(u"Staff"),
                                       *Sid::FromText(u"S-1-5-21-1-2-3-1000")});
    srv->SetPage(2);
    dc->SetPage(2);
  }
};

TEST(AccountFaults, AreRaisedOrSwallowedAndLeaveNothingOpen) {
  const std::set<std::string> frees = {"NetApiBufferFree", "WNetCloseEnum"};
  SweepFaults<FullWorld>(frees, [](FullWorld& world) {
    Engine().GetUsers(*world.Server(u"SRV"), false);
    const auto users = Engine().GetCompleteUserAccounts(*world.Server(u"DC1"), false);
    users->ItemByIndex(1)->GetGroups();
    Engine().GetLocalGroups(world.Server(u"SRV").Get(), false);
    SystemRoot().GetDomain(u"CORP")->GetGroups()->ItemByIndex(1)->GetUsers();
  });
  // Whatever can't be found out about a member, the list stays whole.
  SweepFaults<FullWorld>(
      {"NetApiBufferFree", "LookupAccountSidW", "NetWkstaGetInfo", "NetGetDCName"},
      [](FullWorld& world) {
        const auto group = world.Group(u"Ops", GT_LocalGroup, u"SRV");
        Ref<CGroups> groups;
        Ref<CUsers> users;
        group->GetGroupMembers(groups, users);
        EXPECT_EQ(groups->Count() + users->Count(), 3);
      });
  SweepFaults<FullWorld>(
      frees,
      [](FullWorld&) {
        SystemRoot().GetUser(u"CORP", u"bob")->GetGroups();
        const auto group = CGroup::CreateLocal(u"Made", u"SRV");
        group->Update();
        SystemRoot().GetGroup(u"CORP", u"Staff")->Update();
      },
      [](FullWorld& world, const std::string& failed, bool) {
        if (failed == "NetLocalGroupAdd") {
          EXPECT_EQ(world.srv->own_accounts().FindLocalGroup(u"Made"), nullptr);
        }
      },
      {"WNetGetNetworkInformationW"});
}

}  // namespace
}  // namespace veldmark
