#include "platform/windows/WindowsNetworkManagement.h"

#include <windows.h>

#include <lm.h>

#include "platform/operations/ErrorCodes.h"
#include "platform/windows/Recorded.h"
#include "platform/windows/Sdk.h"
#include "platform/windows/WineDifferences.h"

namespace veldmark {

DWORD WindowsNetworkManagement::NetShareGetInfo(LPCWSTR server_name, LPCWSTR net_name, DWORD level,
                                                BYTE** buffer) {
  // Wine has no shares: it knows no other server, and answers 2310 whatever the level.
  if (RunsUnderWine()) {
    SetLastPlatformError(kErrorSuccess);
    if (server_name != nullptr && IsOtherServer(server_name)) return kErrorBadNetPath;
    if (level != 502) return kErrorInvalidLevel;
  }
  return Recorded([&] {
    return ::NetShareGetInfo(const_cast<::LPWSTR>(Sdk(server_name)),
                             const_cast<::LPWSTR>(Sdk(net_name)), level, buffer);
  });
}

DWORD WindowsNetworkManagement::NetApiBufferFree(void* buffer) {
  return Recorded([&] { return ::NetApiBufferFree(buffer); });
}

}  // namespace veldmark
