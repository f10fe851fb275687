#include "platform/windows/WindowsNetworkManagement.h"

#include <windows.h>

#include <lm.h>

#include "platform/operations/ErrorCodes.h"
#include "platform/windows/Recorded.h"
#include "platform/windows/Sdk.h"
#include "platform/windows/WineDifferences.h"

namespace veldmark {
namespace {

constexpr DWORD kFullServerLevel = 102;

// The SDK takes some texts by pointers that could write.
::LPWSTR Writable(LPCWSTR text) { return const_cast<::LPWSTR>(Sdk(text)); }

}  // namespace

DWORD WindowsNetworkManagement::NetServerEnum(LPCWSTR server_name, DWORD level, BYTE** buffer,
                                              DWORD preferred_length, DWORD* entries_read,
                                              DWORD* total_entries, DWORD server_type,
                                              LPCWSTR domain, DWORD* resume_handle) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  return Recorded([&] {
    return ::NetServerEnum(Sdk(server_name), level, buffer, preferred_length, Sdk(entries_read),
                           Sdk(total_entries), server_type, Sdk(domain), Sdk(resume_handle));
  });
}

DWORD WindowsNetworkManagement::NetServerGetInfo(LPCWSTR server_name, DWORD level, BYTE** buffer) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  // Wine knows nothing of what level 102 adds, and answers 124: it is refused as to one who may
  // not see it.
  if (level == kFullServerLevel && RunsUnderWine()) return Answer(kErrorAccessDenied);
  return Recorded([&] { return ::NetServerGetInfo(Writable(server_name), level, buffer); });
}

DWORD WindowsNetworkManagement::NetWkstaGetInfo(LPCWSTR server_name, DWORD level, BYTE** buffer) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  return Recorded([&] { return ::NetWkstaGetInfo(Writable(server_name), level, buffer); });
}

DWORD WindowsNetworkManagement::NetGetDCName(LPCWSTR server_name, LPCWSTR domain_name,
                                             BYTE** buffer) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  return Recorded([&] { return ::NetGetDCName(Sdk(server_name), Sdk(domain_name), buffer); });
}

DWORD WindowsNetworkManagement::NetEnumerateTrustedDomains(LPCWSTR server_name,
                                                           LPWSTR* domain_names) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  // Wine has the name alone: a call would end the process.
  if (RunsUnderWine()) return Answer(kErrorNotSupported);
  return Recorded([&] {
    return static_cast<DWORD>(::NetEnumerateTrustedDomains(
        Writable(server_name), reinterpret_cast<::LPWSTR*>(domain_names)));
  });
}

DWORD WindowsNetworkManagement::NetShareEnum(LPCWSTR server_name, DWORD level, BYTE** buffer,
                                             DWORD preferred_length, DWORD* entries_read,
                                             DWORD* total_entries, DWORD* resume_handle) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  return Recorded([&] {
    return ::NetShareEnum(Writable(server_name), level, buffer, preferred_length, Sdk(entries_read),
                          Sdk(total_entries), Sdk(resume_handle));
  });
}

DWORD WindowsNetworkManagement::NetShareDel(LPCWSTR server_name, LPCWSTR net_name, DWORD reserved) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  return Recorded(
      [&] { return ::NetShareDel(Writable(server_name), Writable(net_name), reserved); });
}

DWORD WindowsNetworkManagement::NetServerDiskEnum(LPCWSTR server_name, DWORD level, BYTE** buffer,
                                                  DWORD preferred_length, DWORD* entries_read,
                                                  DWORD* total_entries, DWORD* resume_handle) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  return Recorded([&] {
    return ::NetServerDiskEnum(Writable(server_name), level, buffer, preferred_length,
                               Sdk(entries_read), Sdk(total_entries), Sdk(resume_handle));
  });
}

DWORD WindowsNetworkManagement::NetShareGetInfo(LPCWSTR server_name, LPCWSTR net_name, DWORD level,
                                                BYTE** buffer) {
  // Wine has no shares: it knows no other server, and answers 2310 whatever the level.
  if (RunsUnderWine()) {
    SetLastPlatformError(kErrorSuccess);
    if (server_name != nullptr && IsOtherServer(server_name)) return kErrorBadNetPath;
    if (level != 502) return kErrorInvalidLevel;
  }
  return Recorded(
      [&] { return ::NetShareGetInfo(Writable(server_name), Writable(net_name), level, buffer); });
}

DWORD WindowsNetworkManagement::NetApiBufferFree(void* buffer) {
  return Recorded([&] { return ::NetApiBufferFree(buffer); });
}

}  // namespace veldmark
