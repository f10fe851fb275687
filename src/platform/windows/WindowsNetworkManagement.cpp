#include "platform/windows/WindowsNetworkManagement.h"

#include <windows.h>

#include <lm.h>

#include "platform/operations/ErrorCodes.h"
#include "platform/windows/NetworkBlock.h"
#include "platform/windows/Recorded.h"
#include "platform/windows/Sdk.h"
#include "platform/windows/WineDifferences.h"

namespace veldmark {
namespace {

constexpr DWORD kFullServerLevel = 102;

// The SDK takes some texts by pointers that could write.
::LPWSTR Writable(LPCWSTR text) { return const_cast<::LPWSTR>(Sdk(text)); }

// Level 102 of this computer, which Wine doesn't have (124): what its level 101 tells, and nothing
// of what that leaves out.
DWORD WineServer(BYTE** buffer) {
  BYTE* brief = nullptr;
  if (const DWORD error = ::NetServerGetInfo(nullptr, 101, &brief)) return error;
  ::SERVER_INFO_102 record{};
  std::memcpy(&record, brief, sizeof(::SERVER_INFO_101));
  wchar_t none[] = L"";
  record.sv102_userpath = none;
  const DWORD error = HandOutBlock<::SERVER_INFO_102>(
      {record},
      {&::SERVER_INFO_102::sv102_name, &::SERVER_INFO_102::sv102_comment,
       &::SERVER_INFO_102::sv102_userpath},
      buffer);
  ::NetApiBufferFree(brief);
  return error;
}

// The local disks, which Wine doesn't enumerate (6118).
DWORD WineDisks(BYTE** buffer, DWORD* entries_read, DWORD* total_entries) {
  struct Disk {
    wchar_t name[3];
  };
  std::vector<Disk> disks;
  const DWORD drives = ::GetLogicalDrives();
  for (int index = 0; index < 26; ++index) {
    const wchar_t letter = static_cast<wchar_t>(L'A' + index);
    const wchar_t root[] = {letter, L':', L'\\', L'\0'};
    const bool is_there = (drives >> index & 1) != 0;
    if (is_there && ::GetDriveTypeW(root) != DRIVE_REMOTE) disks.push_back({{letter, L':', L'\0'}});
  }
  *entries_read = *total_entries = static_cast<DWORD>(disks.size());
  return HandOutBlock<Disk>(disks, {}, buffer);
}

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
  if (level == kFullServerLevel && buffer != nullptr && RunsUnderWine()) {
    return Answer(WineServer(buffer));
  }
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
  if (RunsUnderWine()) {
    // Wine has no shares, and answers 50 whatever the level.
    const bool has_level = level == 1 || level == 2;
    const DWORD code = WalkArgumentError(buffer, entries_read, total_entries, has_level);
    if (code != kErrorSuccess) return Answer(code);
    *buffer = nullptr;
    *entries_read = *total_entries = 0;
    if (resume_handle != nullptr) *resume_handle = 0;
    return Answer(kErrorSuccess);
  }
  return Recorded([&] {
    return ::NetShareEnum(Writable(server_name), level, buffer, preferred_length, Sdk(entries_read),
                          Sdk(total_entries), Sdk(resume_handle));
  });
}

DWORD WindowsNetworkManagement::NetShareDel(LPCWSTR server_name, LPCWSTR net_name, DWORD reserved) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  // Wine has no shares, and reports that it has ended any.
  if (RunsUnderWine()) return Answer(kErrorNetNameNotFound);
  return Recorded(
      [&] { return ::NetShareDel(Writable(server_name), Writable(net_name), reserved); });
}

DWORD WindowsNetworkManagement::NetServerDiskEnum(LPCWSTR server_name, DWORD level, BYTE** buffer,
                                                  DWORD preferred_length, DWORD* entries_read,
                                                  DWORD* total_entries, DWORD* resume_handle) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  if (RunsUnderWine()) {
    const DWORD code = WalkArgumentError(buffer, entries_read, total_entries, level == 0);
    if (code != kErrorSuccess) return Answer(code);
    if (resume_handle != nullptr) *resume_handle = 0;
    return Answer(WineDisks(buffer, entries_read, total_entries));
  }
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
