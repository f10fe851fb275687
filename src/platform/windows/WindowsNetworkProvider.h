#pragma once

#include "platform/operations/NetworkProvider.h"

namespace veldmark {

/// Network connections and names of the operating system that this process runs on.
class WindowsNetworkProvider final : public NetworkProvider {
 public:
  DWORD WNetGetUniversalNameW(LPCWSTR local_path, DWORD info_level, void* buffer,
                              DWORD* buffer_size) override;
  DWORD WNetAddConnection3W(HWND owner, const NETRESOURCEW* resource, LPCWSTR password,
                            LPCWSTR user_name, DWORD flags) override;
  DWORD WNetCancelConnection2W(LPCWSTR name, DWORD flags, BOOL force) override;
  DWORD WNetOpenEnumW(DWORD scope, DWORD type, DWORD usage, const NETRESOURCEW* parent,
                      HANDLE* enumeration) override;
  DWORD WNetEnumResourceW(HANDLE enumeration, DWORD* count, void* buffer,
                          DWORD* buffer_size) override;
  DWORD WNetCloseEnum(HANDLE enumeration) override;
  DWORD WNetGetNetworkInformationW(LPCWSTR provider, NETINFOSTRUCT* information) override;
};

}  // namespace veldmark
