#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "accounts/CGroup.h"
#include "accounts/CGroups.h"
#include "accounts/CUser.h"
#include "accounts/CUsers.h"
#include "automation/Interface.h"
#include "collections/Collection.h"
#include "eventlog/CEventLog.h"
#include "eventlog/CEventLogs.h"
#include "eventlog/MessageModules.h"
#include "network/CServer.h"
#include "network/CServers.h"
#include "root/ObjectModel.h"
#include "security/CSid.h"
#include "services/CPrinter.h"
#include "services/CPrinters.h"
#include "storage/CFolder.h"
#include "storage/CFolders.h"
#include "support/ApartmentFixture.h"
#include "tasks/CTrigger.h"

namespace veldmark {
namespace {

/// How a class looks names up.
enum class Names { kNone, kAnyCase, kExact, kHidden };

struct ListClass {
  const Interface& List() const {
    return **std::ranges::find(ObjectModel(), TextView(name), [](auto* t) { return t->name; });
  }
  const Interface& Element() const { return List().members[0].result.class_table(); }
  void PutKey(Object& element, TextView key) const {
    if (const auto* set = std::get_if<Setter>(&this->key)) return (*set)(element, Text(key));
    const Text property = std::get<const char16_t*>(this->key);
    if (!property.empty()) Call(element, property, MemberKind::kPut, {Variant(key)});
  }
  using Setter = void (*)(Object&, Text);
  const char16_t* name;
  Names names;
  std::variant<const char16_t*, Setter> key;  ///< the property, or how the library puts it
  std::optional<Counter> counter;
};

/// What a list of the tests shows of a parameter.
void PrintTo(const ListClass& tested, std::ostream* out) { *out << ToUtf8(tested.name); }

template <auto kSet, class Element>
void SetBy(Object& element, Text key, void (Element::*)(Text)) {
  (static_cast<Element&>(element).*kSet)(std::move(key));
}
template <auto kSet>
void Set(Object& element, Text key) {
  SetBy<kSet>(element, std::move(key), kSet);
}

/// An account that isn't known is displayed by its name alone.
void SetUserName(Object& user, Text name) {
  static_cast<CUser&>(user).UserType = UT_AccountUnknown;
  static_cast<CUser&>(user).UserName = std::move(name);
}
void SetGroupName(Object& group, Text name) {
  static_cast<CGroup&>(group).GroupType = GT_AccountUnknown;
  static_cast<CGroup&>(group).GroupName = std::move(name);
}

using enum Names;

const ListClass kListClasses[] = {
    {u"CDrives", kAnyCase, u"DriveLetter", Counter::kDrives},
    {u"CNetworks", kAnyCase, u"NetworkName", Counter::kNetworks},
    {u"CSids", kAnyCase, Set<&CSid::SetSidText>, Counter::kSids},
    {u"CAces", kNone, u"", Counter::kAces},
    {u"CEventLogEntries", kNone, u"", Counter::kEventLogEntries},
    {u"CFolders", kExact, u"FolderName", Counter::kFolders},
    {u"CFiles", kExact, u"FileName", Counter::kFiles},
    {u"CDomains", kExact, u"DomainName", Counter::kDomains},
    {u"CEventLogs", kExact, Set<&CEventLog::SetLogName>, Counter::kEventLogs},
    {u"CPrinters", kExact, u"PrinterName", Counter::kPrinters},
    {u"CRegKeys", kExact, u"Name", {}},
    {u"CRegValues", kExact, u"Name", {}},
    {u"CServers", kExact, u"ServerName", Counter::kServers},
    {u"CServices", kExact, u"ServiceName", Counter::kServices},
    {u"CShares", kExact, u"ShareName", Counter::kShares},
    {u"CTasks", kExact, u"Name", {}},
    {u"CTriggers", kExact, Set<&CTrigger::SetText>, {}},
    {u"CVolumes", kExact, u"VolumeName", Counter::kVolumes},
    {u"CPathNames", kExact, u"PathName", Counter::kPathNames},
    {u"CUsers", kExact, &SetUserName, Counter::kUsers},
    {u"CGroups", kHidden, &SetGroupName, Counter::kGroups}};

class CollectionFamily : public ApartmentFixture, public testing::WithParamInterface<ListClass> {
 protected:
  Ref<Object> NewElement(TextView key) {
    Ref<Object> element = GetParam().Element().create();
    GetParam().PutKey(*element, key);
    elements_.push_back(element);
    return element;
  }
  /// A list of new elements with these keys; they are numbered from 1.
  Ref<Object> NewList(std::initializer_list<TextView> keys = {}) {
    elements_.clear();
    Ref<Object> list = GetParam().List().create();
    for (const TextView key : keys) Call(*list, u"Add", MemberKind::kMethod, {NewElement(key)});
    return list;
  }
  std::string NumberOf(const Variant& item) const {
    const Ref<Object>& object = *item.If<Ref<Object>>();
    if (!object) return "Nothing";
    return std::to_string(std::ranges::find(elements_, object) - elements_.begin() + 1);
  }
  /// What a call gives: the number of the element, or "error" and its number.
  std::string Outcome(const Ref<Object>& list, TextView name, MemberKind kind, Variant argument) {
    try {
      const Variant result = Call(*list, name, kind, {std::move(argument)});
      return result.Type() == VariantType::kObject ? NumberOf(result) : "done";
    } catch (const AutomationError& error) {
      EXPECT_EQ(error.description, StandardErrorText(error.number));
      return "error " + std::to_string(error.number);
    }
  }
  std::string Add(const Ref<Object>& list, Variant element) {
    return Outcome(list, u"Add", MemberKind::kMethod, std::move(element));
  }
  std::string Get(const Ref<Object>& list, TextView name, Variant index) {
    return Outcome(list, name, MemberKind::kGet, std::move(index));
  }
  /// The elements as For Each meets them; as many as Count tells.
  std::string All(const Ref<Object>& list) {
    std::string all;
    std::int32_t count = 0;
    const Variant enumerator = Call(*list, u"NewEnum", MemberKind::kGet);
    auto& walk = dynamic_cast<Enumerator&>(**enumerator.If<Ref<Object>>());
    for (Variant item; walk.Next(item); ++count) all += NumberOf(item) + " ";
    EXPECT_EQ(Call(*list, u"Count", MemberKind::kGet), Variant(count));
    return all;
  }

  std::vector<Ref<Object>> elements_;
};

INSTANTIATE_TEST_SUITE_P(All, CollectionFamily, testing::ValuesIn(kListClasses),
                         [](const auto& tested) { return ToUtf8(tested.param.name); });

TEST_P(CollectionFamily, LooksUpByPositionAndByNameAsItsRuleSays) {
  std::int32_t two = 2;
  Text word = u"aLPHA";
  Variant nested = Variant::ByReference(word);
  const struct {
    const char* name;
    Variant index;
    const char* outcomes[4];  ///< without names, in any case, exact, hidden
  } cases[] = {
      {"first", Variant(1), {"1", "1", "1", "1"}},
      {"last", Variant(std::int16_t{4}), {"4", "4", "4", "4"}},
      {"whole double", Variant(2.0), {"2", "2", "2", "2"}},
      {"currency", Variant(Currency{20000}), {"2", "2", "2", "2"}},
      {"by reference", Variant::ByReference(two), {"2", "2", "2", "2"}},
      {"byte", Variant(std::uint8_t{2}), {"2", "2", "2", "2"}},
      {"half to even", Variant(2.5), {"2", "2", "error 5", "error 5"}},
      {"rounds to zero", Variant(0.5), {"error 9", "error 9", "error 5", "error 5"}},
      {"date", Variant(Date{2.25}), {"2", "2", "error 5", "error 5"}},
      {"wraps to 1 in 32 bits",
       Variant(std::int64_t{0x100000001}),
       {"error 9", "error 9", "error 9", "error 9"}},
      {"huge", Variant(1e300), {"error 9", "error 9", "error 5", "error 5"}},
      {"text in a variant by reference",
       Variant::ByReference(nested),
       {"error 5", "1", "error 5", "error 5"}},
      {"array", Variant(LongArray({1})), {"error 13", "error 13", "error 13", "error 13"}},
      {"zero", Variant(0), {"error 9", "error 9", "error 9", "error 9"}},
      {"behind the end", Variant(5), {"error 9", "error 9", "error 9", "error 9"}},
      {"name", Variant(u"Alpha"), {"error 5", "1", "1", "error 5"}},
      {"other case", Variant(u"ALPHA"), {"error 5", "1", "error 5", "error 5"}},
      {"unknown name", Variant(u"Beta"), {"error 5", "error 5", "error 5", "error 5"}},
      {"empty name", Variant(u""), {"error 5", "error 5", "error 5", "error 5"}},
      {"name of digits", Variant(u"2"), {"error 5", "2", "error 5", "2"}},
      {"encoded name",
       Variant(GetCollectionKey(u"Alpha")),
       {"error 5", "error 5", "error 5", "error 5"}},
      // What doesn't read as digits is a name, whatever its type.
      {"fraction", Variant(1.5), {"2", "2", "3", "error 5"}},
      {"negative", Variant(-1), {"error 9", "error 9", "error 5", "error 5"}},
      {"true", Variant(true), {"error 9", "error 9", "4", "error 5"}},
      {"empty", Variant(), {"error 13", "error 13", "error 13", "error 13"}},
      {"null", Variant(Null()), {"error 13", "error 13", "error 94", "error 94"}},
  };
  const bool swallows = GetParam().List().name == u"CDrives";
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    const Ref<Object> list = NewList({u"Alpha", u"2", u"1.5", u"True"});
    const std::string expected = test.outcomes[static_cast<int>(GetParam().names)];
    const bool found = !expected.starts_with("error");
    Err().Clear();
    EXPECT_EQ(Get(list, u"Item", test.index), found || !swallows ? expected : "Nothing");
    // Raised or swallowed, the error stands in `Err`.
    EXPECT_EQ("error " + std::to_string(Err().Number()), found ? "error 0" : expected);
    EXPECT_EQ(Outcome(list, u"Remove", MemberKind::kMethod, test.index), found ? "done" : expected);
    std::string left = "1 2 3 4 ";
    if (found) left.erase(left.find(expected), 2);
    EXPECT_EQ(All(list), left);
  }
}

TEST_P(CollectionFamily, FindsAnyNameByItemByKeyAndAnyPositionByItemByIndex) {
  if (GetParam().List().IdOf(u"ItemByKey") == kUnknownMember) {
    EXPECT_TRUE(GetParam().names == kNone || GetParam().names == kAnyCase);
    return;
  }
  const Ref<Object> list = NewList({u"Share", u"SHARE", u"2", u""});
  const bool hidden = GetParam().names == kHidden;
  const std::pair<Variant, const char*> keys[] = {
      {Variant(u"Share"), "1"}, {Variant(u"SHARE"), "2"},       {Variant(u"2"), "3"},
      {Variant(2), "3"},        {Variant(u"share"), "error 5"}, {Variant(u"1"), "error 5"},
  };
  for (const auto& [key, expected] : keys) {
    EXPECT_EQ(Get(list, u"ItemByKey", key), hidden ? "error 5" : expected);
  }
  // An empty key is the same spelled out, so that even a hidden one is found.
  EXPECT_EQ(Get(list, u"ItemByKey", Variant(u"")), "4");
  EXPECT_EQ(Get(list, u"Item", Variant(u"")), "4");
  EXPECT_EQ(Get(list, u"ItemByIndex", Variant(1)), "1");
  EXPECT_EQ(Get(list, u"ItemByIndex", Variant(u"1")), "1");
  EXPECT_EQ(Get(list, u"ItemByIndex", Variant(0)), "error 9");
  EXPECT_EQ(Get(list, u"ItemByIndex", Variant(-1)), "error 9");
  EXPECT_EQ(Err().Number(), 9);
}

TEST_P(CollectionFamily, TreatsANameThatIsThereAlreadyAsItsRuleSays) {
  const TextView name = GetParam().List().name;
  const bool keyless = GetParam().names == kNone;
  const bool groups = name == u"CGroups";
  const Ref<Object> list = NewList();
  Err().Clear();
  EXPECT_EQ(Add(list, NewElement(u"Name")), "1");
  EXPECT_EQ(Add(list, NewElement(u"Name")), groups ? "1" : "2");
  EXPECT_EQ(Err().Number(), keyless || name == u"CUsers" || name == u"CPrinters" ? 0 : 457);
  EXPECT_EQ(Add(list, NewElement(u"NAME")), groups ? "1" : "3");
  EXPECT_EQ(All(list), keyless || name == u"CUsers" ? "1 2 3 "
                       : GetParam().names == kExact ? "1 3 "
                                                    : "1 ");
  // The key is that of the moment of the add.
  GetParam().PutKey(*elements_[0], u"Renamed");
  EXPECT_EQ(Add(list, elements_[0]), "1");
  const std::string found =
      GetParam().names == kExact || GetParam().names == kAnyCase ? "1" : "error 5";
  EXPECT_EQ(Outcome(list, u"Item", MemberKind::kGet, Variant(u"Name")),
            name == u"CDrives" && found != "1" ? "Nothing" : found);
}

TEST_P(CollectionFamily, StoresNothingButElementsOfItsClassAndHoldsThemToItsEnd) {
  Apartment::Current().well_known_groups = nullptr;
  Ref<Object> list = NewList();
  EXPECT_EQ(Add(list, Variant(Ref<Object>())), "Nothing");
  EXPECT_EQ(Add(list, Variant(list)), "error 13");
  EXPECT_EQ(All(list), "");
  Add(list, NewElement(u"kept"));
  Object* element = elements_[0].Get();
  elements_.clear();
  EXPECT_EQ(Call(*list, u"Item", MemberKind::kGet, {Variant(1)}), Variant(Ref<Object>(element)));

  const Counters& counters = Apartment::Current().counters;
  const auto all = [&counters] {
    std::int32_t sum = 0;
    for (int i = 0; i < static_cast<int>(Counter::kCount); ++i) sum += counters[Counter(i)];
    return sum;
  };
  const auto own = [&] { return GetParam().counter ? counters[*GetParam().counter] : 0; };
  const std::int32_t counted = GetParam().counter ? 1 : 0;
  const std::int32_t all_before = all();
  const Ref<Object> other = GetParam().List().create();
  EXPECT_EQ(own(), 2 * counted);
  EXPECT_EQ(all() - all_before, counted);
  list = nullptr;
  EXPECT_EQ(own(), counted);
}

class CollectionClasses : public ApartmentFixture {};

TEST_F(CollectionClasses, GroupsAreFoundUnderTheNamesThatTheLibraryGaveThem) {
  const auto groups = Make<CGroups>();
  const auto everyone = Make<CGroup>(), other = Make<CGroup>();
  SetGroupName(*everyone, u"Everyone");
  SetGroupName(*other, u"EVERYONE");
  EXPECT_EQ(groups->AddWithKey(everyone.Get(), u"S-1-1-0"), everyone);
  EXPECT_EQ(groups->Add(everyone.Get()), everyone);
  EXPECT_EQ(groups->Add(other.Get()), everyone);
  EXPECT_EQ(groups->AddWithKey(other.Get(), u"S-1-1-0"), other);
  EXPECT_EQ(groups->AddWithKey(other.Get(), u"s-1-1-0"), other);
  EXPECT_EQ(groups->AddWithKey(nullptr, u"x"), nullptr);
  EXPECT_EQ(groups->Count(), 4);
  EXPECT_EQ(groups->ItemByKey(u"S-1-1-0"), everyone);
  EXPECT_EQ(groups->ItemByKey(u"s-1-1-0"), other);
  EXPECT_EQ(groups->ItemByIndex(3), other);
  EXPECT_THROW(groups->ItemByKey(u"EVERYONE"), AutomationError);
}

TEST_F(CollectionClasses, ContainsKeyOfServersIsFalseAndClearsTheError) {
  const auto servers = Make<CServers>();
  const auto server = Make<CServer>();
  server->ServerName = u"SRV";
  servers->Add(server.Get());
  EXPECT_EQ(servers->ItemByKey(u"SRV"), server);
  for (Variant key : {Variant(u"SRV"), Variant(u"missing"), Variant(1), Variant(Null())}) {
    Swallow([] { Raise(457); });
    EXPECT_FALSE(servers->ContainsKey(key));
    EXPECT_EQ(Err().Number(), 0);
  }
}

TEST_F(CollectionClasses, AnEarlierErrorIsNotTakenForARefusedKey) {
  const auto users = Make<CUsers>();
  const auto groups = Make<CGroups>();
  const auto user = Make<CUser>();
  const auto group = Make<CGroup>();
  Swallow([] { Raise(457); });
  users->Add(user.Get());
  groups->Add(group.Get());
  groups->AddWithKey(group.Get(), u"key");
  EXPECT_EQ(users->Count(), 1);
  EXPECT_EQ(groups->Count(), 2);
  Make<CPrinters>()->Add(nullptr);
  EXPECT_EQ(Err().Number(), 0);
}

TEST_F(CollectionClasses, ANewFolderIsMadeOnDiskAndListed) {
  const auto folders = Make<CFolders>();
  const Ref<CFolder> made = folders->AddNewFolder(u"C:\\New");
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(made->Path(), u"C:\\New");
  EXPECT_EQ(folders->ItemByKey(u"New"), made);
  EXPECT_THROW(folders->AddNewFolder(u"C:\\New"), AutomationError);
  EXPECT_EQ(Err().Number(), 183);
  faults().FailEvery("FindFirstFileW", 5);
  EXPECT_THROW(folders->AddNewFolder(u"C:\\Made, but not to be read"), AutomationError);
  EXPECT_EQ(Err().Number(), 5);
  EXPECT_EQ(folders->Count(), 1);
}

TEST_F(CollectionClasses, TheLastEventLogsEndFreesTheMessageFiles) {
  Collection& cache = *Apartment::Current().message_modules;
  const auto fill = [&] {
    for (int i = 0; i < 3; ++i) cache.Add(Variant(HandleText(LoadMessageFile(u"netmsg.dll"))));
    cache.Add(Variant(u""));
    cache.Add(Variant(u"no number"));
    journal().Clear();
  };
  const auto freed = [&] { return journal().Count("FreeLibrary"); };

  fill();
  auto first = Make<CEventLog>(), second = Make<CEventLog>();
  Make<CEventLogs>();
  EXPECT_EQ(freed(), 0u) << "two logs are alive";
  second = nullptr;
  EXPECT_EQ(freed(), 0u) << "the other one is alive";
  Make<CEventLogs>();
  EXPECT_EQ(freed(), 3u) << "one log is alive beside the list";
  EXPECT_EQ(cache.Count(), 0);

  fill();
  first = nullptr;
  EXPECT_EQ(freed(), 3u) << "the last log ends";
  fill();
  auto logs = Make<CEventLogs>();
  logs = nullptr;
  EXPECT_EQ(freed(), 0u) << "no log is alive";
  logs = Make<CEventLogs>();
  logs->Add(Make<CEventLog>().Get());
  logs = nullptr;
  EXPECT_EQ(freed(), 3u) << "the last log ends with its list";
}

}  // namespace
}  // namespace veldmark
