#pragma once

#include "platform/operations/ServiceControl.h"
#include "platform/simulated/families/Session.h"

namespace veldmark::simulated {

// The service control managers of an estate's computers.
class SimulatedServiceControl final : public ServiceControl {
 public:
  explicit SimulatedServiceControl(Session& session) : session_(session) {}

  Session& session() { return session_; }

 private:
  Session& session_;
};

}  // namespace veldmark::simulated
