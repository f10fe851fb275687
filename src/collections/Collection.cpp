#include "collections/Collection.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <functional>
#include <optional>

#include "apartment/Apartment.h"
#include "automation/CaseMapping.h"
#include "automation/Conversion.h"
#include "automation/Error.h"
#include "automation/LastError.h"
#include "collections/CollectionEnumerator.h"

namespace veldmark {
namespace {

/// Takes one "0-" to "255-" off the front of `text`; false where there is none, also for a number
/// that an encoding would not spell that way ("065-").
bool TakeByte(TextView& text, unsigned& byte) {
  const std::size_t length = text.substr(0, 4).find(u'-');
  if (length == 0 || length == TextView::npos || (length > 1 && text[0] == u'0')) return false;
  byte = 0;
  for (const char16_t digit : text.substr(0, length)) {
    if (digit < u'0' || digit > u'9') return false;
    byte = byte * 10 + (digit - u'0');
  }
  text.remove_prefix(length + 1);
  return byte <= 0xFF;
}

/// The text whose encoding `key` spells out, if it spells one.
std::optional<Text> Decoded(TextView key) {
  Text text;
  while (!key.empty()) {
    unsigned low = 0, high = 0;
    if (!TakeByte(key, low) || !TakeByte(key, high)) return {};
    text += static_cast<char16_t>(low | high << 8);
  }
  return text;
}

/// Whether the platform folds the case of a text and nothing else: it ignores a NUL.
bool IsAscii(TextView text) {
  return std::ranges::all_of(text, [](char16_t unit) { return unit >= 1 && unit <= 0x7F; });
}

/// The platform's sort key of a text without regard to case; empty where there is no platform.
Text SortKeyOf(TextView text) {
  const Apartment* const apartment = Apartment::TryCurrent();
  if (!apartment) return {};
  // Those who ask for the last error mean calls of their own.
  const std::uint32_t last_error = LastPlatformError();
  const auto map = [&](LPWSTR key, INT room) {
    return apartment->platform.system.LCMapStringW(kLocaleInvariant,
                                                   kLcmapSortKey | kNormIgnoreCase, text.data(),
                                                   static_cast<INT>(text.size()), key, room);
  };
  const INT size = map(nullptr, 0);
  Text key((static_cast<std::size_t>(size) + 1) / sizeof(char16_t), u'\0');
  if (size == 0 || map(key.data(), size) != size) key.clear();
  SetLastPlatformError(last_error);
  return key;
}

/// A position, 1-based, from a number of any type. What is no position at all, being too large or
/// not a number, becomes 0, which is out of range as well.
std::int64_t PositionIn(const Variant& number) {
  const auto whole = [](double value) {
    return std::abs(value) < 0x1p53 ? static_cast<std::int64_t>(std::nearbyint(value)) : 0;
  };
  switch (number.Type()) {
    case VariantType::kBoolean:
    case VariantType::kByte:
    case VariantType::kInteger:
    case VariantType::kLong:
    case VariantType::kLongLong:
    case VariantType::kCurrency:
      return ToLongLong(number);
    case VariantType::kDouble:
      return whole(*number.If<double>());
    case VariantType::kDate:
      return whole(number.If<Date>()->days);
    default:
      Raise(runtime_error::kTypeMismatch);
  }
}

/// Where a slot's item and key are.
struct Place {
  explicit Place(std::uint32_t slot) {
    const std::uint32_t from_first = slot + kFirstChunk;
    chunk = static_cast<std::size_t>(std::bit_width(from_first) - std::bit_width(kFirstChunk));
    index = from_first - std::bit_floor(from_first);
  }
  static constexpr std::uint32_t kFirstChunk = 4;  ///< how many items it has

  std::size_t chunk, index;
};

}  // namespace

CollectionKey CollectionKey::Plain(TextView text) {
  if (std::optional<Text> decoded = Decoded(text)) return {*decoded, Kind::kEncoded};
  if (!IsAscii(text)) {
    if (const Text key = SortKeyOf(text); !key.empty()) return {key, Kind::kBySortKey};
  }
  return {ToFolded(text), Kind::kByLetters};
}

CollectionKey CollectionKey::BySortKey() const {
  const Text key = IsByLetters() ? SortKeyOf(Units()) : Text();
  return key.empty() ? CollectionKey(Units(), kind_) : CollectionKey(key, Kind::kBySortKey);
}

CollectionKey::CollectionKey(TextView text, Kind kind)
    : length_(static_cast<std::uint32_t>(text.size())), kind_(kind) {
  if (text.size() > short_.size()) long_ = std::make_unique<char16_t[]>(text.size());
  text.copy(long_ ? long_.get() : short_.data(), text.size());
}

std::uint32_t CollectionKey::Hash() const noexcept {
  const auto hash = static_cast<std::uint32_t>(std::hash<TextView>()(Units()));
  return kind_ == Kind::kEncoded ? ~hash : hash;
}

Collection::Collection() = default;

Collection::~Collection() = default;

void Collection::Add(Variant item, CollectionKey key, const Variant& before, const Variant& after) {
  std::size_t position = order_.size();
  if (!before.IsMissing()) {
    if (!after.IsMissing()) Raise(runtime_error::kInvalidCall);
    position = PositionOf(before);
  } else if (!after.IsMissing()) {
    position = PositionOf(after) + 1;
  }
  if (item.If<Reference>()) item = item.Dereferenced();
  if (HasOtherForm(key)) key = BySortKey(key);
  const std::uint32_t hash = key.Hash();
  if (!key.IsNone()) {
    if (Find(key, hash) != KeyIndex::kNone) Raise(runtime_error::kKeyAlreadyPresent);
    keyed_.Reserve();
  }
  const std::uint32_t slot = FreeSlot();
  const Place place(slot);
  Chunk& chunk = chunks_[place.chunk];
  if (!key.IsNone()) chunk.keys.resize(chunk.items.capacity());
  order_.insert(order_.begin() + static_cast<std::ptrdiff_t>(position), slot);

  // From here on nothing fails.
  free_.pop_back();
  if (!key.IsNone()) {
    keyed_.Insert(hash, slot);
    chunk.keys[place.index] = std::move(key);
  }
  chunk.items[place.index] = std::move(item);
  for (CollectionEnumerator* enumerator : enumerators_) enumerator->OnInserted(position);
}

const Variant& Collection::Item(const Variant& index) const {
  if (index.If<Reference>()) return Item(index.Dereferenced());
  if (const Text* key = index.If<Text>()) return Item(CollectionKey::Plain(*key));
  return ItemAt(PositionOf(index));
}

const Variant& Collection::Item(const CollectionKey& key) const { return ItemIn(SlotOf(key)); }

void Collection::Remove(const Variant& index) { RemoveAt(PositionOf(index)); }

void Collection::Remove(const CollectionKey& key) { RemoveAt(PositionOf(SlotOf(key))); }

Ref<Enumerator> Collection::NewEnum() { return Make<CollectionEnumerator>(this); }

const Variant& Collection::ItemIn(std::uint32_t slot) const {
  const Place place(slot);
  return chunks_[place.chunk].items[place.index];
}

CollectionKey* Collection::KeyIn(std::uint32_t slot) {
  const Place place(slot);
  std::vector<CollectionKey>& keys = chunks_[place.chunk].keys;
  return keys.empty() || keys[place.index].IsNone() ? nullptr : &keys[place.index];
}

std::uint32_t Collection::Find(const CollectionKey& key, std::uint32_t hash) const {
  return keyed_.Find(hash, [&](std::uint32_t slot) { return *KeyIn(slot) == key; });
}

CollectionKey Collection::BySortKey(const CollectionKey& key) const {
  if (!by_sort_keys_) const_cast<Collection&>(*this).TurnToSortKeys();
  return key.BySortKey();
}

void Collection::TurnToSortKeys() {
  std::vector<std::pair<CollectionKey*, CollectionKey>> keys;
  KeyIndex keyed;
  for (const std::uint32_t slot : order_) {
    CollectionKey* const key = KeyIn(slot);
    if (!key) continue;
    if (key->IsByLetters()) keys.emplace_back(key, key->BySortKey());
    keyed.Reserve();
    keyed.Insert((key->IsByLetters() ? keys.back().second : *key).Hash(), slot);
  }
  // From here on nothing fails.
  for (auto& [key, by_sort_key] : keys) *key = std::move(by_sort_key);
  keyed_ = std::move(keyed);
  by_sort_keys_ = true;
}

std::uint32_t Collection::SlotOf(const CollectionKey& key) const {
  std::uint32_t slot;
  if (HasOtherForm(key)) {
    const CollectionKey other = BySortKey(key);
    slot = Find(other, other.Hash());
  } else {
    slot = Find(key, key.Hash());
  }
  if (slot == KeyIndex::kNone) Raise(runtime_error::kInvalidCall);
  return slot;
}

std::size_t Collection::PositionOf(std::uint32_t slot) const {
  // From both ends, so that it costs no more than the removal that follows.
  std::size_t front = 0;
  std::size_t back = order_.size() - 1;
  while (order_[front] != slot) {
    if (order_[back] == slot) return back;
    ++front;
    --back;
  }
  return front;
}

std::size_t Collection::PositionOf(const Variant& index) const {
  if (index.If<Reference>()) return PositionOf(index.Dereferenced());
  if (const Text* key = index.If<Text>()) return PositionOf(SlotOf(CollectionKey::Plain(*key)));
  const std::int64_t position = PositionIn(index);
  if (position < 1 || position > Count()) Raise(runtime_error::kSubscriptOutOfRange);
  return static_cast<std::size_t>(position - 1);
}

std::uint32_t Collection::FreeSlot() {
  if (free_.empty()) {
    const auto slot = static_cast<std::uint32_t>(order_.size());
    if (Place(slot).chunk == chunks_.size()) {
      Chunk chunk;
      chunk.items.reserve(std::size_t{Place::kFirstChunk} << chunks_.size());
      chunks_.push_back(std::move(chunk));
    }
    free_.push_back(slot);
    chunks_.back().items.emplace_back();
  }
  return free_.back();
}

void Collection::RemoveAt(std::size_t position) {
  const std::uint32_t slot = order_[position];
  free_.push_back(slot);
  // The item may end with this, and what it does then must find the list in order.
  const Place place(slot);
  const Variant item = std::exchange(chunks_[place.chunk].items[place.index], {});
  if (CollectionKey* const key = KeyIn(slot)) {
    keyed_.Erase(key->Hash(), slot);
    *key = {};
  }
  order_.erase(order_.begin() + static_cast<std::ptrdiff_t>(position));
  for (CollectionEnumerator* enumerator : enumerators_) enumerator->OnRemoved(position);
}

}  // namespace veldmark
