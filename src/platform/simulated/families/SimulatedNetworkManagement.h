#pragma once

#include "platform/operations/NetworkManagement.h"
#include "platform/simulated/families/Session.h"

namespace veldmark::simulated {

// What the computers of an estate share.
class SimulatedNetworkManagement final : public NetworkManagement {
 public:
  explicit SimulatedNetworkManagement(Session& session) : session_(session) {}

  DWORD NetShareGetInfo(LPCWSTR server_name, LPCWSTR net_name, DWORD level, BYTE** buffer) override;
  DWORD NetApiBufferFree(void* buffer) override;

 private:
  Session& session_;
};

}  // namespace veldmark::simulated
