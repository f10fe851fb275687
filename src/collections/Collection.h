#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/automation/Enumerator.h"
#include "platform/automation/Variant.h"

namespace veldmark {

class CollectionEnumerator;

/// A key of a `Collection`. A plain key is compared without regard to case. An encoded key stands
/// for `GetCollectionKey(text)` without spelling it out, so it equals exactly the keys of the same
/// code units; a plain key that happens to read like an encoding is one.
class CollectionKey {
 public:
  static CollectionKey Plain(TextView text);
  static CollectionKey Encoded(TextView text);

  bool operator==(const CollectionKey&) const = default;
  std::size_t Hash() const noexcept;

 private:
  CollectionKey(Text text, bool encoded) : text_(std::move(text)), encoded_(encoded) {}

  Text text_;  ///< case-folded for a plain key
  bool encoded_;
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
  void Add(Variant item, std::optional<CollectionKey> key = {},
           const Variant& before = Variant::Missing(), const Variant& after = Variant::Missing());

  /// The item at a position (a number of any type, rounded half to even; out of range raises 9) or
  /// under a plain key (a text, also of digits; absent raises 5). Another type of index raises 13.
  const Variant& Item(const Variant& index) const;
  const Variant& Item(const CollectionKey& key) const;
  /// Takes an item out; the others keep their order. Raises as `Item` does.
  void Remove(const Variant& index);
  void Remove(const CollectionKey& key);
  std::int32_t Count() const { return static_cast<std::int32_t>(entries_.size()); }
  /// An enumerator over the items in order. It follows changes made while it stands: an item
  /// removed is not visited, one added behind it is.
  Ref<Enumerator> NewEnum();

 private:
  friend class CollectionEnumerator;

  struct Entry {
    Variant item;
    std::optional<CollectionKey> key;
  };
  // Entries are indexed by the key that they hold, so that it is stored once.
  struct HashOfKey {
    using is_transparent = void;
    std::size_t operator()(const CollectionKey& key) const { return key.Hash(); }
    std::size_t operator()(const Entry* entry) const { return entry->key->Hash(); }
  };
  struct EqualKeys {
    using is_transparent = void;
    static const CollectionKey& KeyOf(const CollectionKey& key) { return key; }
    static const CollectionKey& KeyOf(const Entry* entry) { return *entry->key; }
    bool operator()(const auto& left, const auto& right) const {
      return KeyOf(left) == KeyOf(right);
    }
  };

  const Entry& Find(const CollectionKey& key) const;
  std::size_t PositionOf(const Entry& entry) const;
  /// The zero-based position that an index names; raises as `Item` does.
  std::size_t PositionOf(const Variant& index) const;
  void RemoveAt(std::size_t position);

  std::deque<std::unique_ptr<Entry>> entries_;
  std::unordered_set<Entry*, HashOfKey, EqualKeys> keyed_;
  std::vector<CollectionEnumerator*> enumerators_;  ///< those that stand
};

}  // namespace veldmark
