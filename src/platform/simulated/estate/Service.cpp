#include "platform/simulated/estate/Service.h"

#include <algorithm>
#include <limits>

namespace veldmark::simulated {
namespace {

constexpr Ticks kEndOfTime = std::numeric_limits<Ticks>::max();

}  // namespace

void Service::SetState(DWORD state) {
  state_ = pending_ = state;
  moved_ = settles_ = 0;
}

SERVICE_STATUS Service::StatusAt(Ticks now) const {
  SERVICE_STATUS status{};
  status.dwServiceType = type;
  status.dwCurrentState = StateAt(now);
  switch (status.dwCurrentState) {
    case kServiceStopped:
      status.dwWin32ExitCode = exit_code;
      status.dwServiceSpecificExitCode = specific_exit_code;
      return status;
    case kServiceStartPending:
    case kServiceStopPending:
      break;
    default:
      status.dwControlsAccepted = accepts;
  }
  if (now < settles_) {
    const Ticks passed = (now - moved_) / kTicksPerMillisecond;
    status.dwCheckPoint = 1 + static_cast<DWORD>(passed / std::max<DWORD>(checkpoint_time, 1));
    status.dwWaitHint = wait_hint;
  }
  return status;
}

void Service::Move(DWORD pending, DWORD state, DWORD milliseconds, Ticks now, Ticks start) {
  pending_ = pending;
  state_ = state;
  moved_ = now;
  const bool ends = milliseconds != kNever && start != kEndOfTime;
  settles_ = ends ? start + Ticks{milliseconds} * kTicksPerMillisecond : kEndOfTime;
}

}  // namespace veldmark::simulated
