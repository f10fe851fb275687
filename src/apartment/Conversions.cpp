#include "apartment/Conversions.h"

#include <algorithm>
#include <cstring>

#include "apartment/Errors.h"
#include "automation/CaseMapping.h"
#include "automation/CivilTime.h"
#include "automation/Conversion.h"
#include "platform/operations/Handles.h"

namespace veldmark {
namespace {

constexpr TextView kLongPrefix = u"\\\\?\\";
constexpr TextView kLongNetworkPrefix = u"\\\\?\\UNC\\";
constexpr TextView kNetworkPrefix = u"\\\\";
constexpr TextView kLineEnd = u"\r\n";

constexpr std::int32_t kFirstNetworkStatus = 2100;
constexpr std::int32_t kLastNetworkStatus = 2999;
constexpr DWORD kNeutralLanguage = 0;
constexpr DWORD kUserLanguage = 0x400;

constexpr double kSecondsPerDay = 86400;
constexpr double kUnixEpoch = 25569;

Platform& CurrentPlatform() { return Apartment::Current().platform; }

struct Insert {
  std::int64_t index;
  Text text;
};

template <class T>
std::vector<Insert> InsertsFrom(const Array<T>& array) {
  if (array.bounds.size() != 1) Raise(runtime_error::kSubscriptOutOfRange);
  std::vector<Insert> inserts;
  std::int64_t index = array.bounds[0].lower;
  for (const T& element : array.elements) inserts.push_back({index++, ToText(Variant(element))});
  return inserts;
}

std::vector<Insert> InsertsFrom(const Variant& inserts) {
  const Variant plain = inserts.Dereferenced();
  if (const auto* texts = plain.If<TextArray>()) return InsertsFrom(*texts);
  if (const auto* values = plain.If<VariantArray>()) return InsertsFrom(*values);
  Raise(runtime_error::kTypeMismatch);
}

Text MessageText(std::int32_t message_id, DWORD language) {
  Messages& messages = CurrentPlatform().messages;
  DWORD flags =
      kFormatMessageAllocateBuffer | kFormatMessageIgnoreInserts | kFormatMessageFromSystem;
  Module module(messages);
  if (message_id >= kFirstNetworkStatus && message_id <= kLastNetworkStatus) {
    module.Reset(messages.LoadLibraryExW(u"netmsg.dll", nullptr, kLoadLibraryAsDatafile));
    if (module) flags |= kFormatMessageFromHmodule;
  }
  LocalMemory<WCHAR> buffer(CurrentPlatform().system);
  // A buffer that the platform allocates is asked for by the address of its pointer.
  messages.FormatMessageW(flags, reinterpret_cast<const void*>(module.Get()),
                          static_cast<DWORD>(message_id), language,
                          reinterpret_cast<LPWSTR>(buffer.Receive()), 0, nullptr);
  return buffer ? TrimAtNulRight(WidePtrToString(buffer.Get(), false)) : Text();
}

}  // namespace

// Failures

Text GetAPIErrorText(std::int32_t message_id, const Variant& inserts) {
  return ReRaising([&] {
    const std::vector<Insert> list =
        inserts.IsMissing() ? std::vector<Insert>() : InsertsFrom(inserts);
    Text text = MessageText(message_id, inserts.IsMissing() ? kUserLanguage : kNeutralLanguage);
    if (text.ends_with(kLineEnd)) text.resize(text.size() - kLineEnd.size());
    text = ReplaceAll(text, kLineEnd, u" ");
    for (const Insert& insert : list) {
      text = ReplaceAll(text, u"%" + ToText(insert.index + 1), insert.text);
    }
    return text;
  });
}

void RaisePlatformError(std::int32_t number, std::optional<Text> source) {
  if (!source) source = SourceOf(u"CSupport");
  Raise(number, std::move(source), GetAPIErrorText(number));
}

// Texts out of memory

Text AnsiBufferToString(const void* buffer, std::int32_t cb) {
  if (!buffer || cb <= 0) return {};
  Text text(static_cast<std::size_t>(cb), u'\0');
  const INT length = CurrentPlatform().system.MultiByteToWideChar(
      kCodePageAnsi, 0, static_cast<LPCSTR>(buffer), cb, text.data(), cb);
  text.resize(static_cast<std::size_t>(std::clamp<INT>(length, 0, cb)));
  return text;
}

std::vector<std::uint8_t> StringToAnsiBuffer(TextView text) {
  if (text.empty()) return {};
  if (text.size() > INT32_MAX) Raise(runtime_error::kOutOfMemory);
  System& system = CurrentPlatform().system;
  const auto length = static_cast<INT>(text.size());
  const auto convert = [&](std::vector<std::uint8_t>& bytes) {
    const INT size = system.WideCharToMultiByte(kCodePageAnsi, 0, text.data(), length,
                                                reinterpret_cast<char*>(bytes.data()),
                                                static_cast<INT>(bytes.size()), nullptr, nullptr);
    if (size <= 0) RaisePlatformError(static_cast<std::int32_t>(LastPlatformError()));
    return static_cast<std::size_t>(size);
  };
  std::vector<std::uint8_t> bytes;
  bytes.resize(convert(bytes));
  convert(bytes);
  return bytes;
}

Text WidePtrToString(const char16_t* wide, bool free) {
  if (!wide) return {};
  System& system = CurrentPlatform().system;
  const TaskMemory<WCHAR> block(system, free ? const_cast<WCHAR*>(wide) : nullptr);
  Text text;
  Swallow([&] { text.assign(wide, static_cast<std::size_t>(system.lstrlenW(wide))); });
  return text;
}

Text WideMultiSzToString(const char16_t* wide) {
  Text text;
  if (!wide) return text;
  Swallow([&] {
    Text joined;
    while (*wide != 0) {
      const TextView piece(wide);
      if (!joined.empty()) joined += u'\0';
      joined += piece;
      wide += piece.size() + 1;
    }
    text = std::move(joined);
  });
  return text;
}

Text ByteArrayToString(std::span<const std::uint8_t> bytes) {
  Text text(bytes.size() / sizeof(char16_t), u'\0');
  if (!text.empty()) std::memcpy(text.data(), bytes.data(), text.size() * sizeof(char16_t));
  return text;
}

std::optional<Text> TextToNul(std::span<const std::uint8_t> bytes) {
  const std::size_t most = bytes.size() / sizeof(char16_t);
  // The bytes may lie at an odd address.
  const auto unit = [&](std::size_t index) {
    char16_t value;
    std::memcpy(&value, bytes.data() + index * sizeof value, sizeof value);
    return value;
  };
  std::size_t length = 0;
  while (length < most && unit(length) != 0) ++length;
  if (length == most) return std::nullopt;
  return ByteArrayToString(bytes.first(length * sizeof(char16_t)));
}

Text TrimAtNul(TextView text) { return Text(text.substr(0, FindUnit(text, u'\0'))); }

Text TrimAtNulRight(TextView text) { return Text(PartToNulRight(text)); }

TextView PartToNulRight(TextView text) {
  text = text.substr(0, FindUnit(text, u'\0'));
  return text.substr(0, text.find_last_not_of(u' ') + 1);
}

std::int32_t ReadLongAt(const void* address) {
  std::int32_t value = 0;
  if (address) std::memcpy(&value, address, sizeof value);
  return value;
}

// Texts into buffers

Variant ApiStringBuffer(TextView text) {
  std::vector<std::uint8_t> bytes((text.size() + 1) * sizeof(char16_t));
  if (!text.empty()) std::memcpy(bytes.data(), text.data(), text.size() * sizeof(char16_t));
  return ByteArray(std::move(bytes));
}

Variant ApiServerName(TextView server_name) {
  if (server_name.empty() || server_name.find(kNetworkPrefix) != TextView::npos) {
    return ApiStringBuffer(server_name);
  }
  return ApiStringBuffer(Text(kNetworkPrefix).append(server_name));
}

const char16_t* BufferText(const Variant& buffer) {
  const auto* bytes = buffer.If<ByteArray>();
  if (!bytes) Raise(runtime_error::kTypeMismatch);
  return reinterpret_cast<const char16_t*>(bytes->elements.data());
}

void InitLsaString(LSA_UNICODE_STRING& record, TextView text, ByteArray& bytes) {
  record = {};
  if (text.empty()) return;
  constexpr std::size_t kMostUnits = 0x7FFF;
  // The longest text has no room left to count a NUL behind it.
  constexpr std::size_t kMostBytes = 0xFFFE;
  if (text.size() > kMostUnits) Raise(runtime_error::kOverflow);
  const std::size_t size = text.size() * sizeof(char16_t);
  std::vector<std::uint8_t> units(size);
  std::memcpy(units.data(), text.data(), size);
  bytes = ByteArray(std::move(units));
  record.Length = static_cast<WORD>(size);
  record.MaximumLength = static_cast<WORD>(std::min(size + sizeof(char16_t), kMostBytes));
  record.Buffer = reinterpret_cast<LPWSTR>(bytes.elements.data());
}

// Paths

Text ApiFilePath(TextView path) {
  Text long_path;
  Swallow([&] {
    if (path.find(kLongPrefix) != TextView::npos) {
      long_path = path;
    } else if (path.starts_with(kNetworkPrefix)) {
      long_path = Text(kLongNetworkPrefix).append(path.substr(kNetworkPrefix.size()));
    } else {
      long_path = Text(kLongPrefix).append(path);
    }
  });
  return long_path;
}

Text ApiFolderPath(TextView path) {
  if (path.ends_with(u'\\')) return ApiFilePath(path);
  return ApiFilePath(Text(path).append(1, u'\\'));
}

Text StripTrailingBackslash(TextView path) {
  if (path.ends_with(u'\\')) path.remove_suffix(1);
  return Text(path);
}

// Dates

Date FileTimeToDate(const FILETIME& file_time, bool local) {
  System& system = CurrentPlatform().system;
  FILETIME wanted = file_time;
  if (local && !system.FileTimeToLocalFileTime(&file_time, &wanted)) return {};
  SYSTEMTIME parts{};
  if (!system.FileTimeToSystemTime(&wanted, &parts)) return {};
  const std::optional<Date> day = FromCivilTime({parts.wYear, parts.wMonth, parts.wDay});
  const std::optional<Date> time =
      FromCivilTime({.hour = parts.wHour, .minute = parts.wMinute, .second = parts.wSecond});
  if (!day || !time) return {};
  // A plain sum, also where a date before 1899-12-30 would need a difference.
  return {day->days + time->days};
}

Date UnixTimeToDate(std::int32_t seconds) {
  if (seconds == 0) return {};
  return {seconds / kSecondsPerDay + kUnixEpoch};
}

Date UTCDateToLocalDate(Date date) {
  System& system = CurrentPlatform().system;
  SYSTEMTIME utc{};
  FILETIME utc_stamp{};
  FILETIME local_stamp{};
  SYSTEMTIME local{};
  Date result;
  system.VariantTimeToSystemTime(date.days, &utc);
  system.SystemTimeToFileTime(&utc, &utc_stamp);
  system.FileTimeToLocalFileTime(&utc_stamp, &local_stamp);
  system.FileTimeToSystemTime(&local_stamp, &local);
  system.SystemTimeToVariantTime(&local, &result.days);
  return result;
}

Date ConvertUtcToLocal(Date utc) {
  Date local;
  Swallow([&] {
    TIME_ZONE_INFORMATION zone{};
    const DWORD part = CurrentPlatform().system.GetTimeZoneInformation(&zone);
    if (part != kTimeZoneIdStandard && part != kTimeZoneIdDaylight) return;
    const std::int64_t bias = std::int64_t{zone.Bias} +
                              (part == kTimeZoneIdStandard ? zone.StandardBias : zone.DaylightBias);
    constexpr std::int64_t kSecondsPerMinute = 60;
    local = AddSeconds(utc, -bias * kSecondsPerMinute);
  });
  return local;
}

// Words

std::int32_t HiWordOfLong(std::int32_t value) {
  constexpr std::int32_t kDivisor = 65535;
  return value / kDivisor - (value < 0 ? 1 : 0);
}

std::int32_t LoWordOfLong(std::int32_t value) { return static_cast<std::int16_t>(value); }

// Keys

Text GetCollectionKey(TextView text) {
  Text key;
  Swallow([&] {
    key.reserve(text.size() * 8);
    const auto append = [&key](unsigned byte) {
      if (byte >= 100) key += static_cast<char16_t>(u'0' + byte / 100);
      if (byte >= 10) key += static_cast<char16_t>(u'0' + byte / 10 % 10);
      key += static_cast<char16_t>(u'0' + byte % 10);
      key += u'-';
    };
    for (const char16_t unit : text) {
      append(unit & 0xFFu);
      append(unit >> 8);
    }
  });
  return key;
}

bool IsIndexKey(TextView text) {
  Err().Clear();
  return std::ranges::all_of(text, [](char16_t unit) { return unit >= u'0' && unit <= u'9'; });
}

}  // namespace veldmark
