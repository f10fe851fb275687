#include "platform/windows/WindowsLocalSecurityAuthority.h"

#include <windows.h>

#include <ntsecapi.h>

#include <string>

#include "platform/windows/Recorded.h"
#include "platform/windows/WineDifferences.h"

namespace veldmark {
namespace {

constexpr NTSTATUS kBadNetworkPath = static_cast<NTSTATUS>(0xC00000BE);

::LSA_UNICODE_STRING* Sdk(LSA_UNICODE_STRING* text) {
  return reinterpret_cast<::LSA_UNICODE_STRING*>(text);
}

}  // namespace

NTSTATUS WindowsLocalSecurityAuthority::LsaOpenPolicy(LSA_UNICODE_STRING* system_name,
                                                      LSA_OBJECT_ATTRIBUTES* attributes,
                                                      DWORD desired_access, HANDLE* policy) {
  if (system_name != nullptr && system_name->Buffer != nullptr) {
    const std::u16string server(system_name->Buffer, system_name->Length / sizeof(WCHAR));
    if (OtherServerUnderWine(server.c_str())) return kBadNetworkPath;
    // Wine takes the text for one with a NUL behind it, and this computer without a name too.
    if (RunsUnderWine()) system_name = nullptr;
  }
  return Recorded([&] {
    return ::LsaOpenPolicy(Sdk(system_name), reinterpret_cast<::LSA_OBJECT_ATTRIBUTES*>(attributes),
                           desired_access, policy);
  });
}

NTSTATUS WindowsLocalSecurityAuthority::LsaEnumerateAccountsWithUserRight(HANDLE policy,
                                                                          LSA_UNICODE_STRING* right,
                                                                          void** buffer,
                                                                          DWORD* count) {
  return Recorded([&] {
    return ::LsaEnumerateAccountsWithUserRight(policy, Sdk(right), buffer,
                                               reinterpret_cast<::PULONG>(count));
  });
}

DWORD WindowsLocalSecurityAuthority::LsaNtStatusToWinError(NTSTATUS status) {
  return Recorded([&] { return static_cast<DWORD>(::LsaNtStatusToWinError(status)); });
}

NTSTATUS WindowsLocalSecurityAuthority::LsaFreeMemory(void* buffer) {
  return Recorded([&] { return ::LsaFreeMemory(buffer); });
}

NTSTATUS WindowsLocalSecurityAuthority::LsaClose(HANDLE policy) {
  return Recorded([&] { return ::LsaClose(policy); });
}

}  // namespace veldmark
