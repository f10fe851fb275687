#pragma once

#include <concepts>
#include <cstring>
#include <span>
#include <string_view>

#include "automation/Text.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/NetworkManagement.h"
#include "platform/simulated/families/Session.h"

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

// Hands out a block of the network functions with these records; null for none of them.
template <typename Record, typename Item, typename Fill>
BYTE* HandOut(Session& session, std::string_view operation, std::string detail,
              std::span<const Item> items, const Fill& fill) {
  if (items.empty()) return nullptr;
  const std::size_t size = LayOut<Record>(items, fill, nullptr);
  auto* const bytes =
      static_cast<BYTE*>(session.AllocateNetwork(size, operation, std::move(detail)));
  LayOut<Record>(items, fill, bytes);
  return bytes;
}

// Where an enumeration puts its answer.
template <std::unsigned_integral Handle>
struct Reply {
  BYTE** buffer;
  DWORD preferred_length;
  DWORD* entries_read;
  DWORD* total_entries;
  Handle* resume_handle;  // null: from the first on
};
template <typename Handle>
Reply(BYTE**, DWORD, DWORD*, DWORD*, Handle*) -> Reply<Handle>;

template <typename Handle>
bool IsSound(const Reply<Handle>& reply) {
  return reply.buffer != nullptr && reply.entries_read != nullptr && reply.total_entries != nullptr;
}

template <typename Handle>
void Clear(const Reply<Handle>& reply) {
  *reply.buffer = nullptr;
  *reply.entries_read = *reply.total_entries = 0;
}

// Answers an enumeration with what comes next of all its items: at most `page` of them (0: no
// limit), and as many as the preferred length takes, but one at least.
template <typename Record, typename Item, typename Fill, typename Handle>
DWORD Answer(Session& session, std::string_view operation, std::string detail,
             std::span<const Item> all, std::size_t page, const Reply<Handle>& reply,
             const Fill& fill) {
  const std::size_t asked = reply.resume_handle == nullptr ? 0 : *reply.resume_handle;
  const std::size_t first = std::min(asked, all.size());
  const std::span<const Item> rest = all.subspan(first);
  std::size_t count = rest.size();
  if (reply.preferred_length != kMaxPreferredLength) {
    count = std::max<std::size_t>(CountFitting<Record>(rest, fill, reply.preferred_length),
                                  std::min<std::size_t>(count, 1));
  }
  if (page != 0) count = std::min(count, page);
  *reply.buffer = HandOut<Record>(session, operation, std::move(detail), rest.first(count), fill);
  *reply.entries_read = static_cast<DWORD>(count);
  *reply.total_entries = static_cast<DWORD>(rest.size());
  const bool is_all = count == rest.size();
  if (reply.resume_handle != nullptr) {
    *reply.resume_handle = is_all ? 0 : static_cast<Handle>(first + count);
  }
  return is_all ? kErrorSuccess : kErrorMoreData;
}

// What the journal notes of a call that names a server: the name as it was given ("-" for null),
// and what else was asked for.
template <typename... Rest>
Text Noted(LPCWSTR server_name, const Rest&... rest) {
  Text noted = server_name == nullptr ? Text(u"-") : Text(server_name);
  [[maybe_unused]] const auto add = [&](const auto& part) {
    noted += u' ';
    if constexpr (std::is_integral_v<std::decay_t<decltype(part)>>) {
      noted += ToText(static_cast<std::int64_t>(part));
    } else {
      noted += TextView(part);
    }
  };
  (add(rest), ...);
  return noted;
}

}  // namespace veldmark::simulated
