#include "eventlog/CEventLog.h"

#include <array>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "apartment/AsyncFetching.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "automation/Declare.h"
#include "eventlog/CEventLogEntries.h"
#include "eventlog/CEventLogEntry.h"
#include "eventlog/EventRecord.h"
#include "eventlog/MessageModules.h"
#include "platform/operations/ErrorCodes.h"

namespace veldmark {
namespace {

constexpr TextView kClassName = u"CEventLog";
constexpr std::int32_t kEventLogEntryFound = 1;
constexpr DWORD kGoOn = kEventlogSequentialRead | kEventlogForwardsRead;

const EventInterface& DescribeLogEvents() {
  static const EventInterface table =
      DeclareEvents(u"__CEventLog", u"Entries that a walk finds, one by one.")
          .Event<Ref<CEventLogEntry>, bool&>(u"EventLogEntryFound",
                                             u"An entry; Cancel ends the walk.",
                                             {u"oEventLogEntry", u"Cancel"});
  return table;
}

EventLog& Logs() { return Apartment::Current().platform.event_logs; }

std::int32_t LastError() { return static_cast<std::int32_t>(LastPlatformError()); }

/// Listens to the engine while it lives.
class Subscription {
 public:
  explicit Subscription(ObjectFoundListener& listener) : engine_(&Engine()), listener_(listener) {
    engine_->Subscribe(listener_);
  }
  Subscription(const Subscription&) = delete;
  Subscription& operator=(const Subscription&) = delete;
  ~Subscription() { engine_->Unsubscribe(listener_); }

 private:
  Ref<CSupport> engine_;
  ObjectFoundListener& listener_;
};

}  // namespace

const Interface& CEventLog::Describe() {
  static const Interface table =
      Declare<CEventLog>(u"CEventLog", u"An event log of a computer.")
          .Method<&CEventLog::OpenLog>(u"OpenLog", u"Opens it; its handle.")
          .Remark(
              u"A log that is open is opened anew. The earlier handle is the caller's then, and "
              u"only he can close it.")
          .Method<&CEventLog::CloseLog>(u"CloseLog", u"Closes it.")
          .Method<&CEventLog::GetNumberOfEntries>(u"GetNumberOfEntries",
                                                  u"How many entries it has.")
          .Method<&CEventLog::GetEventLogEntry>(u"GetEventLogEntry", u"An entry by its number.",
                                                {u"RecordNumber"})
          .Remark(
              u"0 reads the entry at which the open log stands, and moves on. Raises 87 for a "
              u"number that no entry has.")
          .Method<&CEventLog::GetEventLogEntries>(u"GetEventLogEntries", u"All its entries.")
          .Method<&CEventLog::GetEventLogEntries2>(
              u"GetEventLogEntries2", u"Its entries from a number on.", {u"StartingRecordNumber"})
          .Method<&CEventLog::WriteToFile>(u"WriteToFile", u"Backs it up, by a name of its own.",
                                           {u"PathName"})
          .Remark(
              u"The file is not PathName: its name is made from the code of that path's first "
              u"character alone, and it lies in the current folder.")
          .Get<&CEventLog::LogName>(u"LogName", u"Its name, \"System\".")
          .Method<&CEventLog::GetEventLogEntriesImmediate>(
              u"GetEventLogEntriesImmediate", u"All its entries, by events; the list is empty.")
          .Method<&CEventLog::GetEventLogEntriesImmediate2>(
              u"GetEventLogEntriesImmediate2", u"Its entries from a number on, by events.",
              {u"StartingRecordNumber"})
          .Method<&CEventLog::GetOldestRecordNumber>(u"GetOldestRecordNumber",
                                                     u"The number of its oldest entry.")
          .Events(DescribeLogEvents());
  return table;
}

CEventLog::CEventLog() : log_(Logs()) {}

CEventLog::~CEventLog() { ReleaseMessageModulesOfLastLog(); }

std::int32_t CEventLog::OpenLog() {
  return ReRaisingAs(kClassName, [&] {
    const HANDLE log = Logs().OpenEventLogW(server_name_.c_str(), log_name_.c_str());
    if (log == nullptr) RaisePlatformError(LastError(), Err().Source());
    log_.Release();
    log_.Reset(log);
    return static_cast<std::int32_t>(reinterpret_cast<std::intptr_t>(log));
  });
}

bool CEventLog::CloseLog() {
  return ReRaisingAs(kClassName, [&] {
    if (!log_) return true;
    if (!Logs().CloseEventLog(log_.Get())) RaisePlatformError(LastError(), Err().Source());
    log_.Release();
    return true;
  });
}

void CEventLog::OpenOnce() {
  if (!log_) OpenLog();
}

template <class Operation>
std::int32_t CEventLog::Ask(Operation operation) {
  return ReRaisingAs(kClassName, [&] {
    OpenOnce();
    DWORD number = 0;
    if (!(Logs().*operation)(log_.Get(), &number)) RaisePlatformError(LastError(), Err().Source());
    return static_cast<std::int32_t>(number);
  });
}

std::int32_t CEventLog::GetNumberOfEntries() { return Ask(&EventLog::GetNumberOfEventLogRecords); }

std::int32_t CEventLog::GetOldestRecordNumber() { return Ask(&EventLog::GetOldestEventLogRecord); }

Ref<CEventLogEntry> CEventLog::GetEventLogEntry(std::int32_t record_number) {
  return ReRaisingAs(kClassName, [&]() -> Ref<CEventLogEntry> {
    OpenOnce();
    const DWORD flags = record_number == 0 ? kGoOn : kEventlogSeekRead | kEventlogForwardsRead;
    const auto record = static_cast<DWORD>(record_number == 0 ? 1 : record_number);
    std::vector<std::uint8_t> buffer(1);
    DWORD read = 0;
    DWORD needed = 0;
    // This one tells the size, and moves to the record where it has a number.
    if (Logs().ReadEventLogW(log_.Get(), flags, record, buffer.data(), 0, &read, &needed) ||
        LastPlatformError() == kErrorSuccess) {
      return nullptr;
    }
    if (LastPlatformError() != kErrorInsufficientBuffer) RaisePlatformError(LastError());
    const DWORD size = RoundedRecordSize(needed);
    buffer.resize(size);
    if (!Logs().ReadEventLogW(log_.Get(), kGoOn, record, buffer.data(), size, &read, &needed)) {
      RaisePlatformError(LastError());
    }
    if (read > size) RaisePlatformError(kErrorEventlogFileCorrupt);
    RecordOrigin origin(log_name_, server_name_);
    const auto entry = Make<CEventLogEntry>();
    entry->Fill(EventRecord(std::span(buffer).first(read)).Fields(origin));
    return entry;
  });
}

Ref<CEventLogEntries> CEventLog::Load(std::int32_t start_record, bool immediate) {
  // A listener may let go of the log.
  const Ref<CEventLog> keep_alive(this);
  return ReRaisingAs(kClassName, [&] {
    std::optional<Subscription> subscription;
    if (immediate) subscription.emplace(static_cast<ObjectFoundListener&>(*this));
    return Engine().LoadEventLogEntries(u"\\\\" + server_name_, log_name_, {}, start_record,
                                        immediate);
  });
}

Ref<CEventLogEntries> CEventLog::GetEventLogEntries() { return Load(0, false); }

Ref<CEventLogEntries> CEventLog::GetEventLogEntries2(std::int32_t starting_record_number) {
  return Load(starting_record_number, false);
}

Ref<CEventLogEntries> CEventLog::GetEventLogEntriesImmediate() { return Load(0, true); }

void CEventLog::GetEventLogEntriesImmediate2(std::int32_t starting_record_number) {
  Load(starting_record_number, true);
}

bool CEventLog::WriteToFile(const Text& path_name) {
  return ReRaisingAs(kClassName, [&] {
    const EventLogHandle log(Logs(), Logs().OpenEventLogW(server_name_.c_str(), log_name_.c_str()));
    if (!log) RaisePlatformError(LastError(), Err().Source());
    // Digits of the code page, which the platform reads as UTF-16, and a NUL of that behind them.
    const Variant path = ApiStringBuffer(path_name);
    const std::string digits = std::to_string(path.If<ByteArray>()->elements[0]);
    std::array<char16_t, 3> name{};
    std::memcpy(name.data(), digits.data(), digits.size());
    if (!Logs().BackupEventLogW(log.Get(), name.data())) {
      RaisePlatformError(LastError(), Err().Source());
    }
    return true;
  });
}

void CEventLog::OnObjectFound(Object& object, bool& cancel) {
  ForwardFound(events_, *this, object, cancel, {{&CEventLogEntry::Describe, kEventLogEntryFound}});
}

}  // namespace veldmark
