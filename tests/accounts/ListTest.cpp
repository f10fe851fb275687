#include "accounts/AccountsFixture.h"
#include "network/CDomain.h"

namespace veldmark {
namespace {

using testing::IsEmpty;

using List = std::vector<std::string>;

List First(const List& list, std::size_t count) {
  return List(list.begin(), list.begin() + static_cast<std::ptrdiff_t>(count));
}

List Users(CServer& server, bool async) {
  return Shown(async ? Engine().GetUsers(server, true) : server.GetUsers());
}
List CompleteUsers(CServer& server, bool async) {
  server.PutAsyncFetch(async);
  return Shown(server.GetCompleteUsers());
}
List LocalGroups(CServer& server, bool async) {
  return Shown(async ? Engine().GetLocalGroups(&server, true) : server.GetGroups());
}
Ref<CDomain> Corp(bool async) {
  const Ref<CDomain> domain = SystemRoot().GetDomain(u"CORP");
  domain->AsyncFetch = async;
  return domain;
}
List DomainUsers(CServer& server, bool async) {
  return Shown(server.ServerName.empty() ? Corp(async)->GetUsers()
                                         : Corp(async)->GetUsersFromDC(server.ServerName));
}
List DomainGroups(CServer& server, bool async) {
  return Shown(Corp(async)->GetGroupsFromDC(server.ServerName));
}
List StaffUsers(CServer& server, bool async) {
  const auto staff = AccountsWorld::Group(u"Staff", GT_GlobalGroup, server.ServerName, u"CORP");
  return Shown(Engine().GetGlobalGroupUsers(*staff, async));
}

/// A walk over the accounts of a server or domain: what it lists and how it narrates that.
const struct Walk {
  TextView server;
  List (*run)(CServer& server, bool async);
  const char* each;   ///< between "Retrieved " and the name of each
  const char* start;  ///< behind "Retrieving "
  List found;         ///< but for the accounts that every computer has
} kWalks[] = {
    {u"SRV", Users, "User", "Users from SRV", {"ann|0|SRV|"}},
    {u"DC1", Users, "User", "Users from DC1", {"bob|1|DC1|CORP"}},
    {u"SRV", CompleteUsers, "User", "Users from SRV", {"ann|0|SRV|"}},
    {u"FAR2", CompleteUsers, "User", "Users from FAR2", {"eve|1|FAR2|FAR"}},
    {u"", DomainUsers, "User", "Users from DC1", {"bob|1|DC1|CORP"}},
    {u"DC1", DomainUsers, "User", "Users from DC1", {"bob|1|DC1|CORP"}},
    {u"DC1", StaffUsers, "User", "Global Group Users for Group Staff", {"bob|1|DC1|CORP"}},
    {u"", StaffUsers, "User", "Global Group Users for Group Staff", {"bob|1|\\\\DC1|CORP"}},
    {u"", DomainGroups, "Group", "Groups for Domain CORP", {"Staff|1|\\\\DC1|CORP"}},
    {u"dc1", DomainGroups, "Group", "Groups for Domain CORP", {"Staff|1|dc1|CORP"}},
    {u"SRV", LocalGroups, "Local Group", "Local Groups for Server SRV", {"Ops|0|SRV|"}},
    {u"DC1", LocalGroups, "Local Group", "Local Groups for Server DC1", {"Ops|0|DC1|CORP"}},
};

class Walks : public AccountsTest {
 protected:
  Walks() {
    srv->own_accounts().AddLocalGroup(u"Ops");
    corp().AddLocalGroup(u"Ops");
    far().AddUser(u"eve");
  }
  List Run(const Walk& walk, std::size_t page, bool async = false) {
    for (simulated::Computer* const computer : {dc, srv, estate().FindComputer(u"FAR2")}) {
      computer->SetPage(page);
    }
    const Ref<CServer> server = Server(walk.server);
    server->DomainName = walk.server == u"FAR2" ? u"FAR" : u"CORP";
    List found = walk.run(*server, async);
    std::erase_if(found, [](const std::string& account) {
      const std::set<std::string> own = {"ann", "bob", "eve", "Ops", "Staff"};
      return !own.contains(account.substr(0, account.find('|')));
    });
    return found;
  }
};

TEST_F(Walks, ListAndNarrateTheSameInOnePageAndInPagesOfOneRecord) {
  const Ref<CStatus> status = root.GetStatusObject();
  List texts;
  Listen(*status, [&](std::int32_t, std::span<Variant> arguments) {
    const std::string text = ToUtf8(ToText(arguments[0]));
    if (!text.starts_with("Retrieving Info")) texts.push_back(text);
  });
  for (const Walk& walk : kWalks) {
    SCOPED_TRACE(walk.start + std::string(" by ") + ToUtf8(walk.server));
    for (const std::size_t page : {0, 1}) {
      texts.clear();
      EXPECT_EQ(Run(walk, page), walk.found);
      ASSERT_FALSE(texts.empty());
      EXPECT_EQ(texts.front(), std::string("Retrieving ") + walk.start);
      for (const std::string& found : walk.found) {
        const std::string name = found.substr(0, found.find('|'));
        EXPECT_EQ(std::ranges::count(texts, std::string("Retrieved ") + walk.each + " " + name), 1);
      }
    }
  }
}

TEST_F(Walks, ArriveByEventsUntilAListenerCancels) {
  const auto listener = Make<CGroup>();
  listener->PutAsyncFetch(true);
  List heard;
  std::size_t most = 1000;
  Listen(*listener, [&](std::int32_t, std::span<Variant> arguments) {
    heard.push_back(Shown(*ToObject(arguments[0])));
    if (heard.size() == most) arguments[1].Assign(Variant(true));
  });
  for (const Walk& walk : kWalks) {
    SCOPED_TRACE(walk.start + std::string(" by ") + ToUtf8(walk.server));
    most = 1000;
    EXPECT_THAT(Run(walk, 0, true), IsEmpty());
    const List all = std::exchange(heard, {});
    for (const std::string& found : walk.found) EXPECT_EQ(std::ranges::count(all, found), 1);
    for (most = 1; most <= all.size(); ++most) {
      Run(walk, most % 2, true);
      EXPECT_EQ(std::exchange(heard, {}), First(all, most));
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
  const auto log = [&] {
    const Text path = u"C:\\Program Files\\Veldmark2\\VK2_DEBUG.LOG";
    const Text text = root.ReadTextFile(path);
    platform.files.DeleteFileW(path.c_str());
    return text;
  };
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
  EXPECT_EQ(log(), expected + u"Finished retrieving local groups\r\n");

  faults().FailEvery("NetLocalGroupEnum", 5);
  EXPECT_EQ(ErrorOf([&] { Engine().GetLocalGroups(Server(u"DC1").Get(), false); }), 5);
  EXPECT_EQ(log(),
            u"Retrieving local groups for server DC1\r\n\tServer is DC = True\r\n"
            u"\tAPI call yielded 0 results...return status = 5\r\n"
            u"\tEncountered the following error: Access is denied. [5]\r\n");

  EXPECT_EQ(ErrorOf([&] { Engine().GetLocalGroups(nullptr, false); }), 91);
  EXPECT_EQ(log(), u"The server object must be initialized before calling 'GetLocalGroups'\r\n");
}

}  // namespace
}  // namespace veldmark
