#include "platform/simulated/SimulatedVersionInformation.h"

#include "platform/operations/ErrorCodes.h"

namespace veldmark::simulated {

DWORD SimulatedVersionInformation::GetFileVersionInfoSizeW(LPCWSTR, DWORD*) {
  session_.BeginSafe("GetFileVersionInfoSizeW");
  return kErrorNotSupported;
}

BOOL SimulatedVersionInformation::GetFileVersionInfoW(LPCWSTR, DWORD, DWORD, void*) {
  session_.BeginSafe("GetFileVersionInfoW");
  return Fail(kErrorNotSupported);
}

}  // namespace veldmark::simulated
