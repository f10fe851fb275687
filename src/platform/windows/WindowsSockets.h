#pragma once

#include "platform/operations/Sockets.h"

namespace veldmark {

/// Host names, by the system's socket library.
class WindowsSockets final : public Sockets {
 public:
  int WSAStartup(WORD version, SOCKETS_DATA* data) override;
  int WSACleanup() override;
  const HOSTENT* gethostbyname(LPCSTR name) override;
};

}  // namespace veldmark
