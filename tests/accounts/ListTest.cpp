#include "accounts/AccountsFixture.h"
#include "network/CDomain.h"

namespace veldmark {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

using List = std::vector<std::string>;

List First(const List& list, std::size_t count) {
  return List(list.begin(), list.begin() + static_cast<std::ptrdiff_t>(count));
}

/// A walk over the accounts of a server or domain, with what it lists and narrates.
struct Walk {
  const char* name;
  TextView server;
  List (*run)(CServer& server, bool async);
  const char* operation;
  List found;
  std::string start;
  std::string each;  ///< before the name of each in the status texts
};

void PrintTo(const Walk& walk, std::ostream* out) { *out << walk.name; }

List GetUsers(CServer& server, bool async) { return Shown(Engine().GetUsers(server, async)); }
List GetCompleteUsers(CServer& server, bool async) {
  return Shown(Engine().GetCompleteUserAccounts(server, async));
}
List GetLocalGroups(CServer& server, bool async) {
  List found = Shown(Engine().GetLocalGroups(&server, async));
  std::erase_if(found, [](const std::string& group) { return !group.starts_with("Ops"); });
  return found;
}
List GetGlobalGroups(CServer& server, bool async) {
  const auto domain = Make<CDomain>();
  domain->DomainName = u"CORP";
  List found = Shown(Engine().GetGlobalGroups(*domain, server.ServerName, async));
  std::erase_if(found, [](const std::string& group) { return !group.starts_with("St"); });
  return found;
}
List GetStaff(CServer& server, bool async) {
  const auto group = Make<CGroup>();
  group->GroupName = u"Staff";
  group->GroupType = GT_GlobalGroup;
  group->DomainName = u"CORP";
  group->ServerName = server.ServerName;
  return Shown(Engine().GetGlobalGroupUsers(*group, async));
}

const Walk kWalks[] = {{"users of a member",
                        u"SRV",
                        &GetUsers,
                        "NetQueryDisplayInformation",
                        {"Administrator|0|SRV|", "ann|0|SRV|", "Guest|0|SRV|"},
                        "Retrieving Users from SRV",
                        "Retrieved User "},
                       {"users of a controller",
                        u"DC1",
                        &GetUsers,
                        "NetQueryDisplayInformation",
                        {"Administrator|1|DC1|CORP", "bob|1|DC1|CORP", "Guest|1|DC1|CORP"},
                        "Retrieving Users from DC1",
                        "Retrieved User "},
                       {"complete users of a member",
                        u"SRV",
                        &GetCompleteUsers,
                        "NetUserEnum",
                        {"Administrator|0|SRV|", "ann|0|SRV|", "Guest|0|SRV|"},
                        "Retrieving Users from SRV",
                        "Retrieved User "},
                       {"complete users of a backup controller",
                        u"FAR2",
                        &GetCompleteUsers,
                        "NetUserEnum",
                        {"Administrator|1|FAR2|FAR", "Guest|1|FAR2|FAR"},
                        "Retrieving Users from FAR2",
                        "Retrieved User "},
                       {"users in a global group",
                        u"DC1",
                        &GetStaff,
                        "NetGroupGetUsers",
                        {"bob|1|DC1|CORP"},
                        "Retrieving Global Group Users for Group Staff",
                        "Retrieved User "},
                       {"users in a global group, without a server",
                        u"",
                        &GetStaff,
                        "NetGroupGetUsers",
                        {"bob|1|\\\\DC1|CORP"},
                        "Retrieving Global Group Users for Group Staff",
                        "Retrieved User "},
                       {"groups of a domain",
                        u"",
                        &GetGlobalGroups,
                        "NetGroupEnum",
                        {"Staff|1|\\\\DC1|CORP"},
                        "Retrieving Groups for Domain CORP",
                        "Retrieved Group "},
                       {"groups of a domain by a server",
                        u"dc1",
                        &GetGlobalGroups,
                        "NetGroupEnum",
                        {"Staff|1|dc1|CORP"},
                        "Retrieving Groups for Domain CORP",
                        "Retrieved Group "},
                       {"local groups of a member",
                        u"SRV",
                        &GetLocalGroups,
                        "NetLocalGroupEnum",
                        {"Ops|0|SRV|"},
                        "Retrieving Local Groups for Server SRV",
                        "Retrieved Local Group "},
                       {"local groups of a controller",
                        u"DC1",
                        &GetLocalGroups,
                        "NetLocalGroupEnum",
                        {"Ops|0|DC1|CORP"},
                        "Retrieving Local Groups for Server DC1",
                        "Retrieved Local Group "}};

class Lists : public AccountsTest, public testing::WithParamInterface<Walk> {
 protected:
  Lists() {
    srv->own_accounts().AddLocalGroup(u"Ops");
    corp().AddLocalGroup(u"Ops");
    server_ = Server(GetParam().server);
    server_->DomainName = GetParam().server == u"FAR2" ? u"FAR" : u"CORP";
  }
  List Run(bool async = false) { return GetParam().run(*server_, async); }
  Ref<CServer> server_;
};

TEST_P(Lists, AreTheSameInOnePageAndInPagesOfOneRecord) {
  for (const std::size_t page : {0, 1}) {
    for (simulated::Computer* const computer : {dc, srv, estate().FindComputer(u"FAR2")}) {
      computer->SetPage(page);
    }
    EXPECT_EQ(Run(), GetParam().found) << page;
  }
  const Ref<CStatus> status = root.GetStatusObject();
  List texts;
  Listen(*status, [&](std::int32_t, std::span<Variant> arguments) {
    texts.push_back(ToUtf8(ToText(arguments[0])));
  });
  Run();
  std::erase_if(texts,
                [&](const std::string& text) { return text.starts_with("Retrieving Info"); });
  ASSERT_FALSE(texts.empty());
  EXPECT_EQ(texts.front(), GetParam().start);
  for (const std::string& found : GetParam().found) {
    const std::string name = found.substr(0, found.find('|'));
    EXPECT_EQ(std::ranges::count(texts, GetParam().each + name), 1) << name;
  }
}

TEST_P(Lists, ArriveByEventsUntilAListenerCancels) {
  const auto listener = Make<CGroup>();
  listener->PutAsyncFetch(true);
  List heard;
  std::size_t most = 1000;
  Listen(*listener, [&](std::int32_t, std::span<Variant> arguments) {
    const Ref<Object> object = ToObject(arguments[0]);
    auto* const user = dynamic_cast<CUser*>(object.Get());
    heard.push_back(user ? Shown(*user) : Shown(dynamic_cast<CGroup&>(*object)));
    if (heard.size() == most) arguments[1].Assign(Variant(true));
  });
  EXPECT_THAT(Run(true), IsEmpty());
  for (const std::string& found : GetParam().found) {
    EXPECT_EQ(std::ranges::count(heard, found), 1) << found;
  }
  const List all = std::exchange(heard, {});
  for (most = 1; most <= all.size(); ++most) {
    for (simulated::Computer* const computer : {dc, srv}) computer->SetPage(most % 2);
    Run(true);
    EXPECT_EQ(std::exchange(heard, {}), First(all, most));
  }
}

INSTANTIATE_TEST_SUITE_P(Accounts, Lists, testing::ValuesIn(kWalks), [](const auto& test) {
  std::string name = test.param.name;
  std::erase(name, ',');
  std::ranges::replace(name, ' ', '_');
  return name;
});

class Listing : public AccountsTest {};

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
  EXPECT_EQ(user->Comment(), u"a comment");
  EXPECT_TRUE(user->AccountDisabled());
  EXPECT_EQ(user->PasswordAge(), 60);
  EXPECT_EQ(user->Privilege(), 1);
  EXPECT_TRUE(journal().entries().empty());
}

TEST_F(Listing, LocalGroupsAreToldInTheDebugLogStepByStep) {
  local().AddFolder(u"C:\\Program Files\\Veldmark2");
  Apartment::Current().debug = true;
  simulated::AccountDatabase& accounts = srv->own_accounts();
  const auto log = [&] {
    const Text path = u"C:\\Program Files\\Veldmark2\\VK2_DEBUG.LOG";
    const Text text = root.ReadTextFile(path);
    platform.files.DeleteFileW(path.c_str());
    return text;
  };
  Text expected =
      u"Retrieving local groups for server SRV\r\n\tServer is DC = False\r\n\tAPI call yielded " +
      ToText(static_cast<std::int64_t>(accounts.local_groups().size())) +
      u" results...return status = 0\r\n";
  std::int64_t number = 0;
  for (const auto& [key, group] : accounts.local_groups()) {
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
