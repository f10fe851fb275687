#pragma once

#include <map>
#include <thread>

#include "platform/operations/Timers.h"
#include "platform/simulated/families/Session.h"

namespace veldmark::simulated {

// Timers on an estate's clock: due ones fire in the next turn of their thread's message loop, in
// the order in which they fell due, once a turn each.
class SimulatedTimers final : public Timers {
 public:
  explicit SimulatedTimers(Session& session) : session_(session) {}

  UINT_PTR SetTimer(HWND window, UINT_PTR id, UINT elapse, TIMERPROC callback) override;
  BOOL KillTimer(HWND window, UINT_PTR id) override;
  void DoEvents() override;

 private:
  struct Timer {
    std::uint64_t due;
    std::uint64_t elapse;
    TIMERPROC callback;
    std::thread::id thread = std::this_thread::get_id();

    bool is_ours() const { return thread == std::this_thread::get_id(); }
  };

  // The running timer of this number that the calling thread has; null if there is none.
  Timer* Find(UINT_PTR id);

  Session& session_;
  std::map<UINT_PTR, Timer> timers_;
  UINT_PTR last_id_ = 0;
};

}  // namespace veldmark::simulated
