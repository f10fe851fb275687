#include "platform/windows/WindowsMessages.h"

#include "platform/windows/Recorded.h"
#include "platform/windows/Sdk.h"

namespace veldmark {

HMODULE WindowsMessages::LoadLibraryExW(LPCWSTR library_file_name, HANDLE file, DWORD flags) {
  return Recorded([&] {
    return HMODULE{
        reinterpret_cast<std::uintptr_t>(::LoadLibraryExW(Sdk(library_file_name), file, flags))};
  });
}

BOOL WindowsMessages::FreeLibrary(HMODULE module) {
  return Recorded([&] { return ::FreeLibrary(Sdk(module)); });
}

DWORD WindowsMessages::FormatMessageW(DWORD flags, const void* source, DWORD message_id,
                                      DWORD language_id, LPWSTR buffer, DWORD size,
                                      void* arguments) {
  return Recorded([&] {
    return ::FormatMessageW(flags, source, message_id, language_id, Sdk(buffer), size,
                            static_cast<va_list*>(arguments));
  });
}

}  // namespace veldmark
