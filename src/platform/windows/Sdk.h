#pragma once

#include <windows.h>

#include <winnetwk.h>

#include "platform/operations/FileSystem.h"
#include "platform/operations/NetworkProvider.h"
#include "platform/operations/Registry.h"
#include "platform/operations/Security.h"
#include "platform/operations/System.h"
#include "platform/operations/Timers.h"

namespace veldmark {

/// The SDK's type of the same layout as one of ours; layout/ proves it of each record.
template <typename Ours>
struct SdkType;

template <>
struct SdkType<char16_t> {
  using Type = wchar_t;
};
template <>
struct SdkType<DWORD> {
  using Type = ::DWORD;
};
template <>
struct SdkType<LARGE_INTEGER> {
  using Type = ::LARGE_INTEGER;
};
template <>
struct SdkType<FILETIME> {
  using Type = ::FILETIME;
};
template <>
struct SdkType<SYSTEMTIME> {
  using Type = ::SYSTEMTIME;
};
template <>
struct SdkType<TIME_ZONE_INFORMATION> {
  using Type = ::TIME_ZONE_INFORMATION;
};
template <>
struct SdkType<WIN32_FIND_DATAW> {
  using Type = ::WIN32_FIND_DATAW;
};
template <>
struct SdkType<SECURITY_ATTRIBUTES> {
  using Type = ::SECURITY_ATTRIBUTES;
};
template <>
struct SdkType<HKEY> {
  using Type = ::HKEY;
};

template <>
struct SdkType<NETRESOURCEW> {
  using Type = ::NETRESOURCEW;
};
template <>
struct SdkType<LUID> {
  using Type = ::LUID;
};
template <>
struct SdkType<TOKEN_PRIVILEGES> {
  using Type = ::TOKEN_PRIVILEGES;
};
template <>
struct SdkType<GENERIC_MAPPING> {
  using Type = ::GENERIC_MAPPING;
};
template <>
struct SdkType<OBJECT_TYPE_LIST> {
  using Type = ::OBJECT_TYPE_LIST;
};

/// One of our pointers as the SDK's.
template <typename Ours>
auto* Sdk(Ours* pointer) {
  return reinterpret_cast<typename SdkType<Ours>::Type*>(pointer);
}
template <typename Ours>
auto* Sdk(const Ours* pointer) {
  return reinterpret_cast<const typename SdkType<Ours>::Type*>(pointer);
}

/// The same for a record that the platform only reads but takes by a pointer that could write.
template <typename Ours>
auto* SdkReadOnly(const Ours* pointer) {
  return Sdk(const_cast<Ours*>(pointer));
}

inline ::HKEY Sdk(HKEY key) { return reinterpret_cast<::HKEY>(key); }
inline ::HMODULE Sdk(HMODULE module) { return reinterpret_cast<::HMODULE>(module); }
inline ::HWND Sdk(HWND window) { return static_cast<::HWND>(window); }
inline ::TIMERPROC Sdk(TIMERPROC callback) { return reinterpret_cast<::TIMERPROC>(callback); }

}  // namespace veldmark
