// A server's users listed by the library, against a bare loop over the same platform calls that
// copies the same texts; at two sizes, since the time of a user must not grow with their number.
// `bytes` is what a listed user takes beside its texts.

#include <benchmark/benchmark.h>

#include <array>
#include <memory>
#include <vector>

#include "Heap.h"
#include "accounts/CUser.h"
#include "accounts/CUsers.h"
#include "apartment/Apartment.h"
#include "apartment/CSupport.h"
#include "apartment/NetworkPages.h"
#include "network/CServer.h"
#include "platform/simulated/families/SimulatedPlatform.h"

namespace veldmark {
namespace {

/// An apartment whose computer has this many users beside those of the system.
class World {
 public:
  explicit World(std::int64_t users) : platform_(simulated_.platform()) {
    simulated::Computer& computer = simulated_.estate().local();
    for (std::int64_t i = 0; i < users; ++i) {
      simulated::UserAccount& user = computer.own_accounts().AddUser(u"user" + ToText(i));
      user.full_name = u"User number " + ToText(i);
      user.comment = u"One of many users of this computer";
    }
    Apartment::Start(platform_);
    server_ = Make<CServer>();
    server_->ServerName = computer.name();
    static_cast<void>(server_->ServerType());  // fetched once
  }
  World(const World&) = delete;
  World& operator=(const World&) = delete;
  ~World() {
    server_ = nullptr;
    Apartment::End();
  }

  Platform& platform() { return platform_; }
  CServer& server() { return *server_; }
  void ForgetCalls() { simulated_.journal().Clear(); }

 private:
  simulated::SimulatedPlatform simulated_;
  Platform platform_;
  Ref<CServer> server_;
};

void GetUsers(benchmark::State& state) {
  World world(state.range(0));
  for (auto _ : state) {
    benchmark::DoNotOptimize(Engine().GetUsers(world.server(), false));
    state.PauseTiming();
    world.ForgetCalls();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));

  // What the allocator counts moves by the blocks of the calls, too: these are all gone again.
  world.ForgetCalls();
  const std::size_t before = HeapBytes();
  const Ref<CUsers> users = Engine().GetUsers(world.server(), false);
  world.ForgetCalls();
  std::size_t texts = 0;
  const auto count = [&](const Text& text) {
    if (text.capacity() > Text().capacity()) texts += (text.capacity() + 1) * sizeof(char16_t);
  };
  for (std::int32_t i = 1; i <= users->Count(); ++i) {
    const Ref<CUser> user = users->ItemByIndex(i);
    for (const Text* const text : std::array<const Text*, 4>{
             &user->UserName, &user->FullName(), &user->ServerName(), &user->Details().comment}) {
      count(*text);
    }
  }
  state.counters["bytes"] = static_cast<double>(HeapBytes() - before - texts) / users->Count();
}

void BareLoop(benchmark::State& state) {
  World world(state.range(0));
  AccountManagement& accounts = world.platform().accounts;
  for (auto _ : state) {
    std::vector<std::array<Text, 3>> texts;
    for (DWORD index = 0;;) {
      DWORD entries = 0;
      void* block = nullptr;
      accounts.NetQueryDisplayInformation(nullptr, 1, index, 0x7FFFFFFF, kMaxPreferredLength,
                                          &entries, &block);
      const NetworkBuffer buffer(world.platform().network_management, static_cast<BYTE*>(block));
      const auto records = RecordsIn<NET_DISPLAY_USER>(block, entries);
      if (records.empty()) break;
      for (const NET_DISPLAY_USER& record : records) {
        texts.push_back({TextAt(record.usri1_name), TextAt(record.usri1_full_name),
                         TextAt(record.usri1_comment)});
      }
      index = records.back().usri1_next_index;
    }
    benchmark::DoNotOptimize(texts);
    state.PauseTiming();
    world.ForgetCalls();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(GetUsers)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(BareLoop)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace veldmark
