#include "platform/simulated/families/SimulatedTimers.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace veldmark::simulated {
namespace {

constexpr UINT kShortestElapse = 10;
constexpr UINT kLongestElapse = 0x7FFFFFFF;

}  // namespace

UINT_PTR SimulatedTimers::SetTimer(HWND, UINT_PTR id, UINT elapse, TIMERPROC callback) {
  const Call call = session_.Begin("SetTimer", ToText(elapse));
  if (const DWORD fault = call.fault()) return Fail(fault, UINT_PTR{0});
  if (Find(id) == nullptr) id = ++last_id_;
  const std::uint64_t period = std::clamp(elapse, kShortestElapse, kLongestElapse);
  timers_[id] = {session_.estate.milliseconds() + period, period, callback};
  return id;
}

BOOL SimulatedTimers::KillTimer(HWND, UINT_PTR id) {
  const Call call = session_.Begin("KillTimer", ToText(static_cast<std::int64_t>(id)));
  if (const DWORD fault = call.fault()) return Fail(fault);
  if (Find(id) == nullptr) return 0;
  timers_.erase(id);
  return 1;
}

void SimulatedTimers::DoEvents() {
  std::uint64_t now = 0;
  std::vector<std::pair<std::uint64_t, UINT_PTR>> due;
  {
    const Call call = session_.BeginSafe("DoEvents");
    now = session_.estate.milliseconds();
    for (const auto& [id, timer] : timers_) {
      if (timer.is_ours() && timer.due <= now) due.emplace_back(timer.due, id);
    }
  }
  std::sort(due.begin(), due.end());
  for (const auto& [moment, id] : due) {
    TIMERPROC callback = nullptr;
    {
      const auto turn = session_.Turn();
      // A callback may have stopped this timer or set it anew.
      Timer* const timer = Find(id);
      if (timer == nullptr || timer->due != moment) continue;
      timer->due = now + timer->elapse;
      callback = timer->callback;
    }
    if (callback != nullptr) callback(nullptr, kMessageTimer, id, static_cast<DWORD>(now));
  }
}

SimulatedTimers::Timer* SimulatedTimers::Find(UINT_PTR id) {
  const auto found = timers_.find(id);
  return found != timers_.end() && found->second.is_ours() ? &found->second : nullptr;
}

}  // namespace veldmark::simulated
