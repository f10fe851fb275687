#pragma once

#include <map>
#include <memory>
#include <optional>

#include "platform/operations/EventLog.h"
#include "platform/simulated/estate/RecordedLog.h"
#include "platform/simulated/families/Session.h"

namespace veldmark::simulated {

// The event logs of an estate's computers, and files of records on their drives.
class SimulatedEventLog : public EventLog {
 public:
  explicit SimulatedEventLog(Session& session) : session_(session) {}

  HANDLE OpenEventLogW(LPCWSTR server_name, LPCWSTR source_name) override;
  HANDLE OpenBackupEventLogW(LPCWSTR server_name, LPCWSTR file_name) override;
  BOOL CloseEventLog(HANDLE event_log) override;
  BOOL ReadEventLogW(HANDLE event_log, DWORD flags, DWORD record_offset, void* buffer,
                     DWORD bytes_to_read, DWORD* bytes_read, DWORD* bytes_needed) override;
  BOOL GetNumberOfEventLogRecords(HANDLE event_log, DWORD* number_of_records) override;
  BOOL GetOldestEventLogRecord(HANDLE event_log, DWORD* oldest_record) override;
  BOOL BackupEventLogW(HANDLE event_log, LPCWSTR backup_file_name) override;

 private:
  struct OpenLog {
    std::shared_ptr<RecordedLog> log;
    const Computer* computer;
    std::uint32_t clearings;             // of the log when it was opened
    std::optional<DWORD> position = {};  // the number that reading forwards goes on with
  };

  HANDLE HandOut(std::shared_ptr<RecordedLog> log, const Computer& computer,
                 std::string_view operation, TextView name);
  // The log with all that is written by now; null for a handle that is none.
  OpenLog* Lookup(HANDLE event_log, std::string_view operation);
  DWORD LoadFile(const Text& path, std::shared_ptr<RecordedLog>& log);
  // Tells the log's counts by one of the two operations that do.
  BOOL Tell(HANDLE event_log, std::string_view operation, DWORD* number,
            DWORD (*read)(const RecordedLog&));

  Session& session_;
  std::map<std::uintptr_t, OpenLog> logs_;
};

}  // namespace veldmark::simulated
