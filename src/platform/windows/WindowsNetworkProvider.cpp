#include "platform/windows/WindowsNetworkProvider.h"

#include "automation/LastError.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/windows/Recorded.h"
#include "platform/windows/Sdk.h"
#include "platform/windows/WineDifferences.h"

namespace veldmark {

DWORD WindowsNetworkProvider::WNetGetUniversalNameW(LPCWSTR local_path, DWORD info_level,
                                                    void* buffer, DWORD* buffer_size) {
  if (RunsUnderWine()) {
    SetLastPlatformError(0);
    // Wine checks neither argument by itself and answers 87 or 2250.
    if (info_level != kUniversalNameInfoLevel && info_level != kRemoteNameInfoLevel) {
      return kErrorInvalidLevel;
    }
    if (local_path != nullptr && (local_path[0] == u'\0' || local_path[1] != u':')) {
      return kErrorBadDevice;
    }
  }
  return Recorded([&] {
    return ::WNetGetUniversalNameW(Sdk(local_path), info_level, buffer, Sdk(buffer_size));
  });
}

DWORD WindowsNetworkProvider::WNetAddConnection3W(HWND owner, const NETRESOURCEW* resource,
                                                  LPCWSTR password, LPCWSTR user_name,
                                                  DWORD flags) {
  return Recorded([&] {
    return ::WNetAddConnection3W(Sdk(owner), SdkReadOnly(resource), Sdk(password), Sdk(user_name),
                                 flags);
  });
}

DWORD WindowsNetworkProvider::WNetCancelConnection2W(LPCWSTR name, DWORD flags, BOOL force) {
  return Recorded([&] { return ::WNetCancelConnection2W(Sdk(name), flags, force); });
}

DWORD WindowsNetworkProvider::WNetOpenEnumW(DWORD scope, DWORD type, DWORD usage,
                                            const NETRESOURCEW* parent, HANDLE* enumeration) {
  return Recorded(
      [&] { return ::WNetOpenEnumW(scope, type, usage, SdkReadOnly(parent), enumeration); });
}

DWORD WindowsNetworkProvider::WNetEnumResourceW(HANDLE enumeration, DWORD* count, void* buffer,
                                                DWORD* buffer_size) {
  return Recorded(
      [&] { return ::WNetEnumResourceW(enumeration, Sdk(count), buffer, Sdk(buffer_size)); });
}

DWORD WindowsNetworkProvider::WNetCloseEnum(HANDLE enumeration) {
  return Recorded([&] { return ::WNetCloseEnum(enumeration); });
}

DWORD WindowsNetworkProvider::WNetGetNetworkInformationW(LPCWSTR provider,
                                                         NETINFOSTRUCT* information) {
  return Recorded([&] {
    return ::WNetGetNetworkInformationW(Sdk(provider),
                                        reinterpret_cast<::NETINFOSTRUCT*>(information));
  });
}

}  // namespace veldmark
