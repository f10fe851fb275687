#include "platform/simulated/families/SimulatedSystem.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

#include "platform/operations/ErrorCodes.h"
#include "platform/simulated/estate/SortKey.h"

namespace veldmark::simulated {
namespace {

constexpr UINT kCodePageWestern = 1252;
// They choose among ways to write what a code page lacks, of which it has but one here.
constexpr DWORD kBestFitAndCompositionFlags = 0x670;

// The Western code page: Latin-1 but for these 32. Bytes without a character stand for themselves.
constexpr std::array<char16_t, 32> kWesternHigh = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
constexpr unsigned char kFirstWesternHigh = 0x80;

char16_t FromWestern(unsigned char byte) {
  const std::size_t index = byte - std::size_t{kFirstWesternHigh};
  return index < kWesternHigh.size() ? kWesternHigh[index] : byte;
}

std::optional<char> ToWestern(char16_t unit) {
  const auto* const found = std::ranges::find(kWesternHigh, unit);
  if (found != kWesternHigh.end()) {
    return static_cast<char>(kFirstWesternHigh + (found - kWesternHigh.begin()));
  }
  if (unit > 0xFF || FromWestern(static_cast<unsigned char>(unit)) != unit) return std::nullopt;
  return static_cast<char>(unit);
}

bool IsKnown(UINT code_page) {
  return code_page == kCodePageUtf8 || code_page == kCodePageAnsi || code_page == kCodePageWestern;
}

}  // namespace

BOOL SimulatedSystem::GetUserNameW(LPWSTR buffer, DWORD* size) {
  const Call call = session_.Begin("GetUserNameW");
  if (const DWORD fault = call.fault()) return Fail(fault);
  const Text& name = session_.estate.user_name();
  const bool fits = CopyText(name, buffer, *size);
  *size = static_cast<DWORD>(name.size() + 1);
  return fits ? 1 : Fail(kErrorInsufficientBuffer);
}

BOOL SimulatedSystem::GetComputerNameW(LPWSTR buffer, DWORD* size) {
  const Call call = session_.Begin("GetComputerNameW");
  if (const DWORD fault = call.fault()) return Fail(fault);
  const Text& name = session_.estate.local().name();
  const bool fits = CopyText(name, buffer, *size);
  *size = static_cast<DWORD>(fits ? name.size() : name.size() + 1);
  return fits ? 1 : Fail(kErrorBufferOverflow);
}

DWORD SimulatedSystem::GetTimeZoneInformation(TIME_ZONE_INFORMATION* information) {
  const Call call = session_.Begin("GetTimeZoneInformation");
  if (const DWORD fault = call.fault()) return Fail(fault, kTimeZoneIdInvalid);
  if (session_.estate.current_zone() == kTimeZoneIdInvalid) {
    return Fail(kErrorInvalidParameter, kTimeZoneIdInvalid);
  }
  *information = session_.estate.time_zone();
  return session_.estate.current_zone();
}

void SimulatedSystem::GetLocalTime(SYSTEMTIME* time) {
  const Call call = session_.BeginSafe("GetLocalTime");
  const std::int64_t shift = std::int64_t{session_.estate.bias()} * 60 * kTicksPerSecond;
  const auto local = ToSystemTime(session_.estate.now() - static_cast<Ticks>(shift));
  *time = local.value_or(SYSTEMTIME{});
}

void SimulatedSystem::Sleep(DWORD milliseconds) {
  {
    const Call call = session_.BeginSafe("Sleep", ToText(milliseconds));
    if (!session_.estate.clock_runs()) {
      // Giving way takes its time, too: else who waits for nothing but others would wait for ever.
      session_.estate.Advance(std::max<DWORD>(milliseconds, 1));
      return;
    }
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

BOOL SimulatedSystem::FileTimeToLocalFileTime(const FILETIME* file_time,
                                              FILETIME* local_file_time) {
  const Call call = session_.Begin("FileTimeToLocalFileTime");
  if (const DWORD fault = call.fault()) return Fail(fault);
  const std::int64_t shift = std::int64_t{session_.estate.bias()} * 60 * kTicksPerSecond;
  *local_file_time = ToFileTime(ToTicks(*file_time) - static_cast<Ticks>(shift));
  return 1;
}

BOOL SimulatedSystem::FileTimeToSystemTime(const FILETIME* file_time, SYSTEMTIME* system_time) {
  const Call call = session_.Begin("FileTimeToSystemTime");
  if (const DWORD fault = call.fault()) return Fail(fault);
  const auto time = ToSystemTime(ToTicks(*file_time));
  if (!time) return Fail(kErrorInvalidParameter);
  *system_time = *time;
  return 1;
}

BOOL SimulatedSystem::SystemTimeToFileTime(const SYSTEMTIME* system_time, FILETIME* file_time) {
  const Call call = session_.Begin("SystemTimeToFileTime");
  if (const DWORD fault = call.fault()) return Fail(fault);
  const auto ticks = ToTicks(*system_time);
  if (!ticks) return Fail(kErrorInvalidParameter);
  *file_time = ToFileTime(*ticks);
  return 1;
}

INT SimulatedSystem::VariantTimeToSystemTime(double variant_time, SYSTEMTIME* system_time) {
  const Call call = session_.Begin("VariantTimeToSystemTime");
  if (const DWORD fault = call.fault()) return Fail(fault);
  const auto time = DateToSystemTime(variant_time);
  if (!time) return 0;
  *system_time = *time;
  return 1;
}

INT SimulatedSystem::SystemTimeToVariantTime(const SYSTEMTIME* system_time, double* variant_time) {
  const Call call = session_.Begin("SystemTimeToVariantTime");
  if (const DWORD fault = call.fault()) return Fail(fault);
  const auto date = SystemTimeToDate(*system_time);
  if (!date) return 0;
  *variant_time = *date;
  return 1;
}

std::u16string SimulatedSystem::ModuleFolder() {
  const Call call = session_.BeginSafe("ModuleFolder");
  return session_.estate.module_folder();
}

Ref<Object> SimulatedSystem::CreateObject(LPCWSTR program_identity) {
  ComponentMaker maker;
  {
    const Call call = session_.Begin("CreateObject", program_identity);
    if (call.fault() == 0) maker = session_.estate.FindComponent(program_identity);
  }
  return maker ? maker() : nullptr;
}

INT SimulatedSystem::MultiByteToWideChar(UINT code_page, DWORD flags, LPCSTR multi_byte,
                                         INT multi_byte_size, LPWSTR wide, INT wide_size) {
  const Call call = session_.Begin("MultiByteToWideChar");
  if (const DWORD fault = call.fault()) return Fail(fault);
  if (multi_byte == nullptr || multi_byte_size == 0 || multi_byte_size < -1 || wide_size < 0 ||
      (wide_size > 0 && wide == nullptr)) {
    return Fail(kErrorInvalidParameter);
  }
  const bool is_utf8 = code_page == kCodePageUtf8;
  if (!IsKnown(code_page)) return Fail(kErrorInvalidParameter);
  const DWORD known =
      is_utf8 ? kMultiByteErrInvalidChars : kMultiBytePrecomposed | kMultiByteErrInvalidChars;
  if ((flags & ~known) != 0) return Fail(kErrorInvalidFlags);
  const std::string_view bytes =
      multi_byte_size == -1
          ? std::string_view(multi_byte, std::string_view(multi_byte).size() + 1)
          : std::string_view(multi_byte, static_cast<std::size_t>(multi_byte_size));
  Text text;
  if (is_utf8) {
    text = FromUtf8(bytes);
    // What was malformed is the only thing that doesn't come back the same.
    const bool strict = (flags & kMultiByteErrInvalidChars) != 0;
    if (strict && ToUtf8(text) != bytes) return Fail(kErrorNoUnicodeTranslation);
  } else {
    for (const char byte : bytes) text += FromWestern(static_cast<unsigned char>(byte));
  }
  if (wide_size > 0) {
    if (text.size() > static_cast<std::size_t>(wide_size)) return Fail(kErrorInsufficientBuffer);
    std::copy(text.begin(), text.end(), wide);
  }
  return static_cast<INT>(text.size());
}

INT SimulatedSystem::WideCharToMultiByte(UINT code_page, DWORD flags, LPCWSTR wide, INT wide_size,
                                         char* multi_byte, INT multi_byte_size,
                                         LPCSTR default_character, BOOL* used_default) {
  const Call call = session_.Begin("WideCharToMultiByte");
  if (const DWORD fault = call.fault()) return Fail(fault);
  const bool is_utf8 = code_page == kCodePageUtf8;
  if (wide == nullptr || wide_size == 0 || wide_size < -1 || multi_byte_size < 0 ||
      (multi_byte_size > 0 && multi_byte == nullptr) || !IsKnown(code_page) ||
      (is_utf8 && (default_character != nullptr || used_default != nullptr))) {
    return Fail(kErrorInvalidParameter);
  }
  const DWORD known = is_utf8 ? kWideErrInvalidChars : kBestFitAndCompositionFlags;
  if ((flags & ~known) != 0) return Fail(kErrorInvalidFlags);
  const TextView text = wide_size == -1 ? TextView(wide, TextView(wide).size() + 1)
                                        : TextView(wide, static_cast<std::size_t>(wide_size));
  std::string bytes;
  if (is_utf8) {
    bytes = ToUtf8(text);
    if (flags != 0 && FromUtf8(bytes) != text) return Fail(kErrorNoUnicodeTranslation);
  } else {
    bool lacking = false;
    for (const char16_t unit : text) {
      const std::optional<char> byte = ToWestern(unit);
      lacking |= !byte;
      bytes += byte.value_or(default_character == nullptr ? '?' : *default_character);
    }
    if (used_default != nullptr) *used_default = lacking;
  }
  if (multi_byte_size > 0) {
    if (bytes.size() > static_cast<std::size_t>(multi_byte_size)) {
      return Fail(kErrorInsufficientBuffer);
    }
    std::copy(bytes.begin(), bytes.end(), multi_byte);
  }
  return static_cast<INT>(bytes.size());
}

INT SimulatedSystem::LCMapStringW(DWORD locale, DWORD flags, LPCWSTR text, INT text_size,
                                  LPWSTR mapped, INT mapped_size) {
  const Call call = session_.Begin("LCMapStringW");
  if (const DWORD fault = call.fault()) return Fail(fault);
  if (locale != kLocaleInvariant || flags != (kLcmapSortKey | kNormIgnoreCase) || text == nullptr ||
      text_size <= 0 || mapped_size < 0) {
    return Fail(kErrorInvalidParameter);
  }
  const std::vector<std::uint8_t> key =
      SortKey(TextView(text, static_cast<std::size_t>(text_size)));
  if (mapped_size > 0) {
    if (key.size() > static_cast<std::size_t>(mapped_size)) return Fail(kErrorInsufficientBuffer);
    std::memcpy(mapped, key.data(), key.size());
  }
  return static_cast<INT>(key.size());
}

DWORD SimulatedSystem::ExpandEnvironmentStringsW(LPCWSTR source, LPWSTR target, DWORD size) {
  TextView rest = ViewOf(source);
  const Call call = session_.Begin("ExpandEnvironmentStringsW", rest);
  if (const DWORD fault = call.fault()) return Fail(fault, DWORD{0});
  Text expanded;
  while (!rest.empty()) {
    const std::size_t start = std::min(rest.find(u'%'), rest.size());
    expanded += rest.substr(0, start);
    rest.remove_prefix(start);
    const std::size_t end = rest.find(u'%', 1);
    if (end == TextView::npos) {
      expanded += rest;
      break;
    }
    const auto value = session_.estate.Variable(rest.substr(1, end - 1));
    expanded += value ? TextView(*value) : rest.substr(0, end + 1);
    rest.remove_prefix(end + 1);
  }
  if (target != nullptr) CopyText(expanded, target, size);
  return static_cast<DWORD>(expanded.size() + 1);
}

INT SimulatedSystem::lstrlenW(LPCWSTR text) {
  const Call call = session_.BeginSafe("lstrlenW", ViewOf(text));
  return static_cast<INT>(ViewOf(text).size());
}

void* SimulatedSystem::CoTaskMemAlloc(std::size_t size) {
  const Call call = session_.Begin("CoTaskMemAlloc", ToText(static_cast<std::int64_t>(size)));
  if (call.fault() != 0) return nullptr;
  return session_.AllocateTask(size, "CoTaskMemAlloc", std::to_string(size));
}

void SimulatedSystem::CoTaskMemFree(void* memory) {
  const Call call = session_.BeginSafe("CoTaskMemFree");
  if (memory == nullptr) return;
  const bool was_open = session_.ledger.Closed(
      Resource::TaskMemory, reinterpret_cast<std::uintptr_t>(memory), "CoTaskMemFree");
  if (was_open) session_.task_memory.erase(memory);
}

HLOCAL SimulatedSystem::LocalAlloc(UINT, std::size_t size) {
  const Call call = session_.Begin("LocalAlloc", ToText(static_cast<std::int64_t>(size)));
  if (const DWORD fault = call.fault()) return Fail(fault, nullptr);
  return session_.AllocateLocal(size, "LocalAlloc", std::to_string(size));
}

HLOCAL SimulatedSystem::LocalFree(HLOCAL memory) {
  const Call call = session_.Begin("LocalFree");
  const DWORD fault = call.fault();
  if (memory == nullptr) return nullptr;
  if (!session_.ledger.Closed(Resource::LocalMemory, reinterpret_cast<std::uintptr_t>(memory),
                              "LocalFree")) {
    return Fail(kErrorInvalidHandle, memory);
  }
  session_.local_memory.erase(memory);
  if (fault == 0) return nullptr;
  return Fail(fault, memory);
}

}  // namespace veldmark::simulated
