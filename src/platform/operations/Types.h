#pragma once

#include <cstddef>
#include <cstdint>

// The calling convention of functions that the platform calls back. Only 32-bit Windows has a
// choice.
#if defined(_WIN32)
#define VELDMARK_CALLBACK __stdcall
#else
#define VELDMARK_CALLBACK
#endif

// The platform's scalar types under their published names, with their published widths. They live
// in our namespace, so that a source that also includes the platform's own headers keeps both sets
// apart.
namespace veldmark {

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using LONG = std::int32_t;
using UINT = std::uint32_t;
using INT = std::int32_t;
using BOOL = std::int32_t;
using LARGE_INTEGER = std::int64_t;
using UINT_PTR = std::uintptr_t;
using WCHAR = char16_t;
using LPWSTR = char16_t*;
using LPCWSTR = const char16_t*;
using LPCSTR = const char*;
// The result of the registry operations: 0 or an error code.
using LSTATUS = std::int32_t;
// The result of an interface's methods: negative for failure.
using HRESULT = std::int32_t;

using HANDLE = void*;
using HLOCAL = void*;
using HWND = void*;
// A registry key and a loaded module are pointer-sized numbers of their own kind, so that neither
// passes for the other or for a file handle.
enum class HKEY : std::uintptr_t {};
enum class HMODULE : std::uintptr_t {};

// What CreateFileW and FindFirstFileW return on failure: all bits set, and not null.
inline const HANDLE kInvalidHandleValue = reinterpret_cast<HANDLE>(std::intptr_t{-1});

// The predefined keys are sign-extended from 32 bits, also in 64-bit programs.
constexpr HKEY PredefinedKey(std::uint32_t value) {
  return HKEY{
      static_cast<std::uintptr_t>(static_cast<std::intptr_t>(static_cast<std::int32_t>(value)))};
}
inline constexpr HKEY kHkeyClassesRoot = PredefinedKey(0x80000000);
inline constexpr HKEY kHkeyCurrentUser = PredefinedKey(0x80000001);
inline constexpr HKEY kHkeyLocalMachine = PredefinedKey(0x80000002);
inline constexpr HKEY kHkeyUsers = PredefinedKey(0x80000003);

}  // namespace veldmark
