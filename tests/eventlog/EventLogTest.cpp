#include "eventlog/CEventLog.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "apartment/CSupport.h"
#include "automation/Conversion.h"
#include "automation/LastError.h"
#include "eventlog/CEventLogEntries.h"
#include "eventlog/CEventLogEntry.h"
#include "eventlog/CEventLogs.h"
#include "eventlog/EventRecord.h"
#include "network/CServer.h"
#include "platform/operations/ErrorCodes.h"
#include "support/ApartmentFixture.h"
#include "support/ErrorOf.h"
#include "support/FaultSweep.h"
#include "support/Listener.h"
#include "support/MixedPlatform.h"
#include "support/ValuesOf.h"

namespace veldmark {
namespace {

using simulated::Event;
using simulated::LayOut;
using simulated::RawRecord;
using simulated::RecordedLog;

Event Told(DWORD id) {
  return {.source = u"Kettle",
          .id = id,
          .type = 2,
          .category = 7,
          .generated = 1'700'000'000,
          .written = 1'700'000'060,
          .computer = u"STOVE",
          .user = simulated::SystemSid(),
          .strings = {u"one", u"", u"three"},
          .data = {1, 2, 3}};
}

/// A file of event records as a live log leaves it: the records go round behind the header.
struct LogFileWriter {
  std::vector<RawRecord> records{};
  std::uint32_t start = 48;  ///< where the first record lies
  bool dirty = false;        ///< the header is that of an empty log
  bool has_end = true;       ///< the end record is there

  std::string Write() const {
    constexpr std::uint32_t kSize = 4096, kFill = 0x27, kSignature = 0x654C664C;
    std::string file(kSize, '\0');
    std::uint32_t end = start;
    const auto put = [&](const auto* bytes, std::size_t count) {
      for (std::size_t i = 0; i < count; ++i) {
        file[end] = reinterpret_cast<const char*>(bytes)[i];
        if (++end == kSize) end = 48;
      }
    };
    std::uint32_t first = 0;
    if (!records.empty()) std::memcpy(&first, records.front().data() + 8, sizeof first);
    for (const RawRecord& record : records) {
      while (kSize - end < 56) put(&kFill, sizeof kFill);
      put(record.data(), record.size());
    }
    const auto next = first + static_cast<std::uint32_t>(records.size());
    const std::uint32_t whole[] = {48, kSignature, 1, 1, start, end, next, first, kSize, 2, 0, 48};
    const std::uint32_t stale[] = {48, kSignature, 1, 1, 48, 48, 1, 0, kSize, 3, 0, 48};
    std::memcpy(file.data(), dirty ? stale : whole, sizeof whole);
    const std::uint32_t last[] = {40,    0x11111111, 0x22222222, 0x33333333, 0x44444444,
                                  start, end,        next,       first,      40};
    if (has_end) put(last, sizeof last);
    return file;
  }
};

/// This computer has a log "System" of the records 5 to 9; LANTERN an empty one and one that is
/// closed.
class LoggedWorld : public SimulatedApartment {
 public:
  LoggedWorld() {
    log().StartAt(5);
    for (DWORD number = 5; number < 10; ++number) log().Add(Told(number));
    lantern.AddEventLog(u"System");
    lantern.AddEventLog(u"Security").SetUnreadable(kErrorAccessDenied);
    SetZone(13 * 60);
    journal().Clear();
  }

  RecordedLog& log() { return local().AddEventLog(u"System"); }
  Ref<CEventLog> NewLog(TextView name = u"System") {
    const auto log = Make<CEventLog>();
    log->SetServerName(local().name());
    log->SetLogName(Text(name));
    return log;
  }

  simulated::Computer& lantern = estate().AddComputer(u"LANTERN");
  Ref<CServer> server = Server(local().name());
};

class EventLogs : public TestIn<LoggedWorld> {
 protected:
  ~EventLogs() override { server = nullptr; }
  /// The numbers of what is read, "5, 6, 7", or "error 87".
  static std::string NumbersOf(const std::function<Ref<CEventLogEntries>()>& read) {
    return OutcomeOf([&] { return ListOf(read(), {u"RecordNumber"}); });
  }
  static std::string Read(std::int32_t start, TextView computer = u"\\\\LOCALHOST",
                          TextView name = u"System") {
    return NumbersOf(
        [&] { return Engine().LoadEventLogEntries(Text(computer), Text(name), {}, start, false); });
  }
  std::string ReadFile(const std::string& content) {
    if (!local().Find(u"C:\\saved.evt")) local().AddFile(u"C:\\saved.evt");
    local().Find(u"C:\\saved.evt")->Content(content);
    return NumbersOf([&] { return server->GetEventLogEntriesFromFile(u"C:\\saved.evt"); });
  }
};

TEST_F(EventLogs, AreReadFromTheRecordThatWasAskedFor) {
  struct Row {
    std::int32_t start;
    const char* numbers;
    TextView computer = u"\\\\LOCALHOST";
    TextView log = u"System";
  };
  for (const Row& row :
       {Row{0, "5, 6, 7, 8, 9"}, Row{-3, "5, 6, 7, 8, 9"}, Row{2, "5, 6, 7, 8, 9"},
        Row{7, "7, 8, 9"}, Row{9, "9"}, Row{10, "error 87"}, Row{0, "", u"\\\\LANTERN"},
        Row{1, "", u"\\\\LANTERN"}, Row{0, "error 5", u"\\\\LANTERN", u"Security"},
        Row{0, "error 1722", u"\\\\NOBODY"}, Row{0, "error 1722", u"\\\\\\\\LANTERN"},
        Row{0, "", u"\\\\LANTERN", u"No such log, so the application log"}}) {
    EXPECT_EQ(Read(row.start, row.computer, row.log), row.numbers) << row.start;
    EXPECT_TRUE(ledger().IsClean()) << row.start;
  }
  EXPECT_EQ(LastPlatformError(), 0u);
  EXPECT_EQ(ListOf(NewLog()->GetEventLogEntries2(8), {u"RecordNumber"}), "8, 9");
  faults().FailEvery("GetNumberOfEventLogRecords", kErrorAccessDenied);
  EXPECT_EQ(Read(0), "");
  faults().Clear();
  faults().FailEvery("GetOldestEventLogRecord", kErrorAccessDenied);
  EXPECT_EQ(Read(6), "6, 7, 8, 9");
  EXPECT_EQ(Read(10), "error 5") << "the reason for the missing number is what came last";
}

TEST_F(EventLogs, ChangeWhileTheyAreRead) {
  int reads = 0;
  const auto grow = [&reads](RecordedLog& log) {
    if (++reads < 4) log.Add(Told(50));
  };
  log().before_read = grow;
  EXPECT_EQ(Read(0), "5, 6, 7, 8, 9, 10") << "what one block holds, and no more behind the count";
  reads = 0;
  EXPECT_EQ(Read(9), "9, 10, 11, 12, 13") << "to the end of the log";
  log().before_read = [&reads](RecordedLog& log) {
    if (++reads == 6) log.Clear();
  };
  reads = 5;
  EXPECT_EQ(Read(0), "error 1503");
  reads = 6;
  EXPECT_EQ(Read(0), "") << "opened after it was cleared";
  // One that no block has room for, between two that have.
  log().before_read = nullptr;
  Event large = Told(2);
  large.data.resize(600'000, 0xAB);
  for (const Event& event : {Told(1), large, Told(3)}) log().Add(event);
  const auto entries = server->GetEventLogEntries(u"System");
  ASSERT_EQ(ListOf(entries, {u"RecordNumber"}), "1, 2, 3");
  Variant index(2);
  EXPECT_EQ(entries->Item(index)->Data().If<ByteArray>()->elements, large.data);
}

TEST_F(EventLogs, HandTheWholeRecordOver) {
  Variant first(1);
  const std::vector<Ref<CEventLogEntry>> both = {server->GetEventLogEntries(u"System")->Item(first),
                                                 NewLog()->GetEventLogEntry(5)};
  const auto sids = [] { return Apartment::Current().counters[Counter::kSid]; };
  const std::int32_t counted = sids();
  EXPECT_EQ(journal().Count("FileTimeToLocalFileTime"), 2u) << "once a walk";
  const auto shown = [](CEventLogEntry& entry) {
    return ValuesOf(entry, {u"TimeGenerated", u"TimeWritten", u"EventID", u"EventType",
                            u"EventCategory", u"SourceName", u"ComputerName", u"LogName"});
  };
  for (const auto& entry : both) {
    EXPECT_EQ(shown(*entry),
              "11/14/2023 9:13:20 AM|11/14/2023 9:14:20 AM|5|2|7|Kettle|STOVE|System");
    EXPECT_EQ(ToUtf8(entry->Sid()->SidText()), "S-1-5-18");
    EXPECT_EQ(sids(), counted) << "one that nobody has read counts as well";
    EXPECT_EQ(entry->StringsArray(), Variant(TextArray({u"one", u"", u"three"}, 1)));
    EXPECT_EQ(entry->Data(), Variant(ByteArray({1, 2, 3})));
  }
  EXPECT_EQ(both[0]->Sid()->ResidesOnServer(), u"\\\\LOCALHOST");
  EXPECT_EQ(both[1]->Sid()->ResidesOnServer(), u"LOCALHOST");

  log().Clear();
  log().Add({.source = u"",
             .id = 0xC0000001,
             .type = 0xFFFF,
             .category = 0xFFFF,
             .generated = 0x80000000});
  const auto bare = NewLog()->GetEventLogEntry(0);
  EXPECT_EQ(shown(*bare),
            "12/13/1901 7:45:52 AM|12/31/1969 11:00:00 AM|-1073741823|-1|-1|||System");
  EXPECT_EQ(bare->Sid(), nullptr);
  EXPECT_EQ(bare->StringsArray().Type(), VariantType::kEmpty);
  EXPECT_EQ(bare->Data().Type(), VariantType::kEmpty);
  EXPECT_EQ(RoundedRecordSize(57) + RoundedRecordSize(0x7FFFFFFC), 60 + 0x7FFFFFFCu);
  EXPECT_EQ(ErrorOf([] { RoundedRecordSize(0x7FFFFFFD); }), 1500);
}

TEST_F(EventLogs, RaiseWhereARecordLiesAboutItself) {
  const RawRecord sound = LayOut(Told(1), 1);
  const auto length = static_cast<DWORD>(sound.size());
  struct Row {
    const char* what;
    std::size_t offset;
    DWORD value;
    std::size_t cut = 0;  // bytes that are missing at the end
  };
  for (const Row& row :
       {Row{"no length", 0, 0}, Row{"less than the fixed part", 0, 55},
        Row{"more than there is", 0, length + 4}, Row{"the largest length", 0, 0xFFFFFFFF},
        Row{"names that don't end", 0, 60}, Row{"less than the header", 0, length, length - 50},
        Row{"strings behind the end", 36, length}, Row{"strings that wrap around", 36, 0xFFFFFFFE},
        Row{"more strings than there are", 24, 0x7FFF0002},
        Row{"a SID behind the end", 44, length - 8}, Row{"a SID that wraps around", 44, 0xFFFFFFFC},
        Row{"a SID without end", 40, 0xFFFFFFFF}, Row{"data behind the end", 52, length - 2},
        Row{"data without end", 48, 0xFFFFFFFF}}) {
    RawRecord record = sound;
    std::memcpy(record.data() + row.offset, &row.value, sizeof row.value);
    record.resize(record.size() - row.cut);
    log().Clear();
    log().Add(Told(1));
    log().AddRaw(record);
    EXPECT_EQ(Read(0), "error 1500") << row.what;
    EXPECT_EQ(ErrorOf([&] { NewLog()->GetEventLogEntry(2); }), 1500) << row.what;
  }
  // What says that it is nothing at all is nothing.
  for (const auto& [offset, value] : {std::pair<std::size_t, DWORD>{24, 0xFFFF0002}, {40, 3}}) {
    RawRecord record = sound;
    std::memcpy(record.data() + offset, &value, sizeof value);
    log().Clear();
    log().AddRaw(record);
    EXPECT_EQ(Read(0), "1");
  }
}

/// The estate's logs, which read as many bytes as they are told, whatever there is room for.
class OddLogs final : public simulated::SimulatedEventLog {
 public:
  using SimulatedEventLog::SimulatedEventLog;
  BOOL ReadEventLogW(HANDLE log, DWORD flags, DWORD record, void* buffer, DWORD size, DWORD* read,
                     DWORD* needed) override {
    ++reads;
    if (bytes > 0 && size == 0) {
      return SimulatedEventLog::ReadEventLogW(log, flags, record, buffer, size, read, needed);
    }
    SetLastPlatformError(kErrorSuccess);
    *read = bytes;
    return done;
  }
  BOOL done = 1;
  DWORD bytes = 0;
  int reads = 0;
};

TEST(OddLogs, HaveNoRecordsOrRaise) {
  MixedWorld<LoggedWorld, OddLogs> world;
  for (const BOOL done : {1, 0}) {
    world.own.done = done;
    world.own.reads = 0;
    EXPECT_EQ(world.server->GetEventLogEntries2(u"System", 6)->Count(), 0);
    EXPECT_EQ(world.own.reads, 2);
    EXPECT_EQ(world.NewLog()->GetEventLogEntry(6), nullptr);
  }
  world.own.done = 1;
  world.own.bytes = 600'000;
  EXPECT_EQ(ErrorOf([&] { world.server->GetEventLogEntries(u"System"); }), 1500);
  EXPECT_EQ(ErrorOf([&] { world.NewLog()->GetEventLogEntry(6); }), 1500);
}

TEST_F(EventLogs, AreDeliveredByEventsUntilOneCancels) {
  const auto log = NewLog();
  std::string heard;
  int left = 100;
  const auto listener = [&](std::int32_t event, std::span<Variant> arguments) {
    const auto& object = *arguments[0].If<Ref<Object>>();
    heard += std::to_string(event) + ":" +
             std::to_string(static_cast<CEventLogEntry&>(*object).RecordNumber()) + " ";
    if (--left == 0) arguments[1].Assign(Variant(true));
  };
  Listen(*log, listener);
  EXPECT_EQ(log->GetEventLogEntriesImmediate()->Count(), 0);
  log->GetEventLogEntriesImmediate2(8);
  EXPECT_EQ(heard, "1:5 1:6 1:7 1:8 1:9 1:8 1:9 ");
  log->GetEventLogEntries();
  server->PutAsyncFetch(true);
  Listen(*server, listener);
  heard.clear();
  left = 2;
  EXPECT_EQ(server->GetEventLogEntries2(u"System", 6)->Count(), 0);
  EXPECT_EQ(heard, "7:6 7:7 ") << "the log hears of its own walks alone";
  EXPECT_TRUE(ledger().IsClean());
  left = 1;
  log->GetEventLogEntriesImmediate2(6);
  EXPECT_EQ(heard, "7:6 7:7 7:6 1:6 ");
  // What a listener raises ends the walk, and the log doesn't listen any more.
  const auto failing = NewLog();
  Listen(*failing, [&](std::int32_t, std::span<Variant>) { Raise(91); });
  EXPECT_EQ(ErrorOf([&] { failing->GetEventLogEntriesImmediate(); }), 91);
  server->GetEventLogEntries(u"System");
  server->PutAsyncFetch(false);
}

TEST_F(EventLogs, StayOpenForSingleRecordsAndCounts) {
  auto log = NewLog();
  EXPECT_TRUE(log->CloseLog());
  EXPECT_EQ(log->GetNumberOfEntries(), 5);
  EXPECT_EQ(log->GetOldestRecordNumber(), 5);
  EXPECT_EQ(log->GetEventLogEntry(0)->RecordNumber(), 5);
  EXPECT_EQ(log->GetEventLogEntry(0)->RecordNumber(), 6);
  EXPECT_EQ(log->GetEventLogEntry(8)->RecordNumber(), 8);
  EXPECT_EQ(log->GetEventLogEntry(0)->RecordNumber(), 9);
  EXPECT_EQ(ErrorOf([&] { log->GetEventLogEntry(0); }), 38);
  EXPECT_EQ(ToUtf8(FailureOf([&] { log->GetEventLogEntry(4); })),
            "87|Veldmark2.CEventLog|The parameter is incorrect.");
  EXPECT_EQ(ledger().still_open().size(), 1u);
  const std::int32_t handle = log->OpenLog();
  EXPECT_EQ(ledger().still_open().size(), 2u);
  EXPECT_NE(handle, 0);
  EXPECT_TRUE(log->CloseLog());
  ASSERT_EQ(ledger().still_open().size(), 1u) << "the first one is whoever's was told it";
  platform.event_logs.CloseEventLog(
      reinterpret_cast<HANDLE>(ledger().still_open().begin()->first.value));
  log->OpenLog();
  log = nullptr;
  EXPECT_TRUE(ledger().IsClean()) << "it ends with the object";
  log = NewLog(u"Nothing");
  log->SetServerName(u"NOBODY");
  EXPECT_EQ(ErrorOf([&] { log->OpenLog(); }), 1722);
  EXPECT_EQ(ErrorOf([&] { log->GetNumberOfEntries(); }), 1722);
}

TEST_F(EventLogs, GoOnForAReaderAsTheEstatesClockDoes) {
  const auto log = NewLog();
  while (ErrorOf([&] { log->GetEventLogEntry(0); }) == 0) continue;
  const simulated::Ticks now = estate().now();
  this->log().Schedule(now + 2 * simulated::kTicksPerSecond, Told(51));
  this->log().Schedule(now + simulated::kTicksPerSecond, Told(50));
  this->log().Schedule(now + 2 * simulated::kTicksPerSecond, Told(52));
  estate().Advance(999);
  EXPECT_EQ(log->GetNumberOfEntries(), 5);
  EXPECT_EQ(ErrorOf([&] { log->GetEventLogEntry(0); }), 38);
  estate().Advance(1);
  EXPECT_EQ(log->GetNumberOfEntries(), 6);
  EXPECT_EQ(log->GetOldestRecordNumber(), 5);
  EXPECT_EQ(Read(10), "10");
  estate().Advance(5000);
  for (const std::int32_t number : {10, 11, 12}) {
    const auto entry = log->GetEventLogEntry(0);
    EXPECT_EQ(entry->RecordNumber(), number);
    EXPECT_EQ(entry->EventID(), number + 40) << "by their moments, and as they were scheduled";
  }
  EXPECT_EQ(ErrorOf([&] { log->GetEventLogEntry(0); }), 38);
}

TEST_F(EventLogs, OfAServerAreThoseThatItsRegistryLists) {
  local().AddEventLog(u"Ledger");
  auto logs = server->GetEventLogs();
  ASSERT_EQ(logs->Count(), 2);
  EXPECT_EQ(logs->ItemByIndex(1)->LogName(), u"Ledger");
  EXPECT_EQ(logs->ItemByKey(u"System")->GetNumberOfEntries(), 5);
  const Ref<CEventLog> last = logs->ItemByKey(u"System");
  EXPECT_TRUE(last->CloseLog());
  Apartment::Current().message_modules->Add(Variant(u"0"), CollectionKey::Plain(u"file"));
  logs = nullptr;
  EXPECT_EQ(Apartment::Current().message_modules->Count(), 0) << "one log is left";
  server->ServerName = u"LANTERN";
  logs = server->GetEventLogs();
  EXPECT_EQ(logs->ItemByIndex(1)->LogName(), u"Security") << "in the other computer's registry";
  EXPECT_EQ(logs->ItemByKey(u"System")->GetNumberOfEntries(), 0);
}

TEST_F(EventLogs, AreBackedUpUnderANameOfTheirOwn) {
  const auto log = NewLog();
  ASSERT_TRUE(log->WriteToFile(u"C:\\backup.evt"));
  EXPECT_EQ(local().Find(u"C:\\backup.evt"), nullptr);
  const std::string content = ContentOf(u"C:\\\u3736");
  EXPECT_EQ(ReadFile(content), "5, 6, 7, 8, 9");
  const auto saved = server->GetEventLogEntriesFromFile(u"C:\\saved.evt");
  EXPECT_EQ(ListOf(saved, {u"LogName", u"SourceName"}),
            "|Kettle, |Kettle, |Kettle, |Kettle, |Kettle");
  EXPECT_EQ(ErrorOf([&] { log->WriteToFile(u"C:\\other.evt"); }), 183);
  estate().token().ClearPrivileges();
  EXPECT_EQ(ErrorOf([&] { log->WriteToFile(u"D:\\other.evt"); }), 1314);
  EXPECT_EQ(ErrorOf([&] { server->GetEventLogEntriesFromFile(u"C:\\none.evt"); }), 2);
}

TEST_F(EventLogs, AreReadFromFilesInAnyState) {
  std::vector<RawRecord> records;
  for (DWORD number = 20; number < 26; ++number) records.push_back(LayOut(Told(number), number));
  const std::size_t each = records[0].size();
  const std::string all = "20, 21, 22, 23, 24, 25";
  for (const bool dirty : {false, true}) {
    for (std::uint32_t start = 48; start < 4096; start += 4) {
      ASSERT_EQ(ReadFile(LogFileWriter{.records = records, .start = start, .dirty = dirty}.Write()),
                all)
          << start << (dirty ? " dirty" : "");
    }
  }
  EXPECT_EQ(ReadFile(LogFileWriter{.records = records, .dirty = true, .has_end = false}.Write()),
            all);
  EXPECT_EQ(ReadFile(LogFileWriter{.dirty = true}.Write()), "");
  const std::string sound = LogFileWriter{.records = records}.Write();
  struct Row {
    const char* what;
    std::size_t offset;
    DWORD value;
    const char* numbers;
    bool dirty = false;
  };
  for (const Row& row :
       {Row{"no signature", 4, 0, "error 1500"},
        Row{"a start within the header", 16, 8, "error 1500"},
        Row{"an end that no record leads to", 20, 60, "error 1500"},
        Row{"an end behind the file", 20, 8192, "error 1500"},
        Row{"a length that leaves the file", 48 + each, 0x10000, "error 1500"},
        Row{"a length of none", 48 + each, 0, "error 1500"},
        Row{"a broken record in a dirty file", 48 + each, 0, "22, 23, 24, 25", true},
        Row{"a lost end record", 48 + 6 * each + 8, 0, "20, 21, 22, 23, 24, 25", true}}) {
    std::string file = row.dirty ? LogFileWriter{.records = records, .dirty = true}.Write() : sound;
    std::memcpy(file.data() + row.offset, &row.value, sizeof row.value);
    EXPECT_EQ(ReadFile(file), row.numbers) << row.what;
  }
  EXPECT_EQ(ReadFile(sound.substr(0, 47)), "error 1500");
  EXPECT_EQ(ReadFile(sound.substr(0, 48)), "error 1500");
}

TEST_F(EventLogs, OfARealComputerReadAsAnIndependentReaderReadsThem) {
  const std::string path = VELDMARK_SOURCE_DIR "/../shared/real/ms2003-Application.evt";
  std::ifstream file(path, std::ios::binary);
  std::ifstream told(path + ".json");
  if (!file || !told) GTEST_SKIP() << path << " is not there";
  SetZone(0);
  local().AddFile(u"C:\\real.evt", std::string(std::istreambuf_iterator<char>(file), {}));
  const nlohmann::json expected = nlohmann::json::parse(told)["records"];
  const auto entries = server->GetEventLogEntriesFromFile(u"C:\\real.evt");
  ASSERT_EQ(static_cast<std::size_t>(entries->Count()), expected.size());
  const auto seconds = [](Date date) { return std::llround((date.days - 25569) * 86400); };
  for (std::int32_t i = 0; const nlohmann::json& record : expected) {
    Variant index(++i);
    const Ref<CEventLogEntry> entry = entries->Item(index);
    std::vector<std::string> strings;
    const Variant array = entry->StringsArray();
    if (const auto* const texts = array.If<TextArray>()) {
      for (const Text& text : texts->elements) strings.push_back(ToUtf8(text));
    }
    std::string hex;
    const Variant data = entry->Data();
    if (const auto* const bytes = data.If<ByteArray>()) {
      for (const std::uint8_t byte : bytes->elements) {
        hex += "0123456789abcdef"[byte >> 4];
        hex += "0123456789abcdef"[byte & 15];
      }
    }
    nlohmann::json read = record;  // with the fields that aren't read
    read.update({{"number", entry->RecordNumber()},
                 {"generated", seconds(entry->TimeGenerated())},
                 {"written", seconds(entry->TimeWritten())},
                 {"eventId", static_cast<DWORD>(entry->EventID())},
                 {"type", static_cast<int>(entry->EventType())},
                 {"category", entry->EventCategory()},
                 {"source", ToUtf8(entry->SourceName())},
                 {"computer", ToUtf8(entry->ComputerName())},
                 {"strings", strings},
                 {"data", hex}});
    if (entry->Sid()) read["sid"] = ToUtf8(entry->Sid()->SidText());
    EXPECT_EQ(read, record);
    EXPECT_EQ(entry->Sid() == nullptr, record["sid"].is_null());
  }
}

TEST(EventLogFaults, LeaveNoLogOpen) {
  SweepFaults<LoggedWorld>(
      {"CloseEventLog", "GetNumberOfEventLogRecords", "GetOldestEventLogRecord",
       "SystemTimeToFileTime", "FileTimeToLocalFileTime", "FileTimeToSystemTime",
       "VariantTimeToSystemTime", "SystemTimeToVariantTime"},
      [](LoggedWorld& world) {
        world.server->GetEventLogEntries2(u"System", 6);
        world.NewLog()->GetEventLogEntry(6);
        world.local().AddFile(u"C:\\a.evt", LogFileWriter{.records = {LayOut(Told(1), 1)}}.Write());
        world.server->GetEventLogEntriesFromFile(u"C:\\a.evt");
        world.NewLog()->WriteToFile(u"C:\\b.evt");
      });
}

}  // namespace
}  // namespace veldmark
