#include "platform/windows/WindowsNetworkManagement.h"

#include <windows.h>

#include <lm.h>

#include "platform/windows/Recorded.h"
#include "platform/windows/Sdk.h"

namespace veldmark {

DWORD WindowsNetworkManagement::NetShareGetInfo(LPCWSTR server_name, LPCWSTR net_name, DWORD level,
                                                BYTE** buffer) {
  return Recorded([&] {
    return ::NetShareGetInfo(const_cast<::LPWSTR>(Sdk(server_name)),
                             const_cast<::LPWSTR>(Sdk(net_name)), level, buffer);
  });
}

DWORD WindowsNetworkManagement::NetApiBufferFree(void* buffer) {
  return Recorded([&] { return ::NetApiBufferFree(buffer); });
}

}  // namespace veldmark
