#pragma once

#include "platform/operations/NetworkManagement.h"

namespace veldmark {

/// Servers, and what they share.
class WindowsNetworkManagement final : public NetworkManagement {
 public:
  DWORD NetServerEnum(LPCWSTR server_name, DWORD level, BYTE** buffer, DWORD preferred_length,
                      DWORD* entries_read, DWORD* total_entries, DWORD server_type, LPCWSTR domain,
                      DWORD* resume_handle) override;
  DWORD NetServerGetInfo(LPCWSTR server_name, DWORD level, BYTE** buffer) override;
  DWORD NetWkstaGetInfo(LPCWSTR server_name, DWORD level, BYTE** buffer) override;
  DWORD NetGetDCName(LPCWSTR server_name, LPCWSTR domain_name, BYTE** buffer) override;
  DWORD NetEnumerateTrustedDomains(LPCWSTR server_name, LPWSTR* domain_names) override;
  DWORD NetShareEnum(LPCWSTR server_name, DWORD level, BYTE** buffer, DWORD preferred_length,
                     DWORD* entries_read, DWORD* total_entries, DWORD* resume_handle) override;
  DWORD NetShareGetInfo(LPCWSTR server_name, LPCWSTR net_name, DWORD level, BYTE** buffer) override;
  DWORD NetShareDel(LPCWSTR server_name, LPCWSTR net_name, DWORD reserved) override;
  DWORD NetServerDiskEnum(LPCWSTR server_name, DWORD level, BYTE** buffer, DWORD preferred_length,
                          DWORD* entries_read, DWORD* total_entries, DWORD* resume_handle) override;
  DWORD NetApiBufferFree(void* buffer) override;
};

}  // namespace veldmark
