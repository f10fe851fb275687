#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <utility>
#include <vector>

#include "automation/Enumerator.h"
#include "automation/Variant.h"
#include "collections/KeyIndex.h"

namespace veldmark {

class CollectionEnumerator;

/// A key of a `Collection`. A plain key is compared as the platform compares texts without regard
/// to case, by its sort key where it has more than ASCII; on a thread without an apartment, unit by
/// unit. An encoded key stands for `GetCollectionKey(text)` without spelling it out, so it equals
/// exactly the keys of the same code units; a plain key that happens to read like an encoding is
/// one. An item without a key has one that is none.
class CollectionKey {
 public:
  CollectionKey() = default;
  static CollectionKey Plain(TextView text);
  static CollectionKey Encoded(TextView text) { return {text, Kind::kEncoded}; }

  bool IsNone() const { return kind_ == Kind::kNone; }
  /// Whether a plain key is held by its letters, folded, or by its sort key. A letter of ASCII may
  /// equal one that is none, but keys of the two forms never equal each other.
  bool IsByLetters() const { return kind_ == Kind::kByLetters; }
  bool IsBySortKey() const { return kind_ == Kind::kBySortKey; }
  /// The same key by its sort key, unless it isn't by letters or there is no platform to ask.
  CollectionKey BySortKey() const;
  bool operator==(const CollectionKey& other) const {
    return kind_ == other.kind_ && Units() == other.Units();
  }
  std::uint32_t Hash() const noexcept;

 private:
  enum class Kind : std::uint8_t { kNone, kByLetters, kBySortKey, kEncoded };

  CollectionKey(TextView text, Kind kind);

  TextView Units() const { return {long_ ? long_.get() : short_.data(), length_}; }

  // Most names are short; kept in place they cost no allocation, and a look-up one wait less.
  std::unique_ptr<char16_t[]> long_;
  std::array<char16_t, 20> short_{};
  std::uint32_t length_ = 0;
  Kind kind_ = Kind::kNone;
};

/// The runtime's keyed list: items in insertion order, found by 1-based position or by key, both in
/// constant time. Taking an item out costs the way to the nearer end.
class Collection : public ReferenceCounted {
 public:
  Collection();
  ~Collection() override;

  /// Appends an item, or inserts it before or after the one that `before` or `after` names (a
  /// position or a key; at most one of them, else 5). A by-reference item is read through. Raises
  /// 457 for a key that is present already, and as `Item` does for a place that isn't there; the
  /// list then stays as it was.
  void Add(Variant item, CollectionKey key = {}, const Variant& before = Variant::Missing(),
           const Variant& after = Variant::Missing());

  /// The item at a position (a number of any type, rounded half to even; out of range raises 9) or
  /// under a plain key (a text, also of digits; absent raises 5). Another type of index raises 13.
  const Variant& Item(const Variant& index) const;
  const Variant& Item(const CollectionKey& key) const;
  /// Takes an item out; the others keep their order. Raises as `Item` does.
  void Remove(const Variant& index);
  void Remove(const CollectionKey& key);
  std::int32_t Count() const { return static_cast<std::int32_t>(order_.size()); }
  /// An enumerator over the items in order. It follows changes made while it stands: an item
  /// removed is not visited, one added behind it is.
  Ref<Enumerator> NewEnum();

 private:
  friend class CollectionEnumerator;

  /// Items with their keys, which take no room where none of them has one.
  struct Chunk {
    std::vector<Variant> items;
    std::vector<CollectionKey> keys;
  };

  const Variant& ItemIn(std::uint32_t slot) const;
  const Variant& ItemAt(std::size_t position) const { return ItemIn(order_[position]); }
  /// Null where the item has none.
  CollectionKey* KeyIn(std::uint32_t slot);
  const CollectionKey* KeyIn(std::uint32_t slot) const {
    return const_cast<Collection&>(*this).KeyIn(slot);
  }
  /// The slot of the item with this key; `KeyIndex::kNone` if there is none.
  std::uint32_t Find(const CollectionKey& key, std::uint32_t hash) const;
  /// The same, of a key of either form; raises 5 if there is none.
  std::uint32_t SlotOf(const CollectionKey& key) const;
  /// Whether a plain key has another form than those of the list.
  bool HasOtherForm(const CollectionKey& key) const {
    return by_sort_keys_ ? key.IsByLetters() : key.IsBySortKey();
  }
  /// Such a key by its sort key; the list holds all plain keys so from here on.
  CollectionKey BySortKey(const CollectionKey& key) const;
  void TurnToSortKeys();
  std::size_t PositionOf(std::uint32_t slot) const;
  /// The zero-based position that an index names; raises as `Item` does.
  std::size_t PositionOf(const Variant& index) const;
  /// The last of the free slots; makes one where there is none.
  std::uint32_t FreeSlot();
  void RemoveAt(std::size_t position);

  /// By slot. An item keeps its slot and its address: a chunk never grows beyond what was set aside
  /// for it, each being twice as large as the one before.
  std::vector<Chunk> chunks_;
  std::vector<std::uint32_t> free_;  ///< slots without an item
  std::deque<std::uint32_t> order_;  ///< the slot at each position
  KeyIndex keyed_;
  bool by_sort_keys_ = false;  ///< once a plain key that isn't all ASCII was added or looked up
  std::vector<CollectionEnumerator*> enumerators_;  ///< those that stand
};

}  // namespace veldmark
