#include "platform/simulated/SimulatedMultimedia.h"

#include "platform/operations/ErrorCodes.h"

namespace veldmark::simulated {

DWORD SimulatedMultimedia::mciSendStringA(LPCSTR, char*, UINT, HWND) {
  session_.BeginSafe("mciSendStringA");
  return kErrorNotSupported;
}

}  // namespace veldmark::simulated
