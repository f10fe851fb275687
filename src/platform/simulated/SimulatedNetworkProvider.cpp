#include "platform/simulated/SimulatedNetworkProvider.h"

#include <cstring>

#include "platform/automation/CaseMapping.h"
#include "platform/operations/ErrorCodes.h"

namespace veldmark::simulated {

DWORD SimulatedNetworkProvider::WNetGetUniversalNameW(LPCWSTR local_path, DWORD info_level,
                                                      void* buffer, DWORD* buffer_size) {
  const TextView path = ViewOf(local_path);
  if (const DWORD fault = session_.Begin("WNetGetUniversalNameW", path)) return fault;
  if (info_level != kUniversalNameInfoLevel) return kErrorInvalidLevel;
  if (buffer_size == nullptr) return kErrorInvalidParameter;
  if (path.size() < 2 || path[1] != u':') return kErrorBadDevice;
  const auto& mapped = session_.estate.mapped_drives();
  const auto found = mapped.find(UpperCase(path[0]));
  if (found == mapped.end()) return kErrorNotConnected;
  const Text name = found->second + Text(path.substr(2));
  const std::size_t text_size = (name.size() + 1) * sizeof(WCHAR);
  const std::size_t needed = sizeof(UNIVERSAL_NAME_INFOW) + text_size;
  if (buffer == nullptr || *buffer_size < needed) {
    *buffer_size = static_cast<DWORD>(needed);
    return kErrorMoreData;
  }
  auto* const text = static_cast<std::uint8_t*>(buffer) + sizeof(UNIVERSAL_NAME_INFOW);
  const UNIVERSAL_NAME_INFOW record{reinterpret_cast<LPWSTR>(text)};
  std::memcpy(buffer, &record, sizeof record);
  std::memcpy(text, name.c_str(), text_size);
  return 0;
}

DWORD SimulatedNetworkProvider::WNetAddConnection3W(HWND, const NETRESOURCEW*, LPCWSTR, LPCWSTR,
                                                    DWORD) {
  session_.BeginSafe("WNetAddConnection3W");
  return kErrorNotSupported;
}

DWORD SimulatedNetworkProvider::WNetCancelConnection2W(LPCWSTR name, DWORD, BOOL) {
  session_.BeginSafe("WNetCancelConnection2W", ViewOf(name));
  return kErrorNotSupported;
}

}  // namespace veldmark::simulated
