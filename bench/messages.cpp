// 12,000 event messages of 20 sources looked up by the library, against bare calls for the same
// texts over modules that are loaded once: one call a message, and the pair of calls that a message
// with its raw text takes.

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "apartment/Apartment.h"
#include "eventlog/EventMessages.h"
#include "eventlog/MessageModules.h"
#include "platform/simulated/families/SimulatedPlatform.h"

namespace veldmark {
namespace {

constexpr int kSources = 20;
constexpr int kMessages = 12'000;

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
      sources_.push_back({computer.name(), u"System", SourceName(i)});
    }
    Apartment::Start(platform_);
  }
  World(const World&) = delete;
  World& operator=(const World&) = delete;
  ~World() { Apartment::End(); }

  const MessageSource& source(int number) const { return sources_[number % kSources]; }

 private:
  simulated::SimulatedPlatform simulated_;
  Platform platform_;
  std::vector<MessageSource> sources_;
};

const TextArray& Strings() {
  static const TextArray strings({u"Print Spooler", u"stopped", u"30"}, 1);
  return strings;
}

void GetMessages(benchmark::State& state) {
  const World world;
  const std::optional<TextArray> strings = Strings();
  for (auto _ : state) {
    for (int i = 0; i < kMessages; ++i) {
      Text raw;
      benchmark::DoNotOptimize(GetEventMessage(world.source(i), 7, {}, strings, raw));
    }
  }
  state.SetItemsProcessed(state.iterations() * kMessages);
}

// With as many calls a message as the argument says.
void BareCalls(benchmark::State& state) {
  const World world;
  std::vector<HMODULE> modules;
  for (int i = 0; i < kSources; ++i) {
    modules.push_back(LoadMessageFile(
        GetRemoteMessageFilePath(u"C:\\Texts\\" + FileName(i), world.source(0).server)));
  }
  MessageInsertArgs inserts;
  FillMessageInserts(Strings().elements, inserts);
  std::vector<char16_t> buffer(65536);
  Messages& messages = Apartment::Current().platform.messages;
  for (auto _ : state) {
    for (int i = 0; i < kMessages; ++i) {
      const auto* const module = reinterpret_cast<const void*>(modules[i % kSources]);
      benchmark::DoNotOptimize(
          messages.FormatMessageW(0x2800, module, 7, 0, buffer.data(), 65536, &inserts));
      if (state.range(0) == 1) continue;
      benchmark::DoNotOptimize(
          messages.FormatMessageW(0xA00, module, 7, 0, buffer.data(), 65536, nullptr));
    }
  }
  state.SetItemsProcessed(state.iterations() * kMessages);
}

BENCHMARK(GetMessages)->Unit(benchmark::kMillisecond);
BENCHMARK(BareCalls)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace veldmark
