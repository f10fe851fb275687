#pragma once

#include "platform/operations/NetworkProvider.h"
#include "platform/simulated/families/Session.h"

namespace veldmark::simulated {

// The redirected drives of an estate's local computer.
class SimulatedNetworkProvider : public NetworkProvider {
 public:
  explicit SimulatedNetworkProvider(Session& session) : session_(session) {}

  DWORD WNetGetUniversalNameW(LPCWSTR local_path, DWORD info_level, void* buffer,
                              DWORD* buffer_size) override;
  DWORD WNetAddConnection3W(HWND owner, const NETRESOURCEW* resource, LPCWSTR password,
                            LPCWSTR user_name, DWORD flags) override;
  DWORD WNetCancelConnection2W(LPCWSTR name, DWORD flags, BOOL force) override;

 private:
  Session& session_;
};

}  // namespace veldmark::simulated
