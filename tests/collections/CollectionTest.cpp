#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>
#include <list>
#include <optional>
#include <ostream>
#include <random>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "accounts/CGroup.h"
#include "accounts/CGroups.h"
#include "accounts/CUser.h"
#include "accounts/CUsers.h"
#include "apartment/Conversions.h"
#include "automation/Interface.h"
#include "automation/LastError.h"
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
#include "support/ErrorOf.h"
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
    if (set) return set(element, Text(key));
    if (*property) Call(element, property, MemberKind::kPut, {Variant(key)});
  }
  const char16_t* name;
  Names names;
  const char16_t* property = u"";        ///< what holds the key; empty for none
  void (*set)(Object&, Text) = nullptr;  ///< how the library puts it, where no client can
};

/// What a list of the tests shows of a parameter.
void PrintTo(const ListClass& tested, std::ostream* out) { *out << ToUtf8(tested.name); }

template <class Element, void (Element::*kSet)(Text)>
void Set(Object& element, Text key) {
  (static_cast<Element&>(element).*kSet)(std::move(key));
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
    {u"CDrives", kAnyCase, u"DriveLetter"},
    {u"CNetworks", kAnyCase, u"NetworkName"},
    {u"CSids", kAnyCase, u"", Set<CSid, &CSid::SetSidText>},
    {u"CAces", kNone},
    {u"CEventLogEntries", kNone},
    {u"CFolders", kExact, u"FolderName"},
    {u"CFiles", kExact, u"FileName"},
    {u"CDomains", kExact, u"DomainName"},
    {u"CEventLogs", kExact, u"", Set<CEventLog, &CEventLog::SetLogName>},
    {u"CPrinters", kExact, u"PrinterName"},
    {u"CRegKeys", kExact, u"Name"},
    {u"CRegValues", kExact, u"Name"},
    {u"CServers", kExact, u"ServerName"},
    {u"CServices", kExact, u"ServiceName"},
    {u"CShares", kExact, u"ShareName"},
    {u"CTasks", kExact, u"Name"},
    {u"CTriggers", kExact, u"", Set<CTrigger, &CTrigger::SetText>},
    {u"CVolumes", kExact, u"VolumeName"},
    {u"CPathNames", kExact, u"PathName"},
    {u"CUsers", kExact, u"", SetUserName},
    {u"CGroups", kHidden, u"", SetGroupName}};

/// The calls give the number of the element, 1 to 4, 0 for Nothing or nothing at all, or the number
/// of the error, which is never below 5.
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
  std::int32_t NumberOf(const Variant& item) const {
    const Ref<Object>* const object = item.If<Ref<Object>>();
    if (!object || !*object) return 0;
    return static_cast<std::int32_t>(std::ranges::find(elements_, *object) - elements_.begin()) + 1;
  }
  std::int32_t Outcome(const Ref<Object>& list, TextView name, Variant argument) {
    const auto kind = name.starts_with(u"Item") ? MemberKind::kGet : MemberKind::kMethod;
    std::int32_t number = 0;
    const std::int32_t error =
        ErrorOf([&] { number = NumberOf(Call(*list, name, kind, {std::move(argument)})); });
    return error == 0 ? number : error;
  }
  /// The elements as For Each meets them; as many as Count tells.
  std::string All(const Ref<Object>& list) {
    std::string all;
    const Variant enumerator = Call(*list, u"NewEnum", MemberKind::kGet);
    auto& walk = dynamic_cast<Enumerator&>(**enumerator.If<Ref<Object>>());
    for (Variant item; walk.Next(item);) all += std::to_string(NumberOf(item));
    EXPECT_EQ(Call(*list, u"Count", MemberKind::kGet), Variant(static_cast<int>(all.size())));
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
  // What is found or raised: without names, in any case, exact, hidden; and the indexes for it.
  const std::pair<std::array<std::int32_t, 4>, std::vector<Variant>> cases[] = {
      {{1, 1, 1, 1}, {1}},
      {{4, 4, 4, 4}, {std::int16_t{4}}},
      {{2, 2, 2, 2}, {2.0, Currency{20000}, std::uint8_t{2}, Variant::ByReference(two)}},
      {{9, 9, 9, 9}, {0, 5, std::int64_t{0x100000001}}},  // which is 1 in 32 bits
      {{5, 1, 1, 5}, {u"Alpha"}},
      {{5, 1, 5, 5}, {u"ALPHA", Variant::ByReference(nested)}},
      {{5, 2, 5, 2}, {u"2"}},
      {{5, 5, 5, 5}, {u"", GetCollectionKey(u"Alpha")}},
      {{13, 13, 13, 13}, {Variant(), LongArray({1})}},
      {{13, 13, 94, 94}, {Null()}},
      // What doesn't read as digits is a name, whatever its type; positions round half to even.
      {{2, 2, 5, 5}, {2.5, Date{2.25}}},
      {{2, 2, 3, 5}, {1.5}},
      {{9, 9, 4, 5}, {true}},
      {{9, 9, 5, 5}, {-1, 1e300}}};
  const bool swallows = GetParam().List().name == u"CDrives";
  for (const auto& [outcomes, indexes] : cases) {
    for (const Variant& index : indexes) {
      SCOPED_TRACE("type " + std::to_string(static_cast<int>(index.Type())) + " for " +
                   testing::PrintToString(outcomes));
      const Ref<Object> list = NewList({u"Alpha", u"2", u"1.5", u"True"});
      const std::int32_t expected = outcomes[static_cast<std::size_t>(GetParam().names)];
      const bool found = expected < 5;
      Err().Clear();
      EXPECT_EQ(Outcome(list, u"Item", index), found || !swallows ? expected : 0);
      // Raised or swallowed, the error stands in `Err`.
      EXPECT_EQ(Err().Number(), found ? 0 : expected);
      EXPECT_EQ(Outcome(list, u"Remove", index), found ? 0 : expected);
      std::string left = "1234";
      if (found) left.erase(left.find(std::to_string(expected)), 1);
      EXPECT_EQ(All(list), left);
    }
  }
}

TEST_P(CollectionFamily, FindsAnyNameByItemByKeyAndAnyPositionByItemByIndex) {
  if (GetParam().names == kNone || GetParam().names == kAnyCase) return;  // it has neither
  const Ref<Object> list = NewList({u"Share", u"SHARE", u"2", u""});
  const std::pair<Variant, std::int32_t> keys[] = {{Variant(u"Share"), 1}, {Variant(u"SHARE"), 2},
                                                   {Variant(u"2"), 3},     {Variant(2), 3},
                                                   {Variant(u"share"), 5}, {Variant(u"1"), 5}};
  for (const auto& [key, expected] : keys) {
    EXPECT_EQ(Outcome(list, u"ItemByKey", key), GetParam().names == kHidden ? 5 : expected);
  }
  // An empty key is the same spelled out, so that even a hidden one is found.
  EXPECT_EQ(Outcome(list, u"ItemByKey", Variant(u"")), 4);
  EXPECT_EQ(Outcome(list, u"Item", Variant(u"")), 4);
  EXPECT_EQ(Outcome(list, u"ItemByIndex", Variant(u"1")), 1);
  EXPECT_EQ(Outcome(list, u"ItemByIndex", Variant(-1)), 9);
  EXPECT_EQ(Err().Number(), 9);
}

TEST_P(CollectionFamily, TreatsANameThatIsThereAlreadyAsItsRuleSays) {
  const TextView name = GetParam().List().name;
  const Names names = GetParam().names;
  const bool takes_all = names == kNone || name == u"CUsers";
  const bool groups = name == u"CGroups";
  const Ref<Object> list = NewList();
  Err().Clear();
  EXPECT_EQ(Outcome(list, u"Add", NewElement(u"Name")), 1);
  EXPECT_EQ(Outcome(list, u"Add", NewElement(u"Name")), groups ? 1 : 2);
  EXPECT_EQ(Err().Number(), takes_all || name == u"CPrinters" ? 0 : 457);
  EXPECT_EQ(Outcome(list, u"Add", NewElement(u"NAME")), groups ? 1 : 3);
  EXPECT_EQ(All(list), takes_all ? "123" : names == kExact ? "13" : "1");
  // The key is that of the moment of the add.
  GetParam().PutKey(*elements_[0], u"Renamed");
  EXPECT_EQ(Outcome(list, u"Add", elements_[0]), 1);
  EXPECT_EQ(Outcome(list, u"Item", Variant(u"Name")), names == kExact || names == kAnyCase ? 1 : 5);
}

TEST_P(CollectionFamily, StoresNothingButElementsOfItsClassAndHoldsThemToItsEnd) {
  const Ref<Object> list = NewList();
  EXPECT_EQ(Outcome(list, u"Add", Variant(Ref<Object>())), 0);
  EXPECT_EQ(Outcome(list, u"Add", Variant(list)), 13);
  EXPECT_EQ(All(list), "");
  Outcome(list, u"Add", NewElement(u"kept"));
  Object* element = elements_[0].Get();
  elements_.clear();
  EXPECT_EQ(Call(*list, u"Item", MemberKind::kGet, {Variant(1)}), Variant(Ref<Object>(element)));
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

TEST_F(CollectionClasses, AnEarlierErrorIsNoneOfTheirs) {
  const auto users = Make<CUsers>();
  const auto groups = Make<CGroups>();
  const auto group = Make<CGroup>();
  Swallow([] { Raise(457); });
  users->Add(Make<CUser>().Get());
  groups->Add(group.Get());
  groups->AddWithKey(group.Get(), u"key");
  EXPECT_EQ(users->Count(), 1);
  EXPECT_EQ(groups->Count(), 2);
  Make<CPrinters>()->Add(nullptr);
  EXPECT_EQ(Err().Number(), 0);
  // This one is false whatever is asked, and clears the error all the same.
  const auto servers = Make<CServers>();
  servers->Add(Make<CServer>().Get());
  for (Variant key : {Variant(u""), Variant(1), Variant(Null())}) {
    Swallow([] { Raise(457); });
    EXPECT_FALSE(servers->ContainsKey(key));
    EXPECT_EQ(Err().Number(), 0);
  }
}

TEST_F(CollectionClasses, ANewFolderIsMadeOnDiskAndListed) {
  const auto folders = Make<CFolders>();
  const Ref<CFolder> made = folders->AddNewFolder(u"C:\\New");
  EXPECT_EQ(folders->ItemByKey(u"New"), made);
  EXPECT_EQ(ErrorOf([&] { folders->AddNewFolder(u"C:\\New"); }), 183);
  faults().FailEvery("FindFirstFileW", 5);
  EXPECT_EQ(ErrorOf([&] { folders->AddNewFolder(u"C:\\Made, but not to be read"); }), 5);
  EXPECT_EQ(folders->Count(), 1);
}

TEST_F(CollectionClasses, TheLastEventLogsEndFreesTheMessageFiles) {
  Collection& cache = *Apartment::Current().message_modules;
  const auto freed_by = [&](auto&& end) {
    while (cache.Count() < 3) cache.Add(Variant(HandleText(LoadMessageFile(u"netmsg.dll"))));
    for (const char16_t* text : {u"", u"no number"}) cache.Add(Variant(text));
    journal().Clear();
    end();
    return journal().Count("FreeLibrary");
  };
  auto first = Make<CEventLog>(), second = Make<CEventLog>();
  EXPECT_EQ(freed_by([] { Make<CEventLogs>(); }), 0u) << "two logs are alive";
  EXPECT_EQ(freed_by([&] { second = nullptr; }), 0u) << "the other one is alive";
  EXPECT_EQ(freed_by([] { Make<CEventLogs>(); }), 3u) << "one log is alive beside the list";
  EXPECT_EQ(cache.Count(), 0);
  EXPECT_EQ(freed_by([&] { first = nullptr; }), 3u) << "the last log ends";
  EXPECT_EQ(freed_by([] { Make<CEventLogs>(); }), 0u) << "no log is alive";
  auto logs = Make<CEventLogs>();
  logs->Add(Make<CEventLog>().Get());
  EXPECT_EQ(freed_by([&] { logs = nullptr; }), 3u) << "the last log ends with its list";
}

std::int32_t IdOf(const Variant& item) { return *item.If<std::int32_t>(); }

std::vector<std::int32_t> IdsOf(Collection& list) {
  std::vector<std::int32_t> ids;
  const Ref<Enumerator> enumerator = list.NewEnum();
  for (Variant item; enumerator->Next(item);) ids.push_back(IdOf(item));
  return ids;
}

/// An item that does something when its last reference goes.
struct LastWill : Object {
  explicit LastWill(std::function<void()> action) : will(std::move(action)) {}
  ~LastWill() override { will(); }
  const Interface& GetInterface() const override { std::abort(); }
  std::function<void()> will;
};

TEST(Collection, TakesOneOfTwoPlacesByPositionOrKey) {
  const auto list = Make<Collection>();
  const auto key = [](TextView text) { return CollectionKey::Plain(text); };
  list->Add(Variant(1), key(u"One"));
  const Variant first(1), missing = Variant::Missing();
  EXPECT_EQ(ErrorOf([&] { list->Add(Variant(2), key(u"2"), first, first); }), 5);
  EXPECT_EQ(ErrorOf([&] { list->Add(Variant(2), key(u"2"), missing, Variant(u"two")); }), 5);
  list->Add(Variant(2), key(u"2"), missing, Variant(u"ONE"));
  list->Add(Variant(3), {}, Variant(u"2"));
  EXPECT_EQ(IdsOf(*list), (std::vector<std::int32_t>{1, 3, 2}));
}

TEST(Collection, TakesAnEncodedKeyForWhatItsEncodingSpells) {
  std::mt19937 random(7);
  for (int round = 0; round < 500; ++round) {
    Text text;
    for (unsigned i = random() % 30; i > 0; --i) text += static_cast<char16_t>(random() % 0x300);
    const auto list = Make<Collection>();
    list->Add(Variant(1), CollectionKey::Encoded(text));
    EXPECT_EQ(ErrorOf([&] { list->Item(Variant(GetCollectionKey(text))); }), 0) << ToUtf8(text);
    EXPECT_EQ(ErrorOf([&] { list->Item(Variant(u"-" + text)); }), 5);
    EXPECT_EQ(ErrorOf([&] { list->Item(CollectionKey::Encoded(text + u"x")); }), 5);
  }
  for (const TextView unspelled : {u"65", u"65-0", u"065-0-", u"256-0-", u"65-00-", u"6x-0-",
                                   u"-65-0-", u"65--0-", u"1000-0-", u"65-0-98-", u"\uFF16-0-"}) {
    EXPECT_TRUE(CollectionKey::Plain(unspelled).IsByLetters()) << ToUtf8(unspelled);
  }
  EXPECT_EQ(CollectionKey::Plain(u""), CollectionKey::Encoded(u""));
}

TEST(Collection, FoldsWhatThePlatformsComparisonFoldsWhereThereIsOne) {
  const std::tuple<TextView, TextView, bool, bool> cases[] = {
      {u"Straße", u"STRASSE", true, false}, {u"\u00E4\u03A9", u"\u00C4\u03C9", true, true},
      {u"k", u"\u212A", true, false},       {TextView(u"key\0", 4), u"KEY", true, false},
      {u"\u00B5", u"\u03BC", false, true},  {u"a\u0001", u"a", false, false},
      {u"Key", u"kEY", true, true}};
  for (const bool on_platform : {true, false}) {
    std::optional<SimulatedApartment> apartment;
    if (on_platform) apartment.emplace();
    for (const auto& [one, other, equal_there, equal_by_letters] : cases) {
      SCOPED_TRACE(ToUtf8(one));
      const bool equal = on_platform ? equal_there : equal_by_letters;
      SetLastPlatformError(77);
      for (const auto& [first, second] : {std::pair{one, other}, {other, one}}) {
        const auto list = Make<Collection>();
        list->Add(Variant(1), CollectionKey::Plain(u"ascii"));
        list->Add(Variant(2), CollectionKey::Encoded(first));
        list->Add(Variant(3));
        list->Add(Variant(4), CollectionKey::Plain(first));
        EXPECT_EQ(ErrorOf([&] { EXPECT_EQ(IdOf(list->Item(Variant(second))), 4); }), equal ? 0 : 5);
        EXPECT_EQ(ErrorOf([&] { list->Add(Variant(5), CollectionKey::Plain(second)); }),
                  equal ? 457 : 0);
        // What was there before is found in the one form as in the other.
        EXPECT_EQ(IdOf(list->Item(Variant(u"ASCII"))), 1);
        EXPECT_EQ(IdOf(list->Item(CollectionKey::Encoded(first))), 2);
        list->Remove(Variant(u"Ascii"));
        list->Remove(Variant(first));
        EXPECT_EQ(list->Count(), equal ? 2 : 3);
      }
      EXPECT_EQ(LastPlatformError(), 77u) << "a look-up is no call of the caller's";
    }
  }
}

/// The same list kept the plain way. A walk's place is an element of its own: what comes behind it
/// is still to be visited.
class NaiveList {
 public:
  struct Element {
    std::int32_t id;  ///< of an item; -1 for a walk's place
    std::string key;
  };
  using Place = std::list<Element>::iterator;

  std::int32_t Count() const {
    return static_cast<std::int32_t>(std::ranges::count_if(elements_, IsItem));
  }
  std::int32_t PositionOf(const std::string& key) const {
    const auto found = std::ranges::find_if(elements_, [&](auto& e) { return e.key == key; });
    if (key.empty() || found == elements_.end()) return -1;
    return static_cast<std::int32_t>(std::count_if(elements_.begin(), found, IsItem));
  }
  Place At(std::int32_t position) {
    return std::ranges::find_if(elements_, [&](auto& e) { return IsItem(e) && position-- == 0; });
  }
  void Insert(Place before, std::int32_t id, const std::string& key) {
    elements_.insert(before, Element{id, key});
  }
  void Remove(Place place) { elements_.erase(place); }

  Place BeginWalk() { return elements_.insert(elements_.begin(), Element{-1, {}}); }
  /// The next item of a walk, or -1 at the end.
  std::int32_t Step(Place walk) {
    const Place next = std::find_if(walk, elements_.end(), IsItem);
    if (next == elements_.end()) return -1;
    elements_.splice(std::next(next), elements_, walk);
    return next->id;
  }

 private:
  static bool IsItem(const Element& element) { return element.id >= 0; }

  std::list<Element> elements_;
};

TEST(Collection, BehavesAsANaiveListUnderRandomChangesAndWalks) {
  for (unsigned seed = 1; seed <= 20; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const auto below = [&random](std::int32_t end) {
      return static_cast<std::int32_t>(random() % static_cast<unsigned>(end));
    };
    const auto list = Make<Collection>();
    NaiveList naive;
    std::vector<std::pair<NaiveList::Place, Ref<Enumerator>>> walks;
    for (std::int32_t id = 0; id < 2000; ++id) {
      const std::int32_t name = below(60);
      const std::string key =
          below(4) ? std::string(1 + static_cast<std::size_t>(name) / 2, 'k') + std::to_string(name)
                   : "";
      Text spelled = FromUtf8(key);
      if (!key.empty() && below(2)) spelled[0] = u'K';
      const std::int32_t count = naive.Count();
      const std::int32_t found = naive.PositionOf(key);
      const std::int32_t anywhere = below(count + 2);  // 1-based, at times out of range
      const bool in_range = anywhere >= 1 && anywhere <= count;
      const Variant index(anywhere);
      const std::int32_t action = below(8);
      if (action < 3) {
        const int place = below(3);
        const std::int32_t expected = place && !in_range ? 9 : found >= 0 ? 457 : 0;
        const std::int32_t number = ErrorOf([&] {
          list->Add(Variant(id), key.empty() ? CollectionKey() : CollectionKey::Plain(spelled),
                    place == 1 ? index : Variant::Missing(),
                    place == 2 ? index : Variant::Missing());
        });
        ASSERT_EQ(number, expected);
        if (!number) naive.Insert(naive.At(place == 0 ? count : anywhere - 2 + place), id, key);
      } else if (action == 3) {
        ASSERT_EQ(ErrorOf([&] { list->Remove(index); }), in_range ? 0 : 9);
        if (in_range) naive.Remove(naive.At(anywhere - 1));
      } else if (action == 4) {
        ASSERT_EQ(ErrorOf([&] { list->Remove(Variant(spelled)); }), found >= 0 ? 0 : 5);
        if (found >= 0) naive.Remove(naive.At(found));
      } else if (action > 5) {
        for (auto& [walk, enumerator] : walks) {
          Variant item(std::int32_t{-1});
          const std::int32_t expected = naive.Step(walk);
          ASSERT_EQ(enumerator->Next(item), expected >= 0);
          ASSERT_EQ(IdOf(item), expected);
        }
      } else if (walks.size() < 5) {
        walks.emplace_back(naive.BeginWalk(), list->NewEnum());
      } else {
        const auto ended = walks.begin() + below(5);
        naive.Remove(ended->first);
        walks.erase(ended);
      }
      ASSERT_EQ(list->Count(), naive.Count());
      if (const std::int32_t now = naive.PositionOf(key); now >= 0) {
        ASSERT_EQ(IdOf(list->Item(Variant(spelled))), naive.At(now)->id);
        ASSERT_EQ(IdOf(list->Item(Variant(now + 1))), naive.At(now)->id);
      }
    }
  }
}

TEST(Collection, LetsAnEndingItemAndAnOutlivingWalkDoAsTheyLike) {
  auto list = Make<Collection>();
  Collection& live = *list;
  list->Add(Variant(1), CollectionKey::Plain(u"one"));
  list->Add(Variant(Ref<Object>(Make<LastWill>([&live] {
              live.Remove(Variant(u"one"));
              live.Add(Variant(3), CollectionKey::Plain(u"two"));
            }))),
            CollectionKey::Plain(u"two"));
  list->Remove(Variant(u"two"));
  EXPECT_EQ(IdsOf(*list), std::vector<std::int32_t>{3});

  list->Add(Variant(4));
  const Ref<Enumerator> walk = list->NewEnum();
  Variant item = Variant(Ref<Object>(Make<LastWill>([&live] { live.Remove(Variant(1)); })));
  EXPECT_TRUE(walk->Next(item));
  EXPECT_EQ(IdOf(item), 3);
  list = nullptr;
  const Ref<Enumerator> twin = walk->Clone();
  EXPECT_TRUE(walk->Next(item));
  EXPECT_EQ(IdOf(item), 4);
  EXPECT_FALSE(walk->Next(item));
  EXPECT_EQ(IdOf(item), 4);
  EXPECT_TRUE(twin->Skip(1));
  EXPECT_FALSE(twin->Skip(1));
  twin->Reset();
  EXPECT_FALSE(twin->Skip(0xFFFFFFFF));
  twin->Reset();
  EXPECT_TRUE(twin->Next(item));
}

}  // namespace
}  // namespace veldmark
