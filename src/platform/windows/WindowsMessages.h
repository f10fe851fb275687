#pragma once

#include "platform/operations/Messages.h"

namespace veldmark {

/// Message tables of the operating system that this process runs on.
class WindowsMessages final : public Messages {
 public:
  HMODULE LoadLibraryExW(LPCWSTR library_file_name, HANDLE file, DWORD flags) override;
  BOOL FreeLibrary(HMODULE module) override;
  DWORD FormatMessageW(DWORD flags, const void* source, DWORD message_id, DWORD language_id,
                       LPWSTR buffer, DWORD size, void* arguments) override;
};

}  // namespace veldmark
