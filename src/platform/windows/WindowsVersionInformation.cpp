#include "platform/windows/WindowsVersionInformation.h"

#include <windows.h>

#include "platform/windows/Recorded.h"
#include "platform/windows/Sdk.h"

namespace veldmark {

DWORD WindowsVersionInformation::GetFileVersionInfoSizeW(LPCWSTR file_name, DWORD* handle) {
  return Recorded([&] { return ::GetFileVersionInfoSizeW(Sdk(file_name), Sdk(handle)); });
}

BOOL WindowsVersionInformation::GetFileVersionInfoW(LPCWSTR file_name, DWORD handle, DWORD length,
                                                    void* data) {
  return Recorded([&] { return ::GetFileVersionInfoW(Sdk(file_name), handle, length, data); });
}

}  // namespace veldmark
