#pragma once

#include <optional>
#include <vector>

#include "automation/Secret.h"
#include "platform/operations/ServiceControl.h"
#include "platform/simulated/estate/Calendar.h"
#include "platform/simulated/estate/NamedObject.h"
#include "platform/simulated/estate/RecordedLog.h"

namespace veldmark::simulated {

inline constexpr TextView kLocalSystem = u"LocalSystem";
// A time that never passes.
inline constexpr DWORD kNever = 0xFFFFFFFF;

// A service with what its computer's service manager keeps of it and how its program behaves.
class Service : public NamedObject {
 public:
  explicit Service(NamedObject object) : NamedObject(std::move(object)), display_name(name) {}

  Text display_name;
  Text description{};
  DWORD type = kServiceOwnProcess;
  DWORD start_type = kServiceDemandStart;
  DWORD error_control = kServiceErrorNormal;
  DWORD tag = 0;
  Text binary_path{};
  Text load_order_group{};
  Text account{kLocalSystem};
  std::optional<Secret> password{};
  std::vector<Text> dependencies{};  // names of services; a "+" begins that of a group of them

  // What it takes while it runs (kServiceAccept...), and what it left when it last stopped.
  DWORD accepts = kServiceAcceptStop | kServiceAcceptShutdown;
  DWORD exit_code = 0;
  DWORD specific_exit_code = 0;
  // Milliseconds that its program takes to get there.
  DWORD start_time = 0;
  DWORD stop_time = 0;
  DWORD pause_time = 0;
  DWORD continue_time = 0;
  // What it tells meanwhile: a hint, and a checkpoint more every so many milliseconds.
  DWORD wait_hint = 1000;
  DWORD checkpoint_time = 1000;
  DWORD start_error = 0;  // the code that starting it ends with
  bool is_marked_for_deletion = false;
  // What its computer's log will say when the last change of its state is over.
  RecordedLog::Scheduled scheduled{};

  // Running, stopped or paused, all the time so far.
  void SetState(DWORD state);
  DWORD StateAt(Ticks now) const { return now < settles_ ? pending_ : state_; }
  SERVICE_STATUS StatusAt(Ticks now) const;
  // When the last change of its state is over.
  Ticks settles() const { return settles_; }
  // Leaves its state for a pending one, and that for another after so many milliseconds, which
  // count from `start` on.
  void Move(DWORD pending, DWORD state, DWORD milliseconds, Ticks now, Ticks start);

 private:
  DWORD state_ = kServiceStopped;
  DWORD pending_ = kServiceStopped;
  Ticks moved_ = 0;
  Ticks settles_ = 0;
};

// A computer's service manager itself.
struct ServiceManager {
  SecurityRef security{};  // null: the usual one
  bool is_locked = false;  // somebody has the database's lock
};

}  // namespace veldmark::simulated
