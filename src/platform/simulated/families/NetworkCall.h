#pragma once

#include <algorithm>
#include <concepts>
#include <span>
#include <string_view>

#include "automation/Text.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/NetworkManagement.h"
#include "platform/simulated/families/RecordBlock.h"
#include "platform/simulated/families/Session.h"

namespace veldmark::simulated {

// A call of a network function, which asks a computer.
class [[nodiscard]] NetworkCall {
 public:
  // `noted` stands in the journal, and in the ledger beside what the call hands out.
  NetworkCall(Session& session, std::string_view operation, Text noted, LPCWSTR server_name,
              bool is_sound, bool has_level = true);

  // 0, or what the call ends with: a fault, kErrorInvalidParameter unless it is sound,
  // kErrorInvalidLevel unless it has the level, kErrorBadNetPath for a computer out of reach.
  DWORD error() const { return error_; }
  // The computer, and the accounts that it administers, unless there is an error.
  Computer& computer() const { return *computer_; }
  AccountDatabase& accounts() const { return session_.estate.AccountsOf(*computer_); }

  // A block that the call hands out.
  BYTE* Allocate(std::size_t size) const;

 private:
  Call call_;
  Session& session_;
  std::string_view operation_;
  Text noted_;
  Computer* computer_ = nullptr;
  DWORD error_;
};

// Hands out a block with these items as records; null for none of them.
template <typename Record, typename Items, typename Fill>
BYTE* HandOut(const NetworkCall& call, const Items& items, const Fill& fill) {
  const std::span all(items);
  if (all.empty()) return nullptr;
  BYTE* const bytes = call.Allocate(LayOut<Record>(all, fill, nullptr));
  LayOut<Record>(all, fill, bytes);
  return bytes;
}

template <typename Record, typename Item, typename Fill>
BYTE* HandOutOne(const NetworkCall& call, const Item& item, const Fill& fill) {
  return HandOut<Record>(call, std::span(&item, 1), fill);
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

// Makes an answer that is given nowhere yet an empty one. False where there is no place for it.
inline bool Clear(BYTE** buffer) {
  if (buffer != nullptr) *buffer = nullptr;
  return buffer != nullptr;
}
template <typename Handle>
bool Clear(const Reply<Handle>& reply) {
  if (reply.entries_read == nullptr || reply.total_entries == nullptr || !Clear(reply.buffer)) {
    return false;
  }
  *reply.entries_read = *reply.total_entries = 0;
  return true;
}

// Answers an enumeration with what comes next of all its items: at most `page` of them (0: no
// limit), and as many as the preferred length takes, but one at least.
template <typename Record, typename Items, typename Fill, typename Handle>
DWORD Answer(const NetworkCall& call, const Items& items, std::size_t page,
             const Reply<Handle>& reply, const Fill& fill) {
  const std::span all(items);
  const std::size_t asked = reply.resume_handle == nullptr ? 0 : *reply.resume_handle;
  const std::size_t first = std::min(asked, all.size());
  const auto rest = all.subspan(first);
  std::size_t count = rest.size();
  if (reply.preferred_length != kMaxPreferredLength) {
    count = std::max<std::size_t>(CountFitting<Record>(rest, fill, reply.preferred_length),
                                  std::min<std::size_t>(count, 1));
  }
  if (page != 0) count = std::min(count, page);
  *reply.buffer = HandOut<Record>(call, rest.first(count), fill);
  *reply.entries_read = static_cast<DWORD>(count);
  *reply.total_entries = static_cast<DWORD>(rest.size());
  const bool is_all = count == rest.size();
  if (reply.resume_handle != nullptr) {
    *reply.resume_handle = is_all ? 0 : static_cast<Handle>(first + count);
  }
  return is_all ? kErrorSuccess : kErrorMoreData;
}

}  // namespace veldmark::simulated
