#pragma once

#include "platform/operations/EventLog.h"

namespace veldmark {

/// Event logs: live ones of any computer, and backup files.
class WindowsEventLog final : public EventLog {
 public:
  HANDLE OpenEventLogW(LPCWSTR server_name, LPCWSTR source_name) override;
  HANDLE OpenBackupEventLogW(LPCWSTR server_name, LPCWSTR file_name) override;
  BOOL CloseEventLog(HANDLE event_log) override;
  BOOL ReadEventLogW(HANDLE event_log, DWORD flags, DWORD record_offset, void* buffer,
                     DWORD bytes_to_read, DWORD* bytes_read, DWORD* bytes_needed) override;
  BOOL GetNumberOfEventLogRecords(HANDLE event_log, DWORD* number_of_records) override;
  BOOL GetOldestEventLogRecord(HANDLE event_log, DWORD* oldest_record) override;
  BOOL BackupEventLogW(HANDLE event_log, LPCWSTR backup_file_name) override;
};

}  // namespace veldmark
