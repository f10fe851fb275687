#include "collections/Collection.h"

#include <cmath>
#include <functional>

#include "collections/CollectionEnumerator.h"
#include "platform/automation/CaseMapping.h"
#include "platform/automation/Conversion.h"
#include "platform/automation/Error.h"

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

}  // namespace

CollectionKey CollectionKey::Plain(TextView text) {
  if (std::optional<Text> decoded = Decoded(text)) return {*std::move(decoded), true};
  return {ToFolded(text), false};
}

CollectionKey CollectionKey::Encoded(TextView text) { return {Text(text), true}; }

std::size_t CollectionKey::Hash() const noexcept {
  const std::size_t hash = std::hash<Text>()(text_);
  return encoded_ ? ~hash : hash;
}

Collection::Collection() = default;

Collection::~Collection() = default;

void Collection::Add(Variant item, std::optional<CollectionKey> key, const Variant& before,
                     const Variant& after) {
  std::size_t position = entries_.size();
  if (!before.IsMissing()) {
    if (!after.IsMissing()) Raise(runtime_error::kInvalidCall);
    position = PositionOf(before);
  } else if (!after.IsMissing()) {
    position = PositionOf(after) + 1;
  }
  if (item.If<Reference>()) item = item.Dereferenced();
  auto entry = std::make_unique<Entry>(Entry{std::move(item), std::move(key)});
  if (entry->key && !keyed_.insert(entry.get()).second) Raise(runtime_error::kKeyAlreadyPresent);

  struct Unindex {
    Collection& list;
    Entry* entry;
    ~Unindex() {
      if (entry && entry->key) list.keyed_.erase(entry);
    }
  } unindex{*this, entry.get()};
  // The room is made first: an insertion that fails would take the entry with it.
  const auto room = entries_.emplace(entries_.begin() + static_cast<std::ptrdiff_t>(position));
  *room = std::move(entry);
  unindex.entry = nullptr;

  for (CollectionEnumerator* enumerator : enumerators_) enumerator->OnInserted(position);
}

const Variant& Collection::Item(const Variant& index) const {
  if (index.If<Reference>()) return Item(index.Dereferenced());
  if (const Text* key = index.If<Text>()) return Item(CollectionKey::Plain(*key));
  return entries_[PositionOf(index)]->item;
}

const Variant& Collection::Item(const CollectionKey& key) const { return Find(key).item; }

void Collection::Remove(const Variant& index) { RemoveAt(PositionOf(index)); }

void Collection::Remove(const CollectionKey& key) { RemoveAt(PositionOf(Find(key))); }

Ref<Enumerator> Collection::NewEnum() { return Make<CollectionEnumerator>(this); }

const Collection::Entry& Collection::Find(const CollectionKey& key) const {
  const auto found = keyed_.find(key);
  if (found == keyed_.end()) Raise(runtime_error::kInvalidCall);
  return **found;
}

std::size_t Collection::PositionOf(const Entry& entry) const {
  // From both ends, so that it costs no more than the removal that follows.
  std::size_t front = 0;
  std::size_t back = entries_.size() - 1;
  while (entries_[front].get() != &entry) {
    if (entries_[back].get() == &entry) return back;
    ++front;
    --back;
  }
  return front;
}

std::size_t Collection::PositionOf(const Variant& index) const {
  if (index.If<Reference>()) return PositionOf(index.Dereferenced());
  if (const Text* key = index.If<Text>()) return PositionOf(Find(CollectionKey::Plain(*key)));
  const std::int64_t position = PositionIn(index);
  if (position < 1 || position > Count()) Raise(runtime_error::kSubscriptOutOfRange);
  return static_cast<std::size_t>(position - 1);
}

void Collection::RemoveAt(std::size_t position) {
  // The item may end with this, and what it does then must find the list in order.
  const std::unique_ptr<Entry> entry = std::move(entries_[position]);
  if (entry->key) keyed_.erase(entry.get());
  entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(position));
  for (CollectionEnumerator* enumerator : enumerators_) enumerator->OnRemoved(position);
}

}  // namespace veldmark
