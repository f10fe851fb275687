#include "platform/simulated/estate/RecordedLog.h"

#include <cstring>
#include <iterator>

namespace veldmark::simulated {
namespace {

template <typename Value>
void Append(RawRecord& record, const Value* values, std::size_t count) {
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(values);
  record.insert(record.end(), bytes, bytes + count * sizeof(Value));
}

void AppendText(RawRecord& record, const Text& text) {
  Append(record, text.c_str(), text.size() + 1);
}

DWORD SizeOf(const RawRecord& record) { return static_cast<DWORD>(record.size()); }

void Align(RawRecord& record) { record.resize((record.size() + 3) / 4 * 4); }

}  // namespace

RawRecord LayOut(const Event& event, DWORD number) {
  RawRecord record(sizeof(EVENTLOGRECORD));
  EVENTLOGRECORD head{};
  head.Reserved = kEventRecordSignature;
  head.RecordNumber = number;
  head.TimeGenerated = event.generated;
  head.TimeWritten = event.written;
  head.EventID = event.id;
  head.EventType = event.type;
  head.NumStrings = static_cast<WORD>(event.strings.size());
  head.EventCategory = event.category;
  AppendText(record, event.source);
  AppendText(record, event.computer);
  Align(record);
  head.UserSidLength = static_cast<DWORD>(event.user.bytes().size());
  head.UserSidOffset = SizeOf(record);
  Append(record, event.user.bytes().data(), event.user.bytes().size());
  head.StringOffset = SizeOf(record);
  for (const Text& text : event.strings) AppendText(record, text);
  head.DataLength = static_cast<DWORD>(event.data.size());
  head.DataOffset = SizeOf(record);
  Append(record, event.data.data(), event.data.size());
  Align(record);
  head.Length = SizeOf(record) + static_cast<DWORD>(sizeof head.Length);
  Append(record, &head.Length, 1);
  std::memcpy(record.data(), &head, sizeof head);
  return record;
}

RecordedLog::RecordedLog(std::vector<RawRecord> records)
    : records_(std::make_move_iterator(records.begin()), std::make_move_iterator(records.end())) {
  if (!records_.empty()) {
    std::memcpy(&oldest_, records_.front().data() + offsetof(EVENTLOGRECORD, RecordNumber),
                sizeof oldest_);
  }
}

RecordedLog::Scheduled RecordedLog::Schedule(Ticks when, Event event) {
  const Scheduled scheduled{when, ++last_turn_};
  scheduled_.emplace(scheduled, std::move(event));
  return scheduled;
}

void RecordedLog::WriteDue(Ticks now) {
  while (!scheduled_.empty() && scheduled_.begin()->first.first <= now) {
    Add(scheduled_.begin()->second);
    scheduled_.erase(scheduled_.begin());
  }
}

void RecordedLog::Clear() {
  records_.clear();
  oldest_ = 1;
  ++clearings_;
}

}  // namespace veldmark::simulated
