#pragma once

#include "platform/operations/TaskScheduler.h"
#include "platform/simulated/families/Session.h"

namespace veldmark::simulated {

// The scheduled tasks of an estate's computers.
class SimulatedTaskScheduler final : public TaskScheduler {
 public:
  explicit SimulatedTaskScheduler(Session& session) : session_(session) {}

  Session& session() { return session_; }

 private:
  Session& session_;
};

}  // namespace veldmark::simulated
