#include "platform/windows/WineDifferences.h"

#include <windows.h>

#include <aclapi.h>
#include <winspool.h>

#include <string>
#include <string_view>

#include "automation/LastError.h"
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

DWORD PublishedCopyError(LPCWSTR source, LPCWSTR target, DWORD code) {
  if (code == kErrorSuccess || source == nullptr || !RunsUnderWine()) return code;
  const auto* const name = reinterpret_cast<const wchar_t*>(source);
  const bool has_source = ::GetFileAttributesW(name) != INVALID_FILE_ATTRIBUTES;
  return PublishedPathError(has_source ? target : source, code);
}

bool IsOtherServer(std::u16string_view server) {
  if (server.starts_with(u"\\\\")) server.remove_prefix(2);
  if (server.empty()) return false;
  const std::wstring wanted(server.begin(), server.end());
  wchar_t own[MAX_COMPUTERNAME_LENGTH + 1] = {};
  ::DWORD size = MAX_COMPUTERNAME_LENGTH + 1;
  ::GetComputerNameW(own, &size);
  return ::lstrcmpiW(wanted.c_str(), own) != 0 && ::lstrcmpiW(wanted.c_str(), L"localhost") != 0;
}

DWORD OtherServerUnderWine(LPCWSTR server) {
  if (server == nullptr || !RunsUnderWine() || !IsOtherServer(server)) return kErrorSuccess;
  SetLastPlatformError(kErrorSuccess);
  return kErrorBadNetPath;
}

DWORD PublishedObjectName(LPCWSTR name, DWORD object_type, std::u16string& name_to_pass) {
  name_to_pass = name == nullptr ? u"" : name;
  if (!RunsUnderWine() || object_type == SE_FILE_OBJECT) return kErrorSuccess;
  if (object_type == SE_DS_OBJECT || object_type == SE_DS_OBJECT_ALL) return kErrorNotSupported;
  if (object_type < SE_FILE_OBJECT || object_type > SE_LMSHARE) return kErrorInvalidParameter;
  if (object_type == SE_PRINTER && name_to_pass.starts_with(u"\\\\\\")) {
    return kErrorInvalidPrinterName;
  }
  if (name_to_pass.starts_with(u"\\\\")) {
    const std::size_t end = name_to_pass.find(u'\\', 2);
    if (IsOtherServer(name_to_pass.substr(0, end))) return kErrorRpcServerUnavailable;
    name_to_pass.erase(0, end == std::u16string::npos ? end : end + 1);
  }
  switch (object_type) {
    case SE_REGISTRY_KEY:
      if (name_to_pass.find(u'\\') == std::u16string::npos) name_to_pass += u'\\';
      return kErrorSuccess;
    case SE_PRINTER: {
      ::HANDLE printer = nullptr;
      if (!::OpenPrinterW(reinterpret_cast<wchar_t*>(name_to_pass.data()), &printer, nullptr)) {
        return ::GetLastError();
      }
      ::ClosePrinter(printer);
      return kErrorNotSupported;
    }
    case SE_LMSHARE:
      return kErrorNetNameNotFound;
    default:
      return kErrorSuccess;
  }
}

}  // namespace veldmark
