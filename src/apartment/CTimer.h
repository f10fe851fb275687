#pragma once

#include <cstdint>

#include "automation/Events.h"
#include "automation/Object.h"
#include "platform/operations/Timers.h"

namespace veldmark {

/// Calls its listeners back at an interval, out of the thread's message loop. Every platform timer
/// of an apartment fires the event of the `CTimer` that was created last.
class CTimer : public Exported<CTimer> {
 public:
  static const Interface& Describe();
  EventSource* Events() override { return &events_; }

  CTimer();
  ~CTimer() override;

  bool Enabled() const { return enabled_; }
  /// Starts a platform timer, or ends the latest one. Starting twice starts a second one, and the
  /// first can't be ended any more.
  void PutEnabled(bool enabled);
  /// Milliseconds between two events; 1000 at first.
  std::int32_t Interval() const { return interval_; }
  /// A running timer restarts with the new interval.
  void PutInterval(std::int32_t interval);

  void RaiseTimer();

 private:
  EventSource events_;
  UINT_PTR timer_id_ = 0;
  bool enabled_ = false;
  std::int32_t interval_ = 1000;
};

}  // namespace veldmark
