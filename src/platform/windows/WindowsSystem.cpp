#include "platform/windows/WindowsSystem.h"

#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

#include "automation/com/ForeignObject.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/windows/Recorded.h"
#include "platform/windows/Sdk.h"
#include "platform/windows/WineDifferences.h"

namespace veldmark {
namespace {

// Lies in the library, or in the program that this is linked into.
constexpr char kAddressInModule = 0;

// Wine takes February 29 for a day of every year.
bool DayExists(const SYSTEMTIME& time) {
  const bool leap = time.wYear % 4 == 0 && (time.wYear % 100 != 0 || time.wYear % 400 == 0);
  return time.wMonth != 2 || time.wDay <= 28 || leap;
}

}  // namespace

BOOL WindowsSystem::GetUserNameW(LPWSTR buffer, DWORD* size) {
  return Recorded([&] { return ::GetUserNameW(Sdk(buffer), Sdk(size)); });
}

BOOL WindowsSystem::GetComputerNameW(LPWSTR buffer, DWORD* size) {
  return Recorded([&] { return ::GetComputerNameW(Sdk(buffer), Sdk(size)); });
}

DWORD WindowsSystem::GetTimeZoneInformation(TIME_ZONE_INFORMATION* information) {
  return Recorded([&] { return ::GetTimeZoneInformation(Sdk(information)); });
}

BOOL WindowsSystem::FileTimeToLocalFileTime(const FILETIME* file_time, FILETIME* local_file_time) {
  return Recorded([&] { return ::FileTimeToLocalFileTime(Sdk(file_time), Sdk(local_file_time)); });
}

BOOL WindowsSystem::FileTimeToSystemTime(const FILETIME* file_time, SYSTEMTIME* system_time) {
  return Recorded([&] { return ::FileTimeToSystemTime(Sdk(file_time), Sdk(system_time)); });
}

BOOL WindowsSystem::SystemTimeToFileTime(const SYSTEMTIME* system_time, FILETIME* file_time) {
  if (RunsUnderWine() && !DayExists(*system_time)) {
    SetLastPlatformError(kErrorInvalidParameter);
    return 0;
  }
  return Recorded([&] { return ::SystemTimeToFileTime(Sdk(system_time), Sdk(file_time)); });
}

INT WindowsSystem::VariantTimeToSystemTime(double variant_time, SYSTEMTIME* system_time) {
  return Recorded([&] { return ::VariantTimeToSystemTime(variant_time, Sdk(system_time)); });
}

INT WindowsSystem::SystemTimeToVariantTime(const SYSTEMTIME* system_time, double* variant_time) {
  SYSTEMTIME time = *system_time;
  // Wine counts two digits as 1950 to 2049; published are 1930 to 2029.
  if (RunsUnderWine() && time.wYear >= 30 && time.wYear < 50) time.wYear += 1900;
  return Recorded([&] { return ::SystemTimeToVariantTime(Sdk(&time), variant_time); });
}

std::u16string WindowsSystem::ModuleFolder() {
  return Recorded([] {
    ::HMODULE module = nullptr;
    ::GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<::LPCWSTR>(&kAddressInModule), &module);
    // A name as long as the buffer is one cut short.
    std::u16string path(kMaxPath, u'\0');
    for (;;) {
      const auto size = static_cast<DWORD>(path.size());
      const DWORD length = ::GetModuleFileNameW(module, Sdk(path.data()), size);
      if (length < size) {
        path.resize(length);
        break;
      }
      path.resize(path.size() * 2);
    }
    const std::size_t separator = path.find_last_of(u'\\');
    if (separator == std::u16string::npos) return std::u16string();
    const bool root = separator > 0 && path[separator - 1] == u':';
    return path.substr(0, separator + (root ? 1 : 0));
  });
}

Ref<Object> WindowsSystem::CreateObject(LPCWSTR program_identity) {
  return Recorded([&]() -> Ref<Object> {
    ::CLSID class_identity;
    com::ComRef<::IUnknown> made;
    if (FAILED(::CLSIDFromProgID(Sdk(program_identity), &class_identity)) ||
        FAILED(::CoCreateInstance(class_identity, nullptr, CLSCTX_SERVER, IID_IUnknown,
                                  reinterpret_cast<void**>(made.Receive())))) {
      return nullptr;
    }
    return Make<com::ForeignObject>(made.Get());
  });
}

INT WindowsSystem::MultiByteToWideChar(UINT code_page, DWORD flags, LPCSTR multi_byte,
                                       INT multi_byte_size, LPWSTR wide, INT wide_size) {
  return Recorded([&] {
    return ::MultiByteToWideChar(code_page, flags, multi_byte, multi_byte_size, Sdk(wide),
                                 wide_size);
  });
}

INT WindowsSystem::WideCharToMultiByte(UINT code_page, DWORD flags, LPCWSTR wide, INT wide_size,
                                       char* multi_byte, INT multi_byte_size,
                                       LPCSTR default_character, BOOL* used_default) {
  return Recorded([&] {
    return ::WideCharToMultiByte(code_page, flags, Sdk(wide), wide_size, multi_byte,
                                 multi_byte_size, default_character, used_default);
  });
}

INT WindowsSystem::LCMapStringW(DWORD locale, DWORD flags, LPCWSTR text, INT text_size,
                                LPWSTR mapped, INT mapped_size) {
  return Recorded([&] {
    return ::LCMapStringW(locale, flags, Sdk(text), text_size, Sdk(mapped), mapped_size);
  });
}

DWORD WindowsSystem::ExpandEnvironmentStringsW(LPCWSTR source, LPWSTR target, DWORD size) {
  return Recorded([&] { return ::ExpandEnvironmentStringsW(Sdk(source), Sdk(target), size); });
}

INT WindowsSystem::lstrlenW(LPCWSTR text) {
  return Recorded([&] { return ::lstrlenW(Sdk(text)); });
}

void* WindowsSystem::CoTaskMemAlloc(std::size_t size) {
  return Recorded([&] { return ::CoTaskMemAlloc(size); });
}

void WindowsSystem::CoTaskMemFree(void* memory) {
  Recorded([&] { ::CoTaskMemFree(memory); });
}

HLOCAL WindowsSystem::LocalAlloc(UINT flags, std::size_t size) {
  return Recorded([&] { return ::LocalAlloc(flags, size); });
}

HLOCAL WindowsSystem::LocalFree(HLOCAL memory) {
  return Recorded([&] { return ::LocalFree(memory); });
}

}  // namespace veldmark
