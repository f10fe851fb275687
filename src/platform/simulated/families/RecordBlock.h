#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

#include "automation/Text.h"
#include "platform/operations/Types.h"
#include "platform/simulated/estate/Sid.h"

namespace veldmark::simulated {

// Lays records out in a row, with their texts and bytes behind them: first to count, with null for
// the place, and then to write.
class RecordBlock {
 public:
  RecordBlock(std::uint8_t* bytes, std::size_t records_size) : bytes_(bytes), size_(records_size) {}

  std::size_t size() const { return size_; }

  void* Put(const void* content, std::size_t size) {
    size_ = (size_ + alignof(void*) - 1) / alignof(void*) * alignof(void*);
    void* const place = bytes_ == nullptr ? nullptr : bytes_ + size_;
    if (bytes_ != nullptr && size > 0) std::memcpy(place, content, size);
    size_ += size;
    return place;
  }

  LPWSTR Put(TextView text) {
    const Text terminated(text);
    return static_cast<LPWSTR>(Put(terminated.c_str(), (text.size() + 1) * sizeof(WCHAR)));
  }

  void* Put(const Sid& sid) { return Put(sid.bytes().data(), sid.bytes().size()); }

 private:
  std::uint8_t* bytes_;
  std::size_t size_;
};

// Lays the items out as records, each filled by `fill(record, item, block)`. Returns the bytes
// taken; null for the place only counts them.
template <typename Record, typename Item, typename Fill>
std::size_t LayOut(std::span<const Item> items, const Fill& fill, std::uint8_t* bytes) {
  RecordBlock block(bytes, items.size() * sizeof(Record));
  for (std::size_t index = 0; index < items.size(); ++index) {
    Record record{};
    fill(record, items[index], block);
    if (bytes != nullptr) std::memcpy(bytes + index * sizeof record, &record, sizeof record);
  }
  return block.size();
}

// How many of the items, from the first on, fit into so many bytes as records.
template <typename Record, typename Item, typename Fill>
std::size_t CountFitting(std::span<const Item> items, const Fill& fill, std::size_t bytes) {
  RecordBlock texts(nullptr, 0);
  for (std::size_t index = 0; index < items.size(); ++index) {
    Record record{};
    fill(record, items[index], texts);
    if (texts.size() + (index + 1) * sizeof(Record) > bytes) return index;
  }
  return items.size();
}

}  // namespace veldmark::simulated
