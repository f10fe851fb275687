#include "platform/windows/WindowsEventLog.h"

#include "platform/operations/ErrorCodes.h"
#include "platform/windows/Recorded.h"
#include "platform/windows/Sdk.h"
#include "platform/windows/WineDifferences.h"

namespace veldmark {
namespace {

/// The server to pass on. Wine refuses every name (1722), that of this computer too. False where it
/// is right in that.
bool PublishedServer(LPCWSTR& server) {
  if (server == nullptr || !RunsUnderWine()) return true;
  if (IsOtherServer(server)) return false;
  server = nullptr;
  return true;
}

HANDLE ServerUnavailable() {
  SetLastPlatformError(kErrorRpcServerUnavailable);
  return nullptr;
}

}  // namespace

HANDLE WindowsEventLog::OpenEventLogW(LPCWSTR server_name, LPCWSTR source_name) {
  if (!PublishedServer(server_name)) return ServerUnavailable();
  return Recorded([&] { return ::OpenEventLogW(Sdk(server_name), Sdk(source_name)); });
}

HANDLE WindowsEventLog::OpenBackupEventLogW(LPCWSTR server_name, LPCWSTR file_name) {
  if (!PublishedServer(server_name)) return ServerUnavailable();
  return Recorded([&] { return ::OpenBackupEventLogW(Sdk(server_name), Sdk(file_name)); });
}

BOOL WindowsEventLog::CloseEventLog(HANDLE event_log) {
  return Recorded([&] { return ::CloseEventLog(event_log); });
}

BOOL WindowsEventLog::ReadEventLogW(HANDLE event_log, DWORD flags, DWORD record_offset,
                                    void* buffer, DWORD bytes_to_read, DWORD* bytes_read,
                                    DWORD* bytes_needed) {
  return Recorded([&] {
    return ::ReadEventLogW(event_log, flags, record_offset, buffer, bytes_to_read, Sdk(bytes_read),
                           Sdk(bytes_needed));
  });
}

BOOL WindowsEventLog::GetNumberOfEventLogRecords(HANDLE event_log, DWORD* number_of_records) {
  return Recorded([&] { return ::GetNumberOfEventLogRecords(event_log, Sdk(number_of_records)); });
}

BOOL WindowsEventLog::GetOldestEventLogRecord(HANDLE event_log, DWORD* oldest_record) {
  return Recorded([&] { return ::GetOldestEventLogRecord(event_log, Sdk(oldest_record)); });
}

BOOL WindowsEventLog::BackupEventLogW(HANDLE event_log, LPCWSTR backup_file_name) {
  return Recorded([&] { return ::BackupEventLogW(event_log, Sdk(backup_file_name)); });
}

}  // namespace veldmark
