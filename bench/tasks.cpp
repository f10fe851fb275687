// A computer's tasks with their triggers listed by the library, at two sizes, since the time of a
// task must not grow with their number.

#include <benchmark/benchmark.h>

#include "apartment/Apartment.h"
#include "apartment/CSupport.h"
#include "network/CServer.h"
#include "platform/simulated/estate/ScheduledTasks.h"
#include "platform/simulated/families/SimulatedPlatform.h"
#include "tasks/CTask.h"
#include "tasks/CTasks.h"
#include "tasks/CTriggers.h"

namespace veldmark {
namespace {

void GetTasks(benchmark::State& state) {
  simulated::SimulatedPlatform simulated;
  Platform platform = simulated.platform();
  simulated::Computer& computer = simulated.estate().local();
  TASK_TRIGGER trigger{};
  trigger.cbTriggerSize = kTriggerSize;
  trigger.wBeginYear = 2024;
  trigger.wBeginMonth = trigger.wBeginDay = 1;
  trigger.TriggerType = kTriggerDaily;
  trigger.Type[0] = 1;
  TASK_TRIGGER second = trigger;
  second.wStartHour = 12;
  for (std::int64_t i = 0; i < state.range(0); ++i) {
    simulated::FileNode& file = computer.AddFile(u"C:\\Windows\\Tasks\\task" + ToText(i) + u".job");
    simulated::WriteJob(file, {.application = u"a.exe", .triggers = {trigger, second}}, 0);
  }
  Apartment::Start(platform);
  {
    const Ref<CServer> server = Make<CServer>();
    server->ServerName = computer.name();
    for (auto _ : state) {
      const Ref<CTasks> tasks = Engine().GetTasks(*server);
      for (std::int32_t i = 1; i <= tasks->Count(); ++i) {
        benchmark::DoNotOptimize(tasks->ItemByIndex(i)->GetTriggers());
      }
      state.PauseTiming();
      simulated.journal().Clear();
      state.ResumeTiming();
    }
  }
  Apartment::End();
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(GetTasks)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace veldmark
