#pragma once

#include "platform/operations/Types.h"

namespace veldmark {

inline constexpr DWORD kEventlogSequentialRead = 0x1;
inline constexpr DWORD kEventlogSeekRead = 0x2;
inline constexpr DWORD kEventlogForwardsRead = 0x4;
inline constexpr DWORD kEventlogBackwardsRead = 0x8;

// What a record begins with. Behind it come the name of the source and that of the computer, each
// with a NUL, then what the offsets tell of, counted from the record's start, and at its end the
// length once more. A record's length is a multiple of four.
struct EVENTLOGRECORD {
  DWORD Length;
  DWORD Reserved;  // kEventRecordSignature
  DWORD RecordNumber;
  DWORD TimeGenerated;  // seconds since 1970-01-01 00:00:00 UTC
  DWORD TimeWritten;
  DWORD EventID;
  WORD EventType;
  WORD NumStrings;
  WORD EventCategory;
  WORD ReservedFlags;
  DWORD ClosingRecordNumber;
  DWORD StringOffset;
  DWORD UserSidLength;  // 0 where nobody is named
  DWORD UserSidOffset;
  DWORD DataLength;
  DWORD DataOffset;
};
static_assert(sizeof(EVENTLOGRECORD) == 56);

// "LfLe", which every record and every file of records has.
inline constexpr DWORD kEventRecordSignature = 0x654C664C;

// Event logs: live ones of any computer, and backup files. Operations return 0 on failure and leave
// the code as the last error.
class EventLog {
 public:
  virtual ~EventLog() = default;

  // Opens a log of a computer ("\\srv"; null or empty: this one) by its name, closed with
  // CloseEventLog. A name that no log has opens the log "Application". Returns null on failure.
  // Codes: 5 denied, 87 no name, 1722 the computer can't be reached.
  virtual HANDLE OpenEventLogW(LPCWSTR server_name, LPCWSTR source_name) = 0;

  // Opens a file of records that BackupEventLogW wrote, or that was copied from a computer. The
  // server must be null or empty for a path that names a share. Returns null on failure. Codes: 2,
  // 3, 5, 32 as for any file; 87 no name; 1500 the file holds no log.
  virtual HANDLE OpenBackupEventLogW(LPCWSTR server_name, LPCWSTR file_name) = 0;

  // Codes: 6 no open log.
  virtual BOOL CloseEventLog(HANDLE event_log) = 0;

  // Copies as many whole records as fit. `flags` is one of kEventlogSequentialRead and
  // kEventlogSeekRead with one of kEventlogForwardsRead and kEventlogBackwardsRead. A sequential
  // read goes on where the handle's last read ended, at first with the oldest record, or backwards
  // with the newest. A seek read begins with the record whose number is `record_offset`, and also
  // where that doesn't fit the next read goes on there. `*bytes_read` receives the bytes of the
  // records, 0 on failure, and `*bytes_needed` with code 122 those that the next record takes.
  // Codes: 38 no more records, 87 a number that no record has, or flags or pointers that make no
  // sense (the buffer may not be null, whatever its size), 122 too small, 1503 the log was cleared
  // since the handle was opened, 1500, 6.
  virtual BOOL ReadEventLogW(HANDLE event_log, DWORD flags, DWORD record_offset, void* buffer,
                             DWORD bytes_to_read, DWORD* bytes_read, DWORD* bytes_needed) = 0;

  // How many records the log has now. Codes: 6, 87 null.
  virtual BOOL GetNumberOfEventLogRecords(HANDLE event_log, DWORD* number_of_records) = 0;

  // The number of the log's oldest record, which needn't be 1; 0 for an empty log. Codes: 6, 87
  // null.
  virtual BOOL GetOldestEventLogRecord(HANDLE event_log, DWORD* oldest_record) = 0;

  // Writes the log's records to a new file on its computer. Codes: 3 and 5 as for any file, 6, 87
  // no name, 183 there is a file of this name, 1314 the caller lacks SeBackupPrivilege.
  virtual BOOL BackupEventLogW(HANDLE event_log, LPCWSTR backup_file_name) = 0;
};

}  // namespace veldmark
