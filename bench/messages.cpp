// 12,000 event messages of 20 sources asked of entries, against a loop over plain records that
// makes the calls that a message takes, with its inserts and without, of modules that are loaded
// once, keeps the texts and hands a copy out. The same with one call a message gives no raw text.

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "apartment/Apartment.h"
#include "eventlog/CEventLogEntry.h"
#include "eventlog/EventMessages.h"
#include "eventlog/MessageModules.h"
#include "platform/simulated/families/SimulatedPlatform.h"

namespace veldmark {
namespace {

constexpr int kSources = 20;
constexpr int kMessages = 12'000;

const std::vector<Text> kStrings = {u"Print Spooler", u"stopped", u"30"};

Text SourceName(int number) { return u"Source" + ToText(std::int64_t{number}); }
Text FileName(int number) { return SourceName(number) + u".dll"; }

class World {
 public:
  World() : platform_(simulated_.platform()) {
    simulated_.journal().StopKeeping();
    simulated::Computer& computer = simulated_.estate().local();
    for (int i = 0; i < kSources; ++i) {
      computer.AddFile(u"C:\\Texts\\" + FileName(i))
          .Messages({{7, u"The service %1 entered the state %2 after %3 seconds.\r\n"}});
      computer.local_machine()
          .Key(u"SYSTEM\\CurrentControlSet\\Services\\EventLog\\System\\" + SourceName(i))
          .String(u"EventMessageFile", u"C:\\Texts\\" + FileName(i), kRegExpandSz);
    }
    Apartment::Start(platform_);
  }
  World(const World&) = delete;
  World& operator=(const World&) = delete;
  ~World() { Apartment::End(); }

  const Text& server() { return simulated_.estate().local().name(); }

  std::vector<Ref<CEventLogEntry>> Entries() {
    const auto origin = Make<EventOrigin>(u"System", server());
    std::vector<Ref<CEventLogEntry>> entries;
    for (int i = 0; i < kMessages; ++i) {
      EventFields fields;
      fields.event_id = 7;
      fields.source_name = SourceName(i % kSources);
      fields.origin = origin;
      fields.strings = kStrings;
      entries.push_back(Make<CEventLogEntry>());
      entries.back()->Fill(std::move(fields));
    }
    return entries;
  }

 private:
  simulated::SimulatedPlatform simulated_;
  Platform platform_;
};

void GetMessages(benchmark::State& state) {
  World world;
  for (auto _ : state) {
    state.PauseTiming();
    auto entries = world.Entries();
    state.ResumeTiming();
    for (const auto& entry : entries) benchmark::DoNotOptimize(entry->EventMessage());
    state.PauseTiming();
    entries.clear();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * kMessages);
}

/// A record, its texts kept.
struct Plain {
  const void* module;
  std::vector<Text> strings = kStrings;
  Text message{};
  Text raw{};
};

// With as many calls a message as the argument says.
void BareCalls(benchmark::State& state) {
  World world;
  std::vector<HMODULE> modules;
  for (int i = 0; i < kSources; ++i) {
    modules.push_back(
        LoadMessageFile(GetRemoteMessageFilePath(u"C:\\Texts\\" + FileName(i), world.server())));
  }
  std::vector<char16_t> buffer(65536);
  Messages& messages = Apartment::Current().platform.messages;
  const auto format = [&](DWORD flags, const void* module, void* inserts) {
    return Text(buffer.data(),
                messages.FormatMessageW(flags, module, 7, 0, buffer.data(), 65536, inserts));
  };
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<Plain> records;
    for (int i = 0; i < kMessages; ++i) {
      records.push_back({reinterpret_cast<const void*>(modules[i % kSources])});
    }
    const char16_t* inserts[99] = {};
    state.ResumeTiming();
    for (Plain& record : records) {
      for (std::size_t i = 0; i < record.strings.size(); ++i)
        inserts[i] = record.strings[i].c_str();
      record.message = format(0x2800, record.module, inserts);
      if (state.range(0) > 1) record.raw = format(0xA00, record.module, nullptr);
      benchmark::DoNotOptimize(Text(record.message));
    }
    state.PauseTiming();
    records.clear();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * kMessages);
}

BENCHMARK(GetMessages)->Unit(benchmark::kMillisecond);
BENCHMARK(BareCalls)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace veldmark
