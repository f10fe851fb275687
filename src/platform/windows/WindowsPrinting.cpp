#include "platform/windows/WindowsPrinting.h"

#include <windows.h>

#include <winspool.h>

#include <cstring>
#include <string>
#include <vector>

#include "platform/operations/ErrorCodes.h"
#include "platform/windows/Recorded.h"
#include "platform/windows/Sdk.h"
#include "platform/windows/WineDifferences.h"

namespace veldmark {
namespace {

constexpr DWORD kFullLevel = 2;

BOOL Refuse(DWORD code) {
  SetLastPlatformError(code);
  return 0;
}

/// Why the published operation refuses such a call; 0 where it doesn't. Wine takes what counts and
/// buffer there are, and any name for this computer.
DWORD ArgumentError(LPCWSTR name, const BYTE* buffer, DWORD size, const DWORD* needed,
                    const DWORD* returned) {
  if (needed == nullptr || returned == nullptr) return kErrorNullReference;
  if (buffer == nullptr && size != 0) return kErrorInvalidUserBuffer;
  const std::u16string_view server = name == nullptr ? std::u16string_view() : name;
  if (server.empty()) return kErrorSuccess;
  if (!server.starts_with(u"\\\\") || server.size() == 2) return kErrorInvalidName;
  return IsOtherServer(server) ? kErrorRpcServerUnavailable : kErrorSuccess;
}

std::wstring OwnServerName() {
  wchar_t own[MAX_COMPUTERNAME_LENGTH + 1] = {};
  ::DWORD size = MAX_COMPUTERNAME_LENGTH + 1;
  ::GetComputerNameW(own, &size);
  return L"\\\\" + std::wstring(own);
}

/// This computer's printers as Wine lists them; 0 or an error code.
DWORD ListOwn(std::vector<::PRINTER_INFO_2W>& records, ::DWORD& needed, ::DWORD& returned) {
  needed = returned = 0;
  for (;;) {
    const ::DWORD size = static_cast<::DWORD>(records.size() * sizeof records[0]);
    if (::EnumPrintersW(PRINTER_ENUM_NAME, nullptr, kFullLevel,
                        reinterpret_cast<BYTE*>(records.data()), size, &needed, &returned)) {
      return kErrorSuccess;
    }
    const DWORD error = ::GetLastError();
    if (error != kErrorInsufficientBuffer || needed <= size) return error;
    records.resize(needed / sizeof records[0] + 1);
  }
}

/// The list of a server by its name, of which Wine knows nothing: its records name neither the
/// server nor the printers by it. The texts come behind what Wine puts into the buffer.
DWORD ListByServerName(BYTE* buffer, DWORD size, DWORD* needed, DWORD* returned) {
  *needed = *returned = 0;
  std::vector<::PRINTER_INFO_2W> records;
  ::DWORD own_size = 0;
  ::DWORD count = 0;
  if (const DWORD error = ListOwn(records, own_size, count)) return error;
  const std::wstring server = OwnServerName();
  std::wstring texts;
  std::vector<std::size_t> places;
  const auto add = [&](const std::wstring& text) {
    places.push_back(texts.size());
    texts += text;
    texts += L'\0';
  };
  for (::DWORD index = 0; index < count; ++index) {
    const wchar_t* const name = records[index].pPrinterName;
    add(server);
    add(server + L"\\" + (name == nullptr ? L"" : name));
  }
  const std::size_t before = (own_size + 1) / sizeof(wchar_t) * sizeof(wchar_t);
  const std::size_t bytes = texts.size() * sizeof(wchar_t);
  *needed = static_cast<DWORD>(count == 0 ? 0 : before + bytes);
  if (size < *needed) return kErrorInsufficientBuffer;
  if (count == 0) return kErrorSuccess;

  ::DWORD filled = 0;
  if (!::EnumPrintersW(PRINTER_ENUM_NAME, nullptr, kFullLevel, buffer, own_size, &own_size,
                       &filled)) {
    return ::GetLastError();
  }
  std::memcpy(buffer + before, texts.data(), bytes);
  auto* const behind = reinterpret_cast<wchar_t*>(buffer + before);
  auto* const filled_records = reinterpret_cast<::PRINTER_INFO_2W*>(buffer);
  *returned = filled < count ? filled : count;
  for (::DWORD index = 0; index < *returned; ++index) {
    filled_records[index].pServerName = behind + places[2 * index];
    filled_records[index].pPrinterName = behind + places[2 * index + 1];
  }
  return kErrorSuccess;
}

}  // namespace

BOOL WindowsPrinting::EnumPrintersW(DWORD flags, LPCWSTR name, DWORD level, BYTE* buffer,
                                    DWORD size, DWORD* needed, DWORD* returned) {
  if (RunsUnderWine()) {
    if (const DWORD code = ArgumentError(name, buffer, size, needed, returned)) return Refuse(code);
    const bool has_name = name != nullptr && *name != 0;
    if (has_name && flags == kPrinterEnumName && level == kFullLevel) {
      const DWORD code = ListByServerName(buffer, size, needed, returned);
      SetLastPlatformError(code);
      return code == kErrorSuccess;
    }
  }
  return Recorded([&] {
    return ::EnumPrintersW(flags, SdkReadOnly(name), level, buffer, size, Sdk(needed),
                           Sdk(returned));
  });
}

}  // namespace veldmark
