#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <span>
#include <utility>
#include <vector>

#include "automation/Text.h"
#include "platform/operations/EventLog.h"
#include "platform/simulated/estate/Calendar.h"
#include "platform/simulated/estate/Sid.h"

namespace veldmark::simulated {

// What a program reports. Times are seconds since 1970.
struct Event {
  Text source;
  DWORD id = 0;
  WORD type = 4;  // information
  WORD category = 0;
  DWORD generated = 0;
  DWORD written = 0;
  Text computer{};
  Sid user{};  // empty: nobody is named
  std::vector<Text> strings{};
  std::vector<std::uint8_t> data{};
};

// A record's bytes as the platform has them.
using RawRecord = std::vector<std::uint8_t>;

RawRecord LayOut(const Event& event, DWORD number);

// An event log: records that are numbered one after the other.
class RecordedLog {
 public:
  explicit RecordedLog(Text name) : name_(std::move(name)) {}
  // A log of what a file held; it is numbered as its first record is.
  explicit RecordedLog(std::vector<RawRecord> records);

  const Text& name() const { return name_; }

  // The number of the next record in a log that is empty still.
  void StartAt(DWORD number) { oldest_ = number; }
  void Add(const Event& event) { AddRaw(LayOut(event, next())); }
  // Bytes that may be no record.
  void AddRaw(RawRecord record) { records_.push_back(std::move(record)); }

  // An event to come, by the moment that it is written at and its turn among those scheduled.
  using Scheduled = std::pair<Ticks, std::uint64_t>;
  Scheduled Schedule(Ticks when, Event event);
  // Takes back what isn't written yet.
  void Cancel(const Scheduled& scheduled) { scheduled_.erase(scheduled); }
  // Writes what was scheduled for a moment up to this one.
  void WriteDue(Ticks now);

  // Empties the log, which begins with 1 again. Who has it open can't read on.
  void Clear();

  bool is_empty() const { return records_.empty(); }
  // Neither are there records nor any to come.
  bool is_new() const { return is_empty() && scheduled_.empty(); }
  DWORD count() const { return static_cast<DWORD>(records_.size()); }
  // Of the first record.
  DWORD oldest() const { return oldest_; }
  // Of the one behind the last.
  DWORD next() const { return oldest_ + count(); }
  bool Has(DWORD number) const { return number >= oldest_ && number < next(); }
  const RawRecord& record(DWORD number) const { return records_[number - oldest_]; }
  const std::deque<RawRecord>& records() const { return records_; }
  // How often the log was cleared.
  std::uint32_t clearings() const { return clearings_; }

  // The code that opening it fails with; 0: none.
  DWORD unreadable() const { return unreadable_; }
  void SetUnreadable(DWORD code) { unreadable_ = code; }

  // What happens to the log before each read: others write to it, or clear it. It may do nothing
  // but change the log.
  std::function<void(RecordedLog&)> before_read;

 private:
  Text name_;
  DWORD oldest_ = 1;
  std::deque<RawRecord> records_;
  std::map<Scheduled, Event> scheduled_;
  std::uint64_t last_turn_ = 0;
  std::uint32_t clearings_ = 0;
  DWORD unreadable_ = 0;
};

}  // namespace veldmark::simulated
