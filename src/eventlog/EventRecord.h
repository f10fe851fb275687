#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <utility>

#include "automation/Text.h"
#include "automation/Values.h"
#include "eventlog/EventFields.h"
#include "platform/operations/EventLog.h"

namespace veldmark {

/// The times of records as local dates. The platform converts each time by the bias in force now,
/// so what it makes of one tells all others.
class LocalTimes {
 public:
  /// Of seconds since 1970, of which there may be less than none.
  Date Of(std::int32_t seconds);

 private:
  std::optional<std::int64_t> bias_;  // seconds to add
};

/// The size of a buffer for a record of which the platform says that it needs this much: a multiple
/// of four. Raises 1500 where no record can need it.
DWORD RoundedRecordSize(DWORD needed);

/// Where records are read.
struct RecordOrigin {
  RecordOrigin(Text log_name, Text account_server)
      : shared(Make<EventOrigin>(std::move(log_name), std::move(account_server))) {}

  Ref<EventOrigin> shared;
  LocalTimes times{};
};

/// A raw record of an event log at the beginning of some bytes, in which others may follow. Nothing
/// of what it says of itself is trusted: all that leaves the record, or the record the bytes,
/// raises 1500.
class EventRecord {
 public:
  explicit EventRecord(std::span<const std::uint8_t> bytes);

  /// In bytes; at least those of the fixed part.
  std::size_t length() const { return bytes_.size(); }
  std::int32_t number() const { return static_cast<std::int32_t>(head_.RecordNumber); }
  EventFields Fields(RecordOrigin& origin) const;

 private:
  std::span<const std::uint8_t> Part(std::size_t offset, std::size_t length) const;
  /// The text that ends in a NUL; moves the offset behind that.
  Text TextAt(std::size_t& offset) const;

  EVENTLOGRECORD head_;
  std::span<const std::uint8_t> bytes_;  // the record's alone
};

}  // namespace veldmark
