// What stands between a SID and its account once it was looked up, descriptor strings, and the
// members of a large group, of which `lookups` counts the platform's look-ups.

#include <benchmark/benchmark.h>

#include <vector>

#include "accounts/CGroup.h"
#include "accounts/CUsers.h"
#include "apartment/Apartment.h"
#include "apartment/CSupport.h"
#include "platform/simulated/families/SimulatedPlatform.h"
#include "security/CSecurityDescriptor.h"
#include "security/CSid.h"

namespace veldmark {
namespace {

constexpr std::int64_t kEntries = 40;

/// An apartment whose computer has a local group "Crowd" of as many of its own users.
class World {
 public:
  explicit World(std::int64_t users) : platform_(simulated_.platform()) {
    simulated::AccountDatabase& accounts = simulated_.estate().local().own_accounts();
    std::vector<simulated::Sid> members;
    for (std::int64_t i = 0; i < users; ++i) {
      const Text name = u"user" + ToText(i);
      accounts.AddUser(name);
      members.push_back(accounts.SidOf(name));
    }
    accounts.AddLocalGroup(u"Crowd", members);
    first_ = members.front().ToText();
    Apartment::Start(platform_);
  }
  World(const World&) = delete;
  World& operator=(const World&) = delete;
  ~World() { Apartment::End(); }

  const Text& first() const { return first_; }
  Text computer() { return simulated_.estate().local().name(); }
  simulated::Journal& journal() { return simulated_.journal(); }

 private:
  simulated::SimulatedPlatform simulated_;
  Platform platform_;
  Text first_;
};

void CachedAccount(benchmark::State& state) {
  World world(1);
  const SidWords words = GetSidBufferFromText(world.first());
  world.journal().StopKeeping();
  for (auto _ : state) {
    const auto sid = Make<CSid>();
    sid->PutSidBuffer(words);
    benchmark::DoNotOptimize(sid->AccountName());
  }
}

void StringDescriptor(benchmark::State& state) {
  World world(1);
  world.journal().StopKeeping();
  Text text = u"D:P";
  for (std::int64_t i = 0; i < kEntries; ++i) {
    text += u"(A;OICI;FRFX;;;S-1-5-21-1085031214-1563985344-725345543-" + ToText(1000 + i) + u")";
  }
  for (auto _ : state) {
    benchmark::DoNotOptimize(Engine().ConvertStringSDToSD(text, Text(), Text()));
  }
}

void GroupMembers(benchmark::State& state) {
  World world(state.range(0));
  const auto walk = [&] {
    const auto group = Make<CGroup>();
    group->GroupName = u"Crowd";
    group->GroupType = GT_LocalGroup;
    group->ServerName = world.computer();
    return group->GetUsers();
  };
  world.journal().Clear();
  if (walk()->Count() != state.range(0)) state.SkipWithError("members are missing");
  state.counters["lookups"] = static_cast<double>(world.journal().Count("LookupAccountSidW"));
  world.journal().StopKeeping();
  for (auto _ : state) benchmark::DoNotOptimize(walk());
}

BENCHMARK(CachedAccount)->Unit(benchmark::kNanosecond);
BENCHMARK(StringDescriptor)->Unit(benchmark::kMicrosecond);
BENCHMARK(GroupMembers)->Arg(20'000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace veldmark
