#include "accounts/AccountsFixture.h"
#include "accounts/CUpdate.h"
#include "automation/Secret.h"

namespace veldmark {
namespace {

using testing::HasSubstr;

using Users = AccountsTest;

TEST_F(Users, AreFetchedWithEveryFieldOfTheirRecord) {
  simulated::UserAccount& ann = srv->own_accounts().user(u"ann");
  ann.full_name = u"Ann Example";
  ann.comment = u"a comment";
  ann.user_comment = u"her own";
  ann.home_folder = u"\\\\SRV\\ann";
  ann.home_drive = u"H:";
  ann.script = u"logon.cmd";
  ann.profile = u"\\\\SRV\\profiles";
  ann.logons = 7;
  ann.password_expired = true;
  ann.password_set = estate().unix_time() - 60;
  const Ref<CUser> user = root.GetUser(u"\\\\srv", u"ANN");
  EXPECT_EQ(ValuesOf(*user,
                     {u"UserName", u"UserType", u"FullName", u"Password", u"Comment", u"UsrComment",
                      u"HomeDir", u"HomePathDriveLetter", u"ScriptPath", u"ProfilePath",
                      u"NumLogons", u"PasswordExpired", u"PasswordAge", u"LastLogon", u"LastLogoff",
                      u"AccountExpires", u"ServerName", u"DomainName"}),
            "ann|0|Ann Example||a comment|her "
            "own|\\\\SRV\\ann|H:|logon.cmd|\\\\SRV\\profiles|7|True|60|"
            "12:00:00 AM|12:00:00 AM|12:00:00 AM|srv|");
  EXPECT_EQ(Shown(*root.GetUser(u"CORP", u"bob")), "bob|1|DC1|CORP");
  EXPECT_EQ(ErrorOf([&] { root.GetUser(u"CORP", u"ann"); }), 2221);
  EXPECT_EQ(ErrorOf([&] { root.GetUser(u"FAR", u"bob"); }), 2453) << "without a controller";
}

TEST_F(Users, HaveDatesInLocalTimeAndZeroForNever) {
  SetZone(-360);
  const struct {
    DWORD logon, logoff, expires;
    const char* dates;
  } cases[] = {
      {0, 86400, kTimeForever, "12:00:00 AM|1/2/1970 6:00:00 AM|12:00:00 AM"},
      {86400, 0, 86400, "1/2/1970 6:00:00 AM|12:00:00 AM|1/2/1970 6:00:00 AM"},
      // An expiry of 0 is a date like any other.
      {0xFFFFFFFF, 0xFFFFFFFF, 0, "12:00:00 AM|12:00:00 AM|6:00:00 AM"},
      {0x80000000, 0x80000000, 0x7FFFFFFF, "12:00:00 AM|12:00:00 AM|1/19/2038 9:14:07 AM"}};
  simulated::UserAccount& ann = srv->own_accounts().user(u"ann");
  for (const auto& c : cases) {
    ann.last_logon = c.logon;
    ann.last_logoff = c.logoff;
    ann.expires = c.expires;
    EXPECT_EQ(ValuesOf(*root.GetUser(u"\\\\SRV", u"ann"),
                       {u"LastLogon", u"LastLogoff", u"AccountExpires"}),
              c.dates);
  }
}

TEST_F(Users, HaveOneBooleanForEachFlag) {
  const std::pair<DWORD, const char*> cases[] = {{2, "True|False|False|False"},
                                                 {16, "False|True|False|False"},
                                                 {64, "False|False|True|False"},
                                                 {0x10000, "False|False|False|True"}};
  for (const auto& [flag, values] : cases) {
    srv->own_accounts().user(u"ann").flags = kAccountNormal | flag;
    EXPECT_EQ(
        ValuesOf(*root.GetUser(u"\\\\SRV", u"ann"),
                 {u"AccountDisabled", u"AccountLocked", u"PasswordNoChange", u"PasswordNoExpire"}),
        values);
  }
}

TEST_F(Users, FetchTheRestOnceWhenItIsFirstRead) {
  srv->own_accounts().user(u"ann").comment = u"a comment";
  const Ref<CUsers> users = Engine().GetUsers(*Server(u"SRV"), false);
  const Ref<CUser> user = users->ItemByKey(u"\\\\SRV\\ann");
  const auto fetches = [&] { return journal().Count("NetUserGetInfo"); };
  EXPECT_EQ(ValuesOf(*user, {u"FullName", u"AccountDisplayName"}), "|\\\\SRV\\ann");
  EXPECT_EQ(fetches(), 0u);
  faults().FailNthOf("NetUserGetInfo", 1, 1722);
  EXPECT_EQ(FailureOf([&] { user->Comment(); }).substr(0, 24), u"1722|Veldmark2.CSupport|");
  EXPECT_EQ(Shown(*user), "ann|0|SRV|");
  EXPECT_EQ(ValuesOf(*user, {u"Comment", u"AccountDisabled", u"NumLogons"}), "a comment|False|0");
  EXPECT_EQ(fetches(), 2u);
}

TEST_F(Users, KeepWhatTheyHadWhereOnlyTheOpenLevelMayBeRead) {
  simulated::UserAccount& ann = srv->own_accounts().user(u"ann");
  ann.flags = kAccountNormal | kAccountDisabled;
  ann.user_comment = u"her own";
  ann.logons = 7;
  const Ref<CUser> listed = Engine().GetUsers(*Server(u"SRV"), false)->ItemByKey(u"\\\\SRV\\ann");
  for (const bool is_listed : {true, false}) {
    faults().FailNthOf("NetUserGetInfo", 1, 5);
    const Ref<CUser> user = is_listed ? listed : root.GetUser(u"\\\\SRV", u"ann");
    EXPECT_EQ(ValuesOf(*user, {u"UsrComment", u"AccountDisabled", u"NumLogons"}),
              is_listed ? "her own|True|0" : "her own|False|0");
    EXPECT_EQ(Called({"NetUserGetInfo"}), "\\\\SRV ann 3;\\\\SRV ann 10;");
  }
}

TEST_F(Users, AreMarkedOnceThereIsNoSuchUser) {
  const Ref<CUser> user = User(u"nobody", UT_LocalUser, u"SRV");
  for (const char* asked : {"\\\\SRV nobody 3;", "\\\\SRV (Account Unknown) 3;"}) {
    EXPECT_EQ(ErrorOf([&] { user->HomeDir(); }), 2221);
    EXPECT_EQ(Called({"NetUserGetInfo"}), asked);
    EXPECT_EQ(Shown(*user), "(Account Unknown)|2|SRV|");
  }
  EXPECT_EQ(Shown(user->GetGroups()), "");
}

TEST_F(Users, TellTheirSidAnewEachTimeUnlessAWalkStoredOne) {
  const Ref<CUser> local_user = User(u"ann", UT_LocalUser, u"SRV");
  const Ref<CUser> user = User(u"bob", UT_GlobalUser, u"DC1", u"CORP");
  EXPECT_EQ(local_user->GetSid()->SidText(), srv->own_accounts().SidOf(u"ann").ToText());
  EXPECT_EQ(user->GetSid()->SidText(), corp().SidOf(u"bob").ToText());
  EXPECT_NE(user->GetSid(), user->GetSid());
  EXPECT_EQ(user->GetSid()->ResidesOnServer(), u"DC1");
  const Ref<CSid> unknown = User(u"bob", UT_AccountUnknown, u"SRV")->GetSid();
  EXPECT_EQ(unknown->ResidesOnServer() + unknown->SidText(), u"SRV");
  user->SetSid(unknown);
  EXPECT_EQ(user->GetSid(), unknown);
}

TEST_F(Users, GetAPasswordThatLeavesNoTrace) {
  const Ref<CUser> user = User(u"ann", UT_LocalUser, u"SRV");
  EXPECT_TRUE(user->SetPassword(Secret(u"Correct-Horse")));
  EXPECT_EQ(TextView(srv->own_accounts().user(u"ann").password->c_str()), u"Correct-Horse");
  // A server that has its "\\" gets another.
  const Ref<CUser> marked = User(u"ann", UT_LocalUser, u"\\\\SRV");
  const Text failure = FailureOf([&] { marked->SetPassword(Secret(u"Battery-Staple")); });
  EXPECT_NE(failure, u"");
  EXPECT_EQ(failure.find(u"Battery"), Text::npos);
  const std::string calls = Called({""});
  EXPECT_THAT(calls, HasSubstr("NetUserSetInfo \\\\SRV ann 1003;"));
  EXPECT_THAT(calls, HasSubstr("NetUserSetInfo \\\\\\\\SRV ann 1003;"));
  EXPECT_EQ(calls.find("Horse"), std::string::npos) << calls;
}

TEST_F(Users, AreInGroupsOfTheirOwnServerOrAnother) {
  srv->own_accounts().AddLocalGroup(u"Ops", {srv->own_accounts().SidOf(u"ann")});
  const Ref<CUser> ann = User(u"ann", UT_LocalUser, u"SRV");
  EXPECT_THAT(Shown(ann->GetGroups()), HasSubstr("Ops|0|SRV|"));
  const Ref<CUser> bob = User(u"bob", UT_GlobalUser, u"DC1", u"CORP");
  EXPECT_THAT(Shown(bob->GetGroups()), HasSubstr("Staff|1|DC1|"));
  journal().Clear();
  bob->SetServerName(u"OTHER");
  // The groups are said to be the user's own server's, whoever was asked.
  EXPECT_THAT(Shown(bob->GetGroupsOnServer(u"DC1", true)), HasSubstr("Staff|1|OTHER|"));
  ann->GetGroupsOnServer(u"", true);
  EXPECT_EQ(Called({"NetUserGet"}), "Groups \\\\DC1 bob 0;LocalGroups \\\\SRV ann 1;");
  EXPECT_EQ(FailureOf([&] { User(u"x", UT_LocalUser, u"SRV")->GetGroups(); }).substr(0, 21),
            u"2221|Veldmark2.CUser|");
}

TEST_F(Users, AreWrittenBackWholeByAnUpdate) {
  simulated::UserAccount& ann = srv->own_accounts().user(u"ann");
  ann.home_folder = u"H";
  ann.script = u"S";
  const Ref<CUser> user = root.GetUser(u"\\\\SRV", u"ann");
  user->Details().comment = u"another";
  user->Details().flags |= kAccountDisabled;
  CUpdate update;
  EXPECT_TRUE(update.SetUserInfo(user.Get()));
  EXPECT_EQ(ann.comment + ann.home_folder + ann.script, u"anotherHS");
  EXPECT_EQ(ann.flags & kAccountDisabled, kAccountDisabled);
  EXPECT_FALSE(update.SetUserInfo(nullptr));
  faults().FailEvery("NetUserSetInfo", 5);
  EXPECT_FALSE(update.SetUserInfo(user.Get()));
  EXPECT_FALSE(update.RenameUser(user.Get(), u"x"));
  EXPECT_FALSE(update.SetUserPriv(user.Get(), 2));
  EXPECT_EQ(user->UserName, u"ann");
}

}  // namespace
}  // namespace veldmark
