#include "platform/simulated/SimulatedNetworkManagement.h"

#include "platform/operations/ErrorCodes.h"

namespace veldmark::simulated {

DWORD SimulatedNetworkManagement::NetShareGetInfo(LPCWSTR, LPCWSTR, DWORD, BYTE**) {
  session_.BeginSafe("NetShareGetInfo");
  return kErrorNotSupported;
}

DWORD SimulatedNetworkManagement::NetApiBufferFree(void*) {
  session_.BeginSafe("NetApiBufferFree");
  return kErrorNotSupported;
}

}  // namespace veldmark::simulated
