#pragma once

#include <map>
#include <vector>

#include "platform/operations/NetworkProvider.h"
#include "platform/simulated/families/Session.h"

namespace veldmark::simulated {

// The redirected drives of an estate's local computer, and the networks that it sees.
class SimulatedNetworkProvider : public NetworkProvider {
 public:
  explicit SimulatedNetworkProvider(Session& session) : session_(session) {}

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

 private:
  // A network, or a domain of one.
  struct Found {
    Text name;
    Text comment;
    Text provider;
    DWORD display_type;
  };

  struct OpenEnumeration {
    std::vector<Found> found;
    std::size_t next = 0;
    std::size_t page = 0;  // 0: no limit
  };

  Session& session_;
  std::map<std::uintptr_t, OpenEnumeration> enumerations_;
};

}  // namespace veldmark::simulated
