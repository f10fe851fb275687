#pragma once

#include "platform/operations/LocalSecurityAuthority.h"

namespace veldmark::simulated {

inline constexpr NTSTATUS Status(DWORD value) { return static_cast<NTSTATUS>(value); }

inline constexpr NTSTATUS kStatusNoMoreEntries = Status(0x8000001A);
inline constexpr NTSTATUS kStatusInvalidHandle = Status(0xC0000008);
inline constexpr NTSTATUS kStatusInvalidParameter = Status(0xC000000D);
inline constexpr NTSTATUS kStatusAccessDenied = Status(0xC0000022);
inline constexpr NTSTATUS kStatusNoSuchPrivilege = Status(0xC0000060);
inline constexpr NTSTATUS kStatusServerUnavailable = Status(0xC0020017);

// The status that carries an error code as it is, as the platform has it for network errors.
inline constexpr DWORD kStatusOfErrorCode = 0xC0010000;
inline constexpr NTSTATUS StatusOf(DWORD error) {
  return error == 0 ? 0 : Status(kStatusOfErrorCode | (error & 0xFFFF));
}

inline constexpr DWORD Unsigned(NTSTATUS status) { return static_cast<DWORD>(status); }

}  // namespace veldmark::simulated
