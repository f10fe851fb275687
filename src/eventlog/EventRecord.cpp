#include "eventlog/EventRecord.h"

#include <cmath>
#include <cstring>
#include <utility>
#include <vector>

#include "apartment/Conversions.h"
#include "automation/CivilTime.h"
#include "platform/operations/ErrorCodes.h"

namespace veldmark {
namespace {

constexpr Date kUnixEpoch{25569};
constexpr double kSecondsPerDay = 86400;

[[noreturn]] void RaiseCorrupt() { RaisePlatformError(kErrorEventlogFileCorrupt); }

}  // namespace

Date LocalTimes::Of(std::int32_t seconds) {
  if (!bias_) {
    const Date utc = AddSeconds(kUnixEpoch, seconds);
    const Date local = UTCDateToLocalDate(utc);
    constexpr double kLargestBias = 1.5;  // days; anything larger is a failure
    const double difference = local.days - utc.days;
    if (std::abs(difference) > kLargestBias) return local;
    bias_ = std::llround(difference * kSecondsPerDay);
  }
  return AddSeconds(kUnixEpoch, seconds + *bias_);
}

DWORD RoundedRecordSize(DWORD needed) {
  constexpr DWORD kLargest = 0x7FFFFFFC;
  if (needed > kLargest) RaiseCorrupt();
  return (needed + 3) / 4 * 4;
}

EventRecord::EventRecord(std::span<const std::uint8_t> bytes) {
  if (bytes.size() < sizeof head_) RaiseCorrupt();
  std::memcpy(&head_, bytes.data(), sizeof head_);
  if (head_.Length < sizeof head_ || head_.Length > bytes.size()) RaiseCorrupt();
  bytes_ = bytes.first(head_.Length);
}

EventFields EventRecord::Fields(RecordOrigin& origin) const {
  EventFields fields;
  fields.record_number = number();
  fields.time_generated = origin.times.Of(static_cast<std::int32_t>(head_.TimeGenerated));
  fields.time_written = head_.TimeWritten == head_.TimeGenerated
                            ? fields.time_generated
                            : origin.times.Of(static_cast<std::int32_t>(head_.TimeWritten));
  fields.event_id = static_cast<std::int32_t>(head_.EventID);
  fields.event_type = static_cast<std::int16_t>(head_.EventType);
  fields.category = static_cast<std::int16_t>(head_.EventCategory);
  fields.origin = origin.shared;
  std::size_t offset = sizeof head_;
  fields.source_name = TextAt(offset);
  fields.computer_name = TextAt(offset);
  if (head_.UserSidLength != 0) {
    const auto bytes = Part(head_.UserSidOffset, head_.UserSidLength);
    fields.has_sid = true;
    fields.sid.resize(bytes.size() / sizeof fields.sid[0]);
    if (!fields.sid.empty()) {
      std::memcpy(fields.sid.data(), bytes.data(), AsBytes(fields.sid).size());
    }
  }
  if (const auto count = static_cast<std::int16_t>(head_.NumStrings); count > 0) {
    offset = head_.StringOffset;
    fields.strings.reserve(static_cast<std::size_t>(count));
    for (std::int16_t i = 0; i < count; ++i) fields.strings.push_back(TextAt(offset));
  }
  if (head_.DataLength != 0) {
    const auto bytes = Part(head_.DataOffset, head_.DataLength);
    fields.data.assign(bytes.begin(), bytes.end());
  }
  return fields;
}

std::span<const std::uint8_t> EventRecord::Part(std::size_t offset, std::size_t length) const {
  if (offset > bytes_.size() || length > bytes_.size() - offset) RaiseCorrupt();
  return bytes_.subspan(offset, length);
}

Text EventRecord::TextAt(std::size_t& offset) const {
  if (offset > bytes_.size()) RaiseCorrupt();
  std::optional<Text> text = TextToNul(bytes_.subspan(offset));
  if (!text) RaiseCorrupt();
  offset += (text->size() + 1) * sizeof(char16_t);
  return *std::move(text);
}

}  // namespace veldmark
