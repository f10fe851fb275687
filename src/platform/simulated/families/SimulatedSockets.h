#pragma once

#include <string>
#include <vector>

#include "platform/operations/Sockets.h"
#include "platform/simulated/families/Session.h"

namespace veldmark::simulated {

// The host names of an estate.
class SimulatedSockets final : public Sockets {
 public:
  explicit SimulatedSockets(Session& session) : session_(session) {}

  int WSAStartup(WORD version, SOCKETS_DATA* data) override;
  int WSACleanup() override;
  const HOSTENT* gethostbyname(LPCSTR name) override;

 private:
  Session& session_;
  std::vector<std::uintptr_t> starts_;
  // The record handed out last, and what it points to.
  HOSTENT record_{};
  std::string name_;
  std::vector<Address> addresses_;
  std::vector<char*> address_list_;
  std::vector<char*> aliases_;
};

}  // namespace veldmark::simulated
