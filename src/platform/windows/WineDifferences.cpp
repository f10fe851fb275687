#include "platform/windows/WineDifferences.h"

#include <windows.h>

#include <string>
#include <string_view>

#include "platform/operations/ErrorCodes.h"

namespace veldmark {
namespace {

bool StartsWith(std::wstring_view text, std::wstring_view start) {
  return text.substr(0, start.size()) == start;
}

bool DriveIsMissing(std::wstring_view path) {
  if (StartsWith(path, L"\\\\?\\")) path.remove_prefix(4);
  if (path.size() < 2 || path[1] != L':') return false;
  const wchar_t root[] = {path[0], L':', L'\\', L'\0'};
  return ::GetDriveTypeW(root) == DRIVE_NO_ROOT_DIR;
}

// Whether the path names a server and a share of which nothing is there.
bool ShareIsMissing(std::wstring_view path) {
  if (StartsWith(path, L"\\\\?\\UNC\\")) {
    path.remove_prefix(8);
  } else if (StartsWith(path, L"\\\\") && !StartsWith(path, L"\\\\?\\") &&
             !StartsWith(path, L"\\\\.\\")) {
    path.remove_prefix(2);
  } else {
    return false;
  }
  const std::size_t share = path.find(L'\\');
  if (share == std::wstring_view::npos) return true;
  const std::wstring root =
      L"\\\\?\\UNC\\" + std::wstring(path.substr(0, path.find(L'\\', share + 1))) + L"\\";
  return ::GetFileAttributesW(root.c_str()) == INVALID_FILE_ATTRIBUTES;
}

}  // namespace

bool RunsUnderWine() {
  static const bool wine =
      ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
  return wine;
}

DWORD PublishedPathError(LPCWSTR path, DWORD code) {
  if (path == nullptr || !RunsUnderWine()) return code;
  const std::wstring_view text = reinterpret_cast<const wchar_t*>(path);
  if (code == kErrorFileNotFound && DriveIsMissing(text)) return kErrorPathNotFound;
  const bool may_be_network =
      code == kErrorPathNotFound || code == kErrorBadDevType || code == kErrorDirNotRoot;
  if (may_be_network && ShareIsMissing(text)) {
    return kErrorBadNetPath;
  }
  return code;
}

}  // namespace veldmark
