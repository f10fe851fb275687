#include <algorithm>
#include <utility>
#include <vector>

#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "collections/Deliver.h"
#include "eventlog/CEventLogEntries.h"
#include "eventlog/CEventLogEntry.h"
#include "eventlog/EventRecord.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"

namespace veldmark {
namespace {

constexpr DWORD kBufferSize = 524'280;
constexpr DWORD kGoOn = kEventlogSequentialRead | kEventlogForwardsRead;

/// The blocks of a log, one after the other.
class LogReader {
 public:
  LogReader(EventLog& logs, HANDLE log) : logs_(logs), log_(log) {}

  /// Reads the next block, as large as it has to be. False at the end of the log; empty where the
  /// platform failed without saying why.
  bool Read(DWORD flags, std::int64_t record) {
    block_ = {};
    buffer_.resize(std::max<std::size_t>(buffer_.size(), kBufferSize));
    DWORD needed = 0;
    bool done = Ask(flags, record, kBufferSize, needed);
    if (!done && LastPlatformError() == kErrorInsufficientBuffer) {
      const auto size = RoundedRecordSize(needed);
      buffer_.resize(std::max<std::size_t>(buffer_.size(), size));
      done = Ask(flags, record, size, needed);
    }
    if (done) return true;
    DWORD error = LastPlatformError();
    if (error == kErrorHandleEof) return false;
    if (error == kErrorInvalidParameter) {
      DWORD oldest = 0;
      if (!logs_.GetOldestEventLogRecord(log_, &oldest)) error = LastPlatformError();
    }
    if (error != kErrorSuccess) RaisePlatformError(static_cast<std::int32_t>(error));
    return true;
  }

  std::span<const std::uint8_t> block() const { return block_; }

 private:
  bool Ask(DWORD flags, std::int64_t record, DWORD size, DWORD& needed) {
    DWORD read = 0;
    if (!logs_.ReadEventLogW(log_, flags, static_cast<DWORD>(record), buffer_.data(), size, &read,
                             &needed)) {
      return false;
    }
    if (read > size) RaisePlatformError(kErrorEventlogFileCorrupt);
    block_ = std::span<const std::uint8_t>(buffer_).first(read);
    return true;
  }

  EventLog& logs_;
  HANDLE log_;
  std::vector<std::uint8_t> buffer_;
  std::span<const std::uint8_t> block_;
};

}  // namespace

Ref<CEventLogEntries> CSupport::LoadEventLogEntries(const Text& server_name, const Text& log_name,
                                                    const Text& backup_file_name,
                                                    std::int32_t start_record, bool async) {
  const Ref<CSupport> keep_alive(this);
  return ReRaising([&] {
    EventLog& logs = Apartment::Current().platform.event_logs;
    const auto entries = Make<CEventLogEntries>();
    EventLogHandle log(logs, backup_file_name.empty()
                                 ? logs.OpenEventLogW(server_name.c_str(), log_name.c_str())
                                 : logs.OpenBackupEventLogW(u"", backup_file_name.c_str()));
    if (!log) {
      RaisePlatformError(static_cast<std::int32_t>(LastPlatformError()), Err().Source());
    }
    DWORD count = 0;
    if (!logs.GetNumberOfEventLogRecords(log.Get(), &count)) return entries;

    std::int64_t next = 1;
    DWORD flags = kGoOn;
    if (start_record > 0) {
      DWORD oldest = 0;
      if (!logs.GetOldestEventLogRecord(log.Get(), &oldest)) oldest = 0;
      next = std::max<std::int64_t>(oldest, start_record);
      flags = kEventlogSeekRead | kEventlogForwardsRead;
    }
    RecordOrigin origin(log_name, server_name);
    LogReader reader(logs, log.Get());
    // A platform that brings neither records nor an error, and again nothing, has none.
    int idle = 0;
    bool cancelled = false;
    while (!cancelled && idle < 2 && (start_record != 0 || next <= count) &&
           reader.Read(flags, next)) {
      auto block = reader.block();
      idle = block.empty() ? idle + 1 : 0;
      while (!cancelled && !block.empty()) {
        const EventRecord record(block);
        if (record.number() >= start_record) {
          const auto entry = Make<CEventLogEntry>();
          entry->Fill(record.Fields(origin));
          cancelled = !Deliver(*this, entries, entry, async);
        }
        block = block.subspan(record.length());
        ++next;
        flags = kGoOn;
      }
    }
    log.Reset();
    SetLastPlatformError(kErrorSuccess);
    return entries;
  });
}

}  // namespace veldmark
