#pragma once

#include <utility>

#include "apartment/CSupport.h"
#include "apartment/Counted.h"
#include "automation/Events.h"
#include "automation/Object.h"
#include "automation/Text.h"
#include "platform/operations/Handles.h"

namespace veldmark {

class CEventLogEntries;
class CEventLogEntry;

/// An event log of a computer. It is closed at first; members that need an open log open it, and it
/// stays open until `CloseLog` or the object's end. Walks over the whole log and `WriteToFile` open
/// the log for themselves. Members raise the platform's error.
class CEventLog : public Exported<CEventLog>, Counted<Counter::kEventLog>, ObjectFoundListener {
 public:
  static const Interface& Describe();
  CEventLog();
  /// The last log alive ends the message files' stay.
  ~CEventLog() override;
  EventSource* Events() override { return &events_; }

  /// Opens the log and returns the lower 32 bits of its handle. One that was open already is left
  /// to whoever was told its handle.
  std::int32_t OpenLog();
  /// True, also where the log wasn't open.
  bool CloseLog();
  /// Of now.
  std::int32_t GetNumberOfEntries();
  std::int32_t GetOldestRecordNumber();
  /// One record by its number; 0 stands for the one that the open log is read on with, at first the
  /// oldest. Raises 87 for a number that no record has and 1500 for a record whose lengths leave
  /// it.
  Ref<CEventLogEntry> GetEventLogEntry(std::int32_t record_number);
  /// All entries, or those from a record number on.
  Ref<CEventLogEntries> GetEventLogEntries();
  Ref<CEventLogEntries> GetEventLogEntries2(std::int32_t starting_record_number);
  /// The same by events. The list is empty.
  Ref<CEventLogEntries> GetEventLogEntriesImmediate();
  void GetEventLogEntriesImmediate2(std::int32_t starting_record_number);
  /// Writes a backup file, which gets another name than this one: the code of the path's first
  /// byte, as digits that the platform takes two for a character. It lands in the current folder.
  bool WriteToFile(const Text& path_name);

  /// As put by the library itself; clients only read it.
  const Text& LogName() const { return log_name_; }
  void SetLogName(Text log_name) { log_name_ = std::move(log_name); }
  /// The computer's name, without leading backslashes; empty for this one.
  void SetServerName(Text server_name) { server_name_ = std::move(server_name); }

 private:
  void OnObjectFound(Object& object, bool& cancel) override;
  Object& Listener() override { return *this; }

  void OpenOnce();
  Ref<CEventLogEntries> Load(std::int32_t start_record, bool immediate);
  /// A number that one of the operations tells of the open log.
  template <class Operation>
  std::int32_t Ask(Operation operation);

  Text server_name_;
  Text log_name_;
  EventLogHandle log_;
  EventSource events_;
};

}  // namespace veldmark
