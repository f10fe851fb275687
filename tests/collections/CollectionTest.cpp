#include "collections/Collection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <list>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "apartment/Conversions.h"
#include "automation/Error.h"
#include "automation/Interface.h"
#include "automation/LastError.h"
#include "support/ApartmentFixture.h"
#include "support/ErrorOf.h"

namespace veldmark {
namespace {

std::int32_t IdOf(const Variant& item) { return *item.If<std::int32_t>(); }

std::vector<std::int32_t> IdsOf(Collection& list) {
  std::vector<std::int32_t> ids;
  const Ref<Enumerator> enumerator = list.NewEnum();
  for (Variant item; enumerator->Next(item);) ids.push_back(IdOf(item));
  return ids;
}

/// An item that does something when its last reference goes.
class LastWill : public Object {
 public:
  explicit LastWill(std::function<void()> will) : will_(std::move(will)) {}
  ~LastWill() override { will_(); }
  const Interface& GetInterface() const override {
    static const Interface table;
    return table;
  }

 private:
  std::function<void()> will_;
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
  const struct {
    TextView one, other;
    bool equal, equal_by_letters;
  } cases[] = {{u"Straße", u"STRASSE", true, false}, {u"\u00E4\u03A9", u"\u00C4\u03C9", true, true},
               {u"k", u"\u212A", true, false},       {TextView(u"key\0", 4), u"KEY", true, false},
               {u"\u00B5", u"\u03BC", false, true},  {u"a\u0001", u"a", false, false},
               {u"Key", u"kEY", true, true}};
  for (const bool on_platform : {true, false}) {
    std::optional<SimulatedApartment> apartment;
    if (on_platform) apartment.emplace();
    for (const auto& c : cases) {
      SCOPED_TRACE(ToUtf8(c.one));
      const bool equal = on_platform ? c.equal : c.equal_by_letters;
      SetLastPlatformError(77);
      for (const auto& [first, second] : {std::pair{c.one, c.other}, {c.other, c.one}}) {
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
  std::int32_t Count() const {
    return static_cast<std::int32_t>(std::ranges::count_if(elements_, IsItem));
  }
  std::int32_t PositionOf(const std::string& key) const {
    const auto found = std::ranges::find_if(elements_, [&](auto& e) { return e.key == key; });
    if (key.empty() || found == elements_.end()) return -1;
    return static_cast<std::int32_t>(std::count_if(elements_.begin(), found, IsItem));
  }
  void Insert(std::int32_t position, std::int32_t id, std::string key) {
    elements_.insert(At(position), {id, std::move(key)});
  }
  void Remove(std::int32_t position) { elements_.erase(At(position)); }
  std::int32_t IdAt(std::int32_t position) { return At(position)->id; }

  void Begin(std::int32_t walk) { elements_.push_front({walk, {}}); }
  void End(std::int32_t walk) { elements_.erase(Find(walk)); }
  /// The next item of a walk, or -1 at the end.
  std::int32_t Step(std::int32_t walk) {
    const auto place = Find(walk);
    const auto next = std::find_if(place, elements_.end(), IsItem);
    if (next == elements_.end()) return -1;
    elements_.splice(std::next(next), elements_, place);
    return next->id;
  }

 private:
  struct Element {
    std::int32_t id;  ///< of an item; negative for a walk
    std::string key;
  };
  static bool IsItem(const Element& element) { return element.id >= 0; }
  std::list<Element>::iterator At(std::int32_t position) {
    return std::ranges::find_if(elements_, [&](auto& e) { return IsItem(e) && position-- == 0; });
  }
  std::list<Element>::iterator Find(std::int32_t id) {
    return std::ranges::find(elements_, id, &Element::id);
  }

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
    std::vector<std::pair<std::int32_t, Ref<Enumerator>>> walks;
    std::int32_t next_walk = -1;

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
      switch (below(8)) {
        case 0:
        case 1:
        case 2: {
          const int place = below(3);
          const std::int32_t expected = place && !in_range ? 9 : found >= 0 ? 457 : 0;
          const std::int32_t number = ErrorOf([&] {
            list->Add(Variant(id), key.empty() ? CollectionKey() : CollectionKey::Plain(spelled),
                      place == 1 ? index : Variant::Missing(),
                      place == 2 ? index : Variant::Missing());
          });
          ASSERT_EQ(number, expected);
          if (!number) {
            naive.Insert(place == 0 ? count : anywhere - 2 + place, id, key);
          }
          break;
        }
        case 3:
          ASSERT_EQ(ErrorOf([&] { list->Remove(index); }), in_range ? 0 : 9);
          if (in_range) naive.Remove(anywhere - 1);
          break;
        case 4:
          ASSERT_EQ(ErrorOf([&] { list->Remove(Variant(spelled)); }), found >= 0 ? 0 : 5);
          if (found >= 0) naive.Remove(found);
          break;
        case 5:
          if (walks.size() < 5) {
            walks.emplace_back(--next_walk, list->NewEnum());
            naive.Begin(next_walk);
          } else {
            const auto ended = walks.begin() + below(5);
            naive.End(ended->first);
            walks.erase(ended);
          }
          break;
        default:
          for (auto& [walk, enumerator] : walks) {
            Variant item(std::int32_t{-1});
            const std::int32_t expected = naive.Step(walk);
            ASSERT_EQ(enumerator->Next(item), expected >= 0);
            ASSERT_EQ(IdOf(item), expected);
          }
      }
      ASSERT_EQ(list->Count(), naive.Count());
      if (const std::int32_t now = naive.PositionOf(key); now >= 0) {
        ASSERT_EQ(IdOf(list->Item(Variant(spelled))), naive.IdAt(now));
        ASSERT_EQ(IdOf(list->Item(Variant(now + 1))), naive.IdAt(now));
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
