#include "platform/simulated/SimulatedSecurity.h"

#include "platform/operations/ErrorCodes.h"

namespace veldmark::simulated {

BOOL SimulatedSecurity::GetFileSecurityW(LPCWSTR, DWORD, void*, DWORD, DWORD*) {
  session_.BeginSafe("GetFileSecurityW");
  return Fail(kErrorNotSupported);
}

BOOL SimulatedSecurity::GetKernelObjectSecurity(HANDLE, DWORD, void*, DWORD, DWORD*) {
  session_.BeginSafe("GetKernelObjectSecurity");
  return Fail(kErrorNotSupported);
}

DWORD SimulatedSecurity::GetNamedSecurityInfoW(LPCWSTR, DWORD, DWORD, void**, void**, void**,
                                               void**, void**) {
  session_.BeginSafe("GetNamedSecurityInfoW");
  return kErrorNotSupported;
}

DWORD SimulatedSecurity::SetNamedSecurityInfoW(LPCWSTR, DWORD, DWORD, const void*, const void*,
                                               const void*, const void*) {
  session_.BeginSafe("SetNamedSecurityInfoW");
  return kErrorNotSupported;
}

BOOL SimulatedSecurity::ConvertStringSecurityDescriptorToSecurityDescriptorW(LPCWSTR, DWORD, void**,
                                                                             DWORD*) {
  session_.BeginSafe("ConvertStringSecurityDescriptorToSecurityDescriptorW");
  return Fail(kErrorNotSupported);
}

DWORD SimulatedSecurity::GetSecurityDescriptorLength(const void*) {
  session_.BeginSafe("GetSecurityDescriptorLength");
  return kErrorNotSupported;
}

BOOL SimulatedSecurity::AccessCheckByType(const void*, const void*, HANDLE, DWORD,
                                          OBJECT_TYPE_LIST*, DWORD, GENERIC_MAPPING*, void*, DWORD*,
                                          DWORD*, BOOL*) {
  session_.BeginSafe("AccessCheckByType");
  return Fail(kErrorNotSupported);
}

HANDLE SimulatedSecurity::GetCurrentProcess() {
  session_.BeginSafe("GetCurrentProcess");
  return nullptr;
}

BOOL SimulatedSecurity::OpenProcessToken(HANDLE, DWORD, HANDLE*) {
  session_.BeginSafe("OpenProcessToken");
  return Fail(kErrorNotSupported);
}

BOOL SimulatedSecurity::LookupPrivilegeValueW(LPCWSTR, LPCWSTR, LUID*) {
  session_.BeginSafe("LookupPrivilegeValueW");
  return Fail(kErrorNotSupported);
}

BOOL SimulatedSecurity::AdjustTokenPrivileges(HANDLE, BOOL, const TOKEN_PRIVILEGES*, DWORD,
                                              TOKEN_PRIVILEGES*, DWORD*) {
  session_.BeginSafe("AdjustTokenPrivileges");
  return Fail(kErrorNotSupported);
}

}  // namespace veldmark::simulated
