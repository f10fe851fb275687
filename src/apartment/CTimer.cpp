#include "apartment/CTimer.h"

#include <algorithm>

#include "apartment/Apartment.h"
#include "apartment/Errors.h"
#include "automation/CallInProgress.h"
#include "automation/Declare.h"

namespace veldmark {
namespace {

constexpr std::int32_t kTimerEvent = 1;

const EventInterface& DescribeTimerEvents() {
  static const EventInterface table = DeclareEvents(u"__CTimer", u"The beat of a timer.")
                                          .Event<>(u"Timer", u"The interval has passed once more.");
  return table;
}

void VELDMARK_CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD) {
  Apartment* apartment = Apartment::TryCurrent();
  if (!apartment || !apartment->timer) return;
  const Ref<CTimer> timer = apartment->timer;
  const CallInProgress in_progress(*timer);
  // The message loop that calls this has no way to take an error.
  Swallow([&timer] { timer->RaiseTimer(); });
}

}  // namespace

const Interface& CTimer::Describe() {
  static const Interface table =
      Declare<CTimer>(u"CTimer",
                      u"Calls a script back at an interval. Needs a message loop on its thread.")
          .Property<&CTimer::Enabled, &CTimer::PutEnabled>(u"Enabled",
                                                           u"True while the timer runs.")
          .Remark(
              u"Setting it to True twice starts two timers, and the first can't be ended any "
              u"more: it runs as long as its thread. All timers of a thread raise the event of "
              u"the CTimer that was created last.")
          .Property<&CTimer::Interval, &CTimer::PutInterval>(u"Interval",
                                                             u"Milliseconds between two events.")
          .Events(DescribeTimerEvents());
  return table;
}

CTimer::CTimer() { Apartment::Current().timer = this; }

CTimer::~CTimer() {
  if (Apartment::TryCurrent()) PutEnabled(false);
}

void CTimer::PutEnabled(bool enabled) {
  enabled_ = enabled;
  Apartment& apartment = Apartment::Current();
  Timers& timers = apartment.platform.timers;
  if (enabled) {
    timer_id_ = timers.SetTimer(nullptr, 0, static_cast<UINT>(interval_), &OnTimer);
    if (timer_id_ != 0)
      apartment.running_timers.emplace_back(timer_id_, std::make_unique<ModuleHold>());
  } else {
    const BOOL killed = timers.KillTimer(nullptr, timer_id_);
    if (killed)
      std::erase_if(apartment.running_timers,
                    [this](const auto& timer) { return timer.first == timer_id_; });
    timer_id_ = static_cast<UINT_PTR>(killed);
  }
}

void CTimer::PutInterval(std::int32_t interval) {
  interval_ = interval;
  if (!enabled_) return;
  PutEnabled(false);
  PutEnabled(true);
}

void CTimer::RaiseTimer() { events_.Raise(*this, kTimerEvent, {}); }

}  // namespace veldmark
