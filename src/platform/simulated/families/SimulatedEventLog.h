#pragma once

#include "platform/operations/EventLog.h"
#include "platform/simulated/families/Session.h"

namespace veldmark::simulated {

// The event logs of an estate's computers, and backup files in its folders.
class SimulatedEventLog final : public EventLog {
 public:
  explicit SimulatedEventLog(Session& session) : session_(session) {}

  Session& session() { return session_; }

 private:
  Session& session_;
};

}  // namespace veldmark::simulated
