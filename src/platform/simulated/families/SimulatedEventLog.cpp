#include "platform/simulated/families/SimulatedEventLog.h"

#include <cstring>

#include "platform/operations/ErrorCodes.h"
#include "platform/simulated/estate/FileAccess.h"
#include "platform/simulated/estate/LogFile.h"
#include "platform/simulated/estate/Path.h"

namespace veldmark::simulated {
namespace {

constexpr std::uint64_t kLargestLogFile = std::uint64_t{1} << 30;

HANDLE FailHandle(DWORD code) {
  Fail(code);
  return nullptr;
}

bool HasOneOf(DWORD flags, DWORD one, DWORD other) {
  return ((flags & one) != 0) != ((flags & other) != 0);
}

// A path of a computer as the local one names it.
Text PathOn(const Computer& computer, const Computer& local, TextView path) {
  if (&computer == &local) return Text(path);
  const Text server = u"\\\\" + computer.name() + u"\\";
  if (path.size() > 1 && path[1] == u':') return server + path[0] + u'$' + Text(path.substr(2));
  return server + u"C$\\" + Text(path);
}

}  // namespace

HANDLE SimulatedEventLog::OpenEventLogW(LPCWSTR server_name, LPCWSTR source_name) {
  constexpr std::string_view kName = "OpenEventLogW";
  const Call call = session_.Begin(kName, ViewOf(source_name));
  if (const DWORD fault = call.fault()) return FailHandle(fault);
  if (source_name == nullptr) return FailHandle(kErrorInvalidParameter);
  Computer* const computer = session_.estate.ReachServer(server_name);
  if (computer == nullptr) return FailHandle(kErrorRpcServerUnavailable);
  std::shared_ptr<RecordedLog> log = computer->FindEventLog(source_name);
  if (log == nullptr) log = computer->FindEventLog(kUsualEventLog);
  if (const DWORD code = log->unreadable()) return FailHandle(code);
  return HandOut(std::move(log), *computer, kName, source_name);
}

HANDLE SimulatedEventLog::OpenBackupEventLogW(LPCWSTR server_name, LPCWSTR file_name) {
  constexpr std::string_view kName = "OpenBackupEventLogW";
  const Call call = session_.Begin(kName, ViewOf(file_name));
  if (const DWORD fault = call.fault()) return FailHandle(fault);
  if (file_name == nullptr) return FailHandle(kErrorInvalidParameter);
  const Computer* const computer = session_.estate.ReachServer(server_name);
  if (computer == nullptr) return FailHandle(kErrorRpcServerUnavailable);
  std::shared_ptr<RecordedLog> log;
  const Text path = PathOn(*computer, session_.estate.local(), file_name);
  if (const DWORD error = LoadFile(path, log)) return FailHandle(error);
  return HandOut(std::move(log), *computer, kName, file_name);
}

DWORD SimulatedEventLog::LoadFile(const Text& path, std::shared_ptr<RecordedLog>& log) {
  const Place place = Find(Path::Parse(path, session_.estate), session_.estate);
  if (place.node == nullptr) return place.error;
  const FileNode& file = *place.node;
  if (file.is_folder() || file.is_delete_pending() || file.read_denied()) return kErrorAccessDenied;
  if (const DWORD error = CheckFileAccess(session_.estate.token(), place, kFileReadData).error) {
    return error;
  }
  if (!file.CanOpen({.reads = true, .lets_read = true})) return kErrorSharingViolation;
  if (file.size() > kLargestLogFile) return kErrorEventlogFileCorrupt;
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(file.size()));
  file.Read(0, bytes.data(), bytes.size());
  auto records = ReadLogFile(bytes);
  if (!records) return kErrorEventlogFileCorrupt;
  log = std::make_shared<RecordedLog>(std::move(*records));
  return kErrorSuccess;
}

HANDLE SimulatedEventLog::HandOut(std::shared_ptr<RecordedLog> log, const Computer& computer,
                                  std::string_view operation, TextView name) {
  const std::uintptr_t value = session_.NewHandle();
  const std::uint32_t clearings = log->clearings();
  logs_[value] = {.log = std::move(log), .computer = &computer, .clearings = clearings};
  session_.ledger.Opened(Resource::EventLog, value, operation, ToUtf8(name));
  return HandleOf(value);
}

SimulatedEventLog::OpenLog* SimulatedEventLog::Lookup(HANDLE event_log,
                                                      std::string_view operation) {
  const auto found = logs_.find(ValueOf(event_log));
  if (found != logs_.end()) {
    found->second.log->WriteDue(session_.estate.now());
    return &found->second;
  }
  session_.ledger.Misused(Resource::EventLog, ValueOf(event_log), operation);
  return nullptr;
}

BOOL SimulatedEventLog::CloseEventLog(HANDLE event_log) {
  const Call call = session_.Begin("CloseEventLog");
  const DWORD fault = call.fault();
  if (!session_.ledger.Closed(Resource::EventLog, ValueOf(event_log), "CloseEventLog")) {
    return Fail(kErrorInvalidHandle);
  }
  logs_.erase(ValueOf(event_log));
  return fault == 0 ? 1 : Fail(fault);
}

BOOL SimulatedEventLog::ReadEventLogW(HANDLE event_log, DWORD flags, DWORD record_offset,
                                      void* buffer, DWORD bytes_to_read, DWORD* bytes_read,
                                      DWORD* bytes_needed) {
  const Call call = session_.Begin("ReadEventLogW");
  if (const DWORD fault = call.fault()) return Fail(fault);
  if (buffer == nullptr || bytes_read == nullptr || bytes_needed == nullptr ||
      !HasOneOf(flags, kEventlogSequentialRead, kEventlogSeekRead) ||
      !HasOneOf(flags, kEventlogForwardsRead, kEventlogBackwardsRead)) {
    return Fail(kErrorInvalidParameter);
  }
  *bytes_read = 0;
  *bytes_needed = 0;
  OpenLog* const open = Lookup(event_log, "ReadEventLogW");
  if (open == nullptr) return Fail(kErrorInvalidHandle);
  RecordedLog& log = *open->log;
  if (log.before_read) log.before_read(log);
  if (open->clearings != log.clearings()) return Fail(kErrorEventlogFileChanged);
  const bool forwards = (flags & kEventlogForwardsRead) != 0;
  if (!open->position) open->position = forwards ? log.oldest() : log.next();
  if ((flags & kEventlogSeekRead) != 0) {
    if (log.is_empty()) return Fail(kErrorHandleEof);
    if (!log.Has(record_offset)) return Fail(kErrorInvalidParameter);
    open->position = forwards ? record_offset : record_offset + 1;
  }
  auto* target = static_cast<std::uint8_t*>(buffer);
  for (DWORD& position = *open->position;; position += forwards ? 1 : -1) {
    const DWORD number = forwards ? position : position - 1;
    if (!log.Has(number)) break;
    const RawRecord& record = log.record(number);
    if (record.size() > bytes_to_read - *bytes_read) {
      if (*bytes_read > 0) break;
      *bytes_needed = static_cast<DWORD>(record.size());
      return Fail(kErrorInsufficientBuffer);
    }
    std::memcpy(target + *bytes_read, record.data(), record.size());
    *bytes_read += static_cast<DWORD>(record.size());
  }
  return *bytes_read > 0 ? 1 : Fail(kErrorHandleEof);
}

BOOL SimulatedEventLog::Tell(HANDLE event_log, std::string_view operation, DWORD* number,
                             DWORD (*read)(const RecordedLog&)) {
  const Call call = session_.Begin(operation);
  if (const DWORD fault = call.fault()) return Fail(fault);
  if (number == nullptr) return Fail(kErrorInvalidParameter);
  const OpenLog* const open = Lookup(event_log, operation);
  if (open == nullptr) return Fail(kErrorInvalidHandle);
  *number = read(*open->log);
  return 1;
}

BOOL SimulatedEventLog::GetNumberOfEventLogRecords(HANDLE event_log, DWORD* number_of_records) {
  return Tell(event_log, "GetNumberOfEventLogRecords", number_of_records,
              [](const RecordedLog& log) { return log.count(); });
}

BOOL SimulatedEventLog::GetOldestEventLogRecord(HANDLE event_log, DWORD* oldest_record) {
  return Tell(event_log, "GetOldestEventLogRecord", oldest_record,
              [](const RecordedLog& log) { return log.is_empty() ? 0 : log.oldest(); });
}

BOOL SimulatedEventLog::BackupEventLogW(HANDLE event_log, LPCWSTR backup_file_name) {
  const Call call = session_.Begin("BackupEventLogW", ViewOf(backup_file_name));
  if (const DWORD fault = call.fault()) return Fail(fault);
  if (backup_file_name == nullptr) return Fail(kErrorInvalidParameter);
  const OpenLog* const open = Lookup(event_log, "BackupEventLogW");
  if (open == nullptr) return Fail(kErrorInvalidHandle);
  Estate& estate = session_.estate;
  if (!estate.token().privileges().contains(Privilege::Backup)) {
    return Fail(kErrorPrivilegeNotHeld);
  }
  const Text path = PathOn(*open->computer, estate.local(), backup_file_name);
  const Place place = Find(Path::Parse(path, estate), estate);
  if (place.node != nullptr) return Fail(kErrorAlreadyExists);
  if (place.error != kErrorFileNotFound) return Fail(place.error);
  if (place.folder->write_denied()) return Fail(kErrorAccessDenied);
  if (const DWORD error = CheckFolderAccess(estate.token(), place, kFileAddFile).error) {
    return Fail(error);
  }
  const auto file = place.folder->AddChild(place.name, false, estate.now());
  file->Own(estate.token());
  const std::vector<std::uint8_t> bytes = WriteLogFile(*open->log);
  file->Write(0, bytes.data(), bytes.size(), estate.now());
  return 1;
}

}  // namespace veldmark::simulated
