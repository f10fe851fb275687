// A log's records made entries by the library, against a bare loop over the same platform calls
// that copies the same fields and texts; at two sizes, since the time of an entry must not grow
// with their number. `bytes` is what an entry takes beside its texts and data.

#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "Heap.h"
#include "apartment/Apartment.h"
#include "apartment/CSupport.h"
#include "eventlog/CEventLogEntries.h"
#include "eventlog/CEventLogEntry.h"
#include "platform/operations/Handles.h"
#include "platform/simulated/families/SimulatedPlatform.h"

namespace veldmark {
namespace {

constexpr DWORD kBufferSize = 524'280;
const Text kServer = u"\\\\LOCALHOST";
const Text kLog = u"System";

/// An apartment whose computer has this many records in its log.
class World {
 public:
  explicit World(std::int64_t records) : platform_(simulated_.platform()) {
    KeepHeap();
    simulated_.journal().StopKeeping();
    simulated::RecordedLog& log = simulated_.estate().local().AddEventLog(kLog);
    simulated::Event event{.source = u"Service Control Manager",
                           .id = 7036,
                           .category = 1,
                           .computer = u"HARBOUR",
                           .user = simulated::AdministratorsSid(),
                           .strings = {u"Print Spooler", u"running", u"no further word on it"},
                           .data = std::vector<std::uint8_t>(64, 0x5A)};
    for (std::int64_t i = 0; i < records; ++i) {
      event.generated = event.written = static_cast<DWORD>(1'700'000'000 + i);
      log.Add(event);
    }
    Apartment::Start(platform_);
  }
  World(const World&) = delete;
  World& operator=(const World&) = delete;
  ~World() { Apartment::End(); }

  Platform& platform() { return platform_; }

 private:
  simulated::SimulatedPlatform simulated_;
  Platform platform_;
};

std::size_t OutOfPlace(const Text& text) {
  return text.capacity() > Text().capacity() ? (text.capacity() + 1) * sizeof(char16_t) : 0;
}

void LoadEntries(benchmark::State& state) {
  World world(state.range(0));
  for (auto _ : state) {
    benchmark::DoNotOptimize(Engine().LoadEventLogEntries(kServer, kLog, {}, 0, false));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));

  const std::size_t before = HeapBytes();
  const auto entries = Engine().LoadEventLogEntries(kServer, kLog, {}, 0, false);
  const std::size_t taken = HeapBytes() - before;
  Variant index(1);
  const Ref<CEventLogEntry> entry = entries->Item(index);
  const Variant strings = entry->StringsArray();
  const Variant data = entry->Data();
  std::size_t texts = data.If<ByteArray>()->elements.size();
  for (const Text& text : strings.If<TextArray>()->elements) texts += OutOfPlace(text);
  for (const Text& text : {entry->SourceName(), entry->ComputerName()}) texts += OutOfPlace(text);
  state.counters["bytes"] =
      static_cast<double>(taken) / entries->Count() - static_cast<double>(texts);
}

/// The same fields and texts in plain values.
struct Plain {
  EVENTLOGRECORD head;
  Text source;
  Text computer;
  std::vector<std::int32_t> sid;
  std::vector<Text> strings;
  std::vector<std::uint8_t> data;
};

void BareLoop(benchmark::State& state) {
  World world(state.range(0));
  EventLog& logs = world.platform().event_logs;
  for (auto _ : state) {
    std::vector<Plain> records;
    const EventLogHandle log(logs, logs.OpenEventLogW(kServer.c_str(), kLog.c_str()));
    std::vector<std::uint8_t> buffer(kBufferSize);
    DWORD read = 0;
    DWORD needed = 0;
    while (logs.ReadEventLogW(log.Get(), kEventlogSequentialRead | kEventlogForwardsRead, 0,
                              buffer.data(), kBufferSize, &read, &needed)) {
      for (const std::uint8_t* at = buffer.data(); at < buffer.data() + read;) {
        Plain& record = records.emplace_back();
        std::memcpy(&record.head, at, sizeof record.head);
        const auto* text = reinterpret_cast<const char16_t*>(at + sizeof record.head);
        record.source = text;
        record.computer = text + record.source.size() + 1;
        record.sid.resize(record.head.UserSidLength / 4);
        std::memcpy(record.sid.data(), at + record.head.UserSidOffset, record.sid.size() * 4);
        text = reinterpret_cast<const char16_t*>(at + record.head.StringOffset);
        record.strings.reserve(record.head.NumStrings);
        for (int i = 0; i < record.head.NumStrings; ++i) {
          record.strings.emplace_back(text);
          text += record.strings.back().size() + 1;
        }
        const std::uint8_t* const data = at + record.head.DataOffset;
        record.data.assign(data, data + record.head.DataLength);
        at += record.head.Length;
      }
    }
    benchmark::DoNotOptimize(records);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(LoadEntries)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(BareLoop)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace veldmark
