#include "platform/windows/WindowsAccountManagement.h"

#include <windows.h>

#include <lm.h>

#include <string>

#include "platform/operations/ErrorCodes.h"
#include "platform/windows/NetworkBlock.h"
#include "platform/windows/Recorded.h"
#include "platform/windows/Sdk.h"
#include "platform/windows/WineAccounts.h"
#include "platform/windows/WineDifferences.h"

namespace veldmark {
namespace {

constexpr DWORD kFullUserLevel = 3;
constexpr DWORD kBriefUserLevel = 0;

}  // namespace

// Of the operations on global groups and the changes to users Wine has the names alone: a call
// would end the process.

DWORD WindowsAccountManagement::NetUserEnum(LPCWSTR server_name, DWORD level, DWORD filter,
                                            BYTE** buffer, DWORD preferred_length,
                                            DWORD* entries_read, DWORD* total_entries,
                                            DWORD* resume_handle) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  if (RunsUnderWine()) {
    const bool has_level = level == kBriefUserLevel || level == kFullUserLevel;
    if (const DWORD code = WalkArgumentError(buffer, entries_read, total_entries, has_level)) {
      return Answer(code);
    }
    if (resume_handle != nullptr) *resume_handle = 0;
    return Answer(WineUsers(level, filter, buffer, entries_read, total_entries));
  }
  return Recorded([&] {
    return ::NetUserEnum(Sdk(server_name), level, filter, buffer, preferred_length,
                         Sdk(entries_read), Sdk(total_entries), Sdk(resume_handle));
  });
}

DWORD WindowsAccountManagement::NetQueryDisplayInformation(LPCWSTR server_name, DWORD level,
                                                           DWORD index, DWORD entries_requested,
                                                           DWORD preferred_length,
                                                           DWORD* entries_returned, void** buffer) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  const DWORD status = Recorded([&] {
    return ::NetQueryDisplayInformation(Sdk(server_name), level, index, entries_requested,
                                        preferred_length, Sdk(entries_returned), buffer);
  });
  if (status == kErrorSuccess && RunsUnderWine()) MendDisplayList(index, entries_returned, buffer);
  return status;
}

DWORD WindowsAccountManagement::NetUserGetInfo(LPCWSTR server_name, LPCWSTR user_name, DWORD level,
                                               BYTE** buffer) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  if (level == kFullUserLevel && RunsUnderWine()) {
    return Answer(buffer == nullptr ? kErrorInvalidParameter : WineUser(user_name, buffer));
  }
  return Recorded(
      [&] { return ::NetUserGetInfo(Sdk(server_name), Sdk(user_name), level, buffer); });
}

DWORD WindowsAccountManagement::NetUserSetInfo(LPCWSTR server_name, LPCWSTR user_name, DWORD level,
                                               const BYTE* record, DWORD* parameter_error) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  if (RunsUnderWine()) return Answer(kErrorNotSupported);
  return Recorded([&] {
    return ::NetUserSetInfo(Sdk(server_name), Sdk(user_name), level, const_cast<BYTE*>(record),
                            Sdk(parameter_error));
  });
}

DWORD WindowsAccountManagement::NetUserGetGroups(LPCWSTR server_name, LPCWSTR user_name,
                                                 DWORD level, BYTE** buffer, DWORD preferred_length,
                                                 DWORD* entries_read, DWORD* total_entries) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  return Recorded([&] {
    return ::NetUserGetGroups(Sdk(server_name), Sdk(user_name), level, buffer, preferred_length,
                              Sdk(entries_read), Sdk(total_entries));
  });
}

DWORD WindowsAccountManagement::NetUserGetLocalGroups(LPCWSTR server_name, LPCWSTR user_name,
                                                      DWORD level, DWORD flags, BYTE** buffer,
                                                      DWORD preferred_length, DWORD* entries_read,
                                                      DWORD* total_entries) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  if (RunsUnderWine()) {
    // Wine has every name be that of an administrator.
    BYTE* user = nullptr;
    const std::u16string name = user_name == nullptr ? u"" : user_name;
    const std::u16string own = name.substr(name.find(u'\\') + 1);
    const DWORD code = ::NetUserGetInfo(nullptr, Sdk(own.c_str()), kBriefUserLevel, &user);
    ::NetApiBufferFree(user);
    if (code != kErrorSuccess) return Answer(code);
  }
  return Recorded([&] {
    return ::NetUserGetLocalGroups(Sdk(server_name), Sdk(user_name), level, flags, buffer,
                                   preferred_length, Sdk(entries_read), Sdk(total_entries));
  });
}

DWORD WindowsAccountManagement::NetGroupEnum(LPCWSTR server_name, DWORD level, BYTE** buffer,
                                             DWORD preferred_length, DWORD* entries_read,
                                             DWORD* total_entries, UINT_PTR* resume_handle) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  return Recorded([&] {
    return ::NetGroupEnum(Sdk(server_name), level, buffer, preferred_length, Sdk(entries_read),
                          Sdk(total_entries), reinterpret_cast<::PDWORD_PTR>(resume_handle));
  });
}

DWORD WindowsAccountManagement::NetGroupGetUsers(LPCWSTR server_name, LPCWSTR group_name,
                                                 DWORD level, BYTE** buffer, DWORD preferred_length,
                                                 DWORD* entries_read, DWORD* total_entries,
                                                 UINT_PTR* resume_handle) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  if (RunsUnderWine()) return Answer(kErrorNotSupported);
  return Recorded([&] {
    return ::NetGroupGetUsers(Sdk(server_name), Sdk(group_name), level, buffer, preferred_length,
                              Sdk(entries_read), Sdk(total_entries),
                              reinterpret_cast<::PDWORD_PTR>(resume_handle));
  });
}

DWORD WindowsAccountManagement::NetGroupGetInfo(LPCWSTR server_name, LPCWSTR group_name,
                                                DWORD level, BYTE** buffer) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  return Recorded(
      [&] { return ::NetGroupGetInfo(Sdk(server_name), Sdk(group_name), level, buffer); });
}

DWORD WindowsAccountManagement::NetGroupAdd(LPCWSTR server_name, DWORD level, const BYTE* record,
                                            DWORD* parameter_error) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  if (RunsUnderWine()) return Answer(kErrorNotSupported);
  return Recorded([&] {
    return ::NetGroupAdd(Sdk(server_name), level, const_cast<BYTE*>(record), Sdk(parameter_error));
  });
}

DWORD WindowsAccountManagement::NetGroupSetInfo(LPCWSTR server_name, LPCWSTR group_name,
                                                DWORD level, const BYTE* record,
                                                DWORD* parameter_error) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  if (RunsUnderWine()) return Answer(kErrorNotSupported);
  return Recorded([&] {
    return ::NetGroupSetInfo(Sdk(server_name), Sdk(group_name), level, const_cast<BYTE*>(record),
                             Sdk(parameter_error));
  });
}

DWORD WindowsAccountManagement::NetLocalGroupEnum(LPCWSTR server_name, DWORD level, BYTE** buffer,
                                                  DWORD preferred_length, DWORD* entries_read,
                                                  DWORD* total_entries, UINT_PTR* resume_handle) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  if (RunsUnderWine()) {
    if (const DWORD code = WalkArgumentError(buffer, entries_read, total_entries, level == 1)) {
      return Answer(code);
    }
    if (resume_handle != nullptr) *resume_handle = 0;
    return Answer(WineLocalGroups(buffer, entries_read, total_entries));
  }
  return Recorded([&] {
    return ::NetLocalGroupEnum(Sdk(server_name), level, buffer, preferred_length, Sdk(entries_read),
                               Sdk(total_entries), reinterpret_cast<::PDWORD_PTR>(resume_handle));
  });
}

DWORD WindowsAccountManagement::NetLocalGroupGetMembers(LPCWSTR server_name, LPCWSTR group_name,
                                                        DWORD level, BYTE** buffer,
                                                        DWORD preferred_length, DWORD* entries_read,
                                                        DWORD* total_entries,
                                                        UINT_PTR* resume_handle) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  if (RunsUnderWine()) {
    if (const DWORD code = WalkArgumentError(buffer, entries_read, total_entries, level == 0)) {
      return Answer(code);
    }
    if (resume_handle != nullptr) *resume_handle = 0;
    return Answer(WineLocalGroupMembers(group_name, buffer, entries_read, total_entries));
  }
  return Recorded([&] {
    return ::NetLocalGroupGetMembers(Sdk(server_name), Sdk(group_name), level, buffer,
                                     preferred_length, Sdk(entries_read), Sdk(total_entries),
                                     reinterpret_cast<::PDWORD_PTR>(resume_handle));
  });
}

DWORD WindowsAccountManagement::NetLocalGroupGetInfo(LPCWSTR server_name, LPCWSTR group_name,
                                                     DWORD level, BYTE** buffer) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  if (RunsUnderWine()) {
    if (const DWORD code = WalkArgumentError(buffer, buffer, buffer, level == 1))
      return Answer(code);
    return Answer(WineLocalGroup(group_name, buffer));
  }
  return Recorded(
      [&] { return ::NetLocalGroupGetInfo(Sdk(server_name), Sdk(group_name), level, buffer); });
}

DWORD WindowsAccountManagement::NetLocalGroupAdd(LPCWSTR server_name, DWORD level,
                                                 const BYTE* record, DWORD* parameter_error) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  // Wine reports success and does nothing.
  if (RunsUnderWine()) return Answer(kErrorNotSupported);
  return Recorded([&] {
    return ::NetLocalGroupAdd(Sdk(server_name), level, const_cast<BYTE*>(record),
                              Sdk(parameter_error));
  });
}

DWORD WindowsAccountManagement::NetLocalGroupSetInfo(LPCWSTR server_name, LPCWSTR group_name,
                                                     DWORD level, const BYTE* record,
                                                     DWORD* parameter_error) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  // Wine reports success and does nothing.
  if (RunsUnderWine()) return Answer(kErrorNotSupported);
  return Recorded([&] {
    return ::NetLocalGroupSetInfo(Sdk(server_name), Sdk(group_name), level,
                                  const_cast<BYTE*>(record), Sdk(parameter_error));
  });
}

DWORD WindowsAccountManagement::NetUserModalsGet(LPCWSTR server_name, DWORD level, BYTE** buffer) {
  if (const DWORD code = OtherServerUnderWine(server_name)) return code;
  if (RunsUnderWine() && buffer != nullptr && (level == 0 || level == 3)) {
    return Answer(WinePolicy(level, buffer));
  }
  return Recorded([&] { return ::NetUserModalsGet(Sdk(server_name), level, buffer); });
}

}  // namespace veldmark
