#include <algorithm>
#include <span>
#include <utility>

#include "accounts/AccountsFixture.h"
#include "automation/Conversion.h"
#include "network/CDomain.h"

namespace veldmark {
namespace {

std::string Users(CServer& server, bool async) {
  return Shown(async ? Engine().GetUsers(server, true) : server.GetUsers());
}
std::string CompleteUsers(CServer& server, bool async) {
  server.PutAsyncFetch(async);
  return Shown(server.GetCompleteUsers());
}
std::string LocalGroups(CServer& server, bool async) {
  return Shown(async ? Engine().GetLocalGroups(&server, true) : server.GetGroups());
}
Ref<CDomain> Corp(bool async) {
  const Ref<CDomain> domain = SystemRoot().GetDomain(u"CORP");
  domain->AsyncFetch = async;
  return domain;
}
std::string DomainUsers(CServer& server, bool async) {
  return Shown(server.ServerName.empty() ? Corp(async)->GetUsers()
                                         : Corp(async)->GetUsersFromDC(server.ServerName));
}
std::string DomainGroups(CServer& server, bool async) {
  return Shown(Corp(async)->GetGroupsFromDC(server.ServerName));
}
std::string StaffUsers(CServer& server, bool async) {
  const auto staff = AccountsWorld::Group(u"Staff", GT_GlobalGroup, server.ServerName, u"CORP");
  return Shown(Engine().GetGlobalGroupUsers(*staff, async));
}

/// A walk over the accounts of a server or domain: what it lists and how it narrates that.
const struct Walk {
  TextView server;
  std::string (*run)(CServer& server, bool async);
  std::string each;   ///< between "Retrieved " and the name of each
  std::string start;  ///< behind "Retrieving "
  std::string found;  ///< among the accounts that every computer has
} kWalks[] = {
    {u"SRV", Users, "User", "Users from SRV", "ann|0|SRV|"},
    {u"DC1", Users, "User", "Users from DC1", "bob|1|DC1|CORP"},
    {u"SRV", CompleteUsers, "User", "Users from SRV", "ann|0|SRV|"},
    {u"FAR2", CompleteUsers, "User", "Users from FAR2", "eve|1|FAR2|FAR"},
    {u"", DomainUsers, "User", "Users from DC1", "bob|1|DC1|CORP"},
    {u"DC1", DomainUsers, "User", "Users from DC1", "bob|1|DC1|CORP"},
    {u"DC1", StaffUsers, "User", "Global Group Users for Group Staff", "bob|1|DC1|CORP"},
    {u"", StaffUsers, "User", "Global Group Users for Group Staff", "bob|1|\\\\DC1|CORP"},
    {u"", DomainGroups, "Group", "Groups for Domain CORP", "Staff|1|\\\\DC1|CORP"},
    {u"dc1", DomainGroups, "Group", "Groups for Domain CORP", "Staff|1|dc1|CORP"},
    {u"SRV", LocalGroups, "Local Group", "Local Groups for Server SRV", "Ops|0|SRV|"},
    {u"DC1", LocalGroups, "Local Group", "Local Groups for Server DC1", "Ops|0|DC1|CORP"},
};

class Walks : public AccountsTest {
 protected:
  Walks() {
    srv->own_accounts().AddLocalGroup(u"Ops");
    corp().AddLocalGroup(u"Ops");
    far().AddUser(u"eve");
  }
  std::string Run(const Walk& walk, std::size_t page, bool async = false) {
    for (simulated::Computer* const computer : {dc, srv, estate().FindComputer(u"FAR2")}) {
      computer->SetPage(page);
    }
    return walk.run(*Server(walk.server, walk.server == u"FAR2" ? u"FAR" : u"CORP"), async);
  }
};

TEST_F(Walks, ListTheSameInOnePageAndInPagesOfOneRecordAndNarrateIt) {
  std::string log;
  Log(log);
  for (const Walk& walk : kWalks) {
    SCOPED_TRACE(walk.start + " by " + ToUtf8(walk.server));
    const std::string all = Run(walk, 0);
    EXPECT_THAT(all, testing::HasSubstr(walk.found));
    log.clear();
    EXPECT_EQ(Run(walk, 1), all);
    EXPECT_THAT(
        log, testing::ContainsRegex("Retrieving " + walk.start + "\n(.*\n)*Retrieved " + walk.each +
                                    " " + walk.found.substr(0, walk.found.find('|')) + "\n"));
  }
}

TEST_F(Walks, ArriveByEventsUntilAListenerCancels) {
  const auto listener = Make<CGroup>();
  listener->PutAsyncFetch(true);
  std::vector<std::string> heard;
  std::size_t most = 1000;
  Listen(*listener, [&](std::int32_t, std::span<Variant> arguments) {
    heard.push_back(Shown(*ToObject(arguments[0])));
    if (heard.size() == most) arguments[1].Assign(Variant(true));
  });
  for (const Walk& walk : kWalks) {
    SCOPED_TRACE(walk.start + " by " + ToUtf8(walk.server));
    most = 1000;
    EXPECT_EQ(Run(walk, 0, true), "");
    std::vector<std::string> all = std::exchange(heard, {});
    EXPECT_EQ(std::ranges::count(all, walk.found), 1);
    for (most = all.size(); most > 0; --most) {
      all.resize(most);
      Run(walk, most % 2, true);
      EXPECT_EQ(std::exchange(heard, {}), all);
    }
  }
}

using Listing = AccountsTest;

TEST_F(Listing, CompleteUsersAskNothingLater) {
  simulated::UserAccount& ann = srv->own_accounts().user(u"ann");
  ann.comment = u"a comment";
  ann.flags |= kAccountDisabled;
  ann.password_set = estate().unix_time() - 60;
  srv->own_accounts().AddMachine(u"OTHER");
  const Ref<CUsers> users = Engine().GetCompleteUserAccounts(*Server(u"SRV"), false);
  journal().Clear();
  EXPECT_EQ(users->Count(), 3);
  const Ref<CUser> user = users->ItemByKey(u"\\\\SRV\\ann");
  EXPECT_EQ(ValuesOf(*user, {u"Comment", u"AccountDisabled", u"PasswordAge"}), "a comment|True|60");
  EXPECT_EQ(user->Privilege(), 1);
  EXPECT_TRUE(journal().entries().empty());
}

TEST_F(Listing, LocalGroupsAreToldInTheDebugLogStepByStep) {
  local().AddFolder(u"C:\\Program Files\\Veldmark2");
  Apartment::Current().debug = true;
  const auto& groups = srv->own_accounts().local_groups();
  Text expected =
      u"Retrieving local groups for server SRV\r\n\tServer is DC = False\r\n"
      u"\tAPI call yielded " +
      ToText(std::int64_t(groups.size())) + u" results...return status = 0\r\n";
  std::int64_t number = 0;
  for (const auto& [key, group] : groups) {
    expected += u"\tProcessing entry #" + ToText(++number) + u"\r\n\tRetrieved local group " +
                group.name + u"\r\n";
  }
  Engine().GetLocalGroups(Server(u"SRV").Get(), false);
  faults().FailEvery("NetLocalGroupEnum", 5);
  EXPECT_EQ(ErrorOf([&] { Engine().GetLocalGroups(Server(u"DC1").Get(), false); }), 5);
  EXPECT_EQ(ErrorOf([&] { Engine().GetLocalGroups(nullptr, false); }), 91);
  expected +=
      u"Finished retrieving local groups\r\n"
      u"Retrieving local groups for server DC1\r\n\tServer is DC = True\r\n"
      u"\tAPI call yielded 0 results...return status = 5\r\n"
      u"\tEncountered the following error: Access is denied. [5]\r\n"
      u"The server object must be initialized before calling 'GetLocalGroups'\r\n";
  EXPECT_EQ(ContentOf(u"C:\\Program Files\\Veldmark2\\VK2_DEBUG.LOG"), ToUtf8(expected));
}

}  // namespace
}  // namespace veldmark
