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
  if (const DWORD fault = session_.Begin("SetTimer", ToText(elapse))) {
    Fail(fault);
    return 0;
  }
  if (!timers_.contains(id)) id = ++last_id_;
  const std::uint64_t period = std::clamp(elapse, kShortestElapse, kLongestElapse);
  timers_[id] = {session_.estate.milliseconds() + period, period, callback};
  return id;
}

BOOL SimulatedTimers::KillTimer(HWND, UINT_PTR id) {
  if (const DWORD fault = session_.Begin("KillTimer", ToText(static_cast<std::int64_t>(id)))) {
    return Fail(fault);
  }
  return timers_.erase(id) > 0 ? 1 : 0;
}

void SimulatedTimers::DoEvents() {
  session_.BeginSafe("DoEvents");
  const std::uint64_t now = session_.estate.milliseconds();
  std::vector<std::pair<std::uint64_t, UINT_PTR>> due;
  for (const auto& [id, timer] : timers_) {
    if (timer.due <= now) due.emplace_back(timer.due, id);
  }
  std::sort(due.begin(), due.end());
  for (const auto& [moment, id] : due) {
    // A callback may have stopped this timer or set it anew.
    const auto found = timers_.find(id);
    if (found == timers_.end() || found->second.due != moment) continue;
    found->second.due = now + found->second.elapse;
    const TIMERPROC callback = found->second.callback;
    if (callback != nullptr) callback(nullptr, kMessageTimer, id, static_cast<DWORD>(now));
  }
}

}  // namespace veldmark::simulated
