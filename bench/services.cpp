// A computer's services listed by the library in its slices of 256 bytes, against a bare loop over
// the same calls that copies the same texts; at two sizes, since the time of a service must not
// grow with their number.

#include <benchmark/benchmark.h>

#include <array>
#include <vector>

#include "apartment/Apartment.h"
#include "apartment/CSupport.h"
#include "network/CServer.h"
#include "platform/operations/Handles.h"
#include "platform/simulated/families/SimulatedPlatform.h"
#include "services/CService.h"
#include "services/CServices.h"

namespace veldmark {
namespace {

/// An apartment whose computer has this many services.
class World {
 public:
  explicit World(std::int64_t services) : platform_(simulated_.platform()) {
    simulated_.journal().StopKeeping();
    simulated::Computer& computer = simulated_.estate().local();
    for (std::int64_t i = 0; i < services; ++i) {
      computer.AddService(u"Service" + ToText(i)).display_name = u"Service number " + ToText(i);
    }
    Apartment::Start(platform_);
    server_ = Make<CServer>();
    server_->ServerName = computer.name();
  }
  World(const World&) = delete;
  World& operator=(const World&) = delete;
  ~World() {
    server_ = nullptr;
    Apartment::End();
  }

  Platform& platform() { return platform_; }
  CServer& server() { return *server_; }

 private:
  simulated::SimulatedPlatform simulated_;
  Platform platform_;
  Ref<CServer> server_;
};

void GetServices(benchmark::State& state) {
  World world(state.range(0));
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        Engine().GetServices(world.server(), SERVICE_TYPE_ALL, SERVICE_STATE_ALL, false));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BareServices(benchmark::State& state) {
  World world(state.range(0));
  ServiceControl& services = world.platform().services;
  for (auto _ : state) {
    std::vector<std::array<Text, 2>> texts;
    const ServiceHandle manager(
        services, services.OpenSCManagerW(nullptr, nullptr, kManagerEnumerateService));
    std::array<ENUM_SERVICE_STATUSW, 257> table;
    DWORD resume = 0;
    do {
      DWORD needed = 0;
      DWORD returned = 0;
      services.EnumServicesStatusW(manager.Get(), kServiceTypeAll, kServiceStateAll, table.data(),
                                   256, &needed, &returned, &resume);
      for (DWORD index = 0; index < returned; ++index) {
        texts.push_back({table[index].lpServiceName, table[index].lpDisplayName});
      }
    } while (resume != 0);
    benchmark::DoNotOptimize(texts);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(GetServices)->Arg(1'000)->Arg(5'000)->Unit(benchmark::kMillisecond);
BENCHMARK(BareServices)->Arg(1'000)->Arg(5'000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace veldmark
