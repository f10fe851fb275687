#pragma once

#include "platform/operations/NetworkManagement.h"

namespace veldmark {

/// What the servers that this process can reach share.
class WindowsNetworkManagement final : public NetworkManagement {
 public:
  DWORD NetShareGetInfo(LPCWSTR server_name, LPCWSTR net_name, DWORD level, BYTE** buffer) override;
  DWORD NetApiBufferFree(void* buffer) override;
};

}  // namespace veldmark
