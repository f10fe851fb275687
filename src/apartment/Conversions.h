#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "automation/Text.h"
#include "automation/Variant.h"
#include "platform/operations/FileSystem.h"
#include "platform/operations/LocalSecurityAuthority.h"
#include "platform/operations/Types.h"

/// The conversions between the platform's raw memory and automation values. They work on the
/// calling thread's apartment.
namespace veldmark {

// Failures

/// The text of a platform error or network status, on one line; empty where there is none. Numbers
/// 2100 to 2999 are looked up in "netmsg.dll" first. `inserts`, an array of texts, fills "%1" and
/// its like by index plus one; anything else but a missing argument raises 13.
Text GetAPIErrorText(std::int32_t message_id, const Variant& inserts = Variant::Missing());

/// Raises a platform error number with its text. Without a source it is the engine's,
/// "Veldmark2.CSupport"; another class names itself by `SourceOf`. The full form passes
/// `Err().Source()`.
[[noreturn]] void RaisePlatformError(std::int32_t number, std::optional<Text> source = {});

// Texts out of memory

/// `cb` bytes of the system's code page as text; empty for 0.
Text AnsiBufferToString(const void* buffer, std::int32_t cb);
/// The text as bytes of the system's code page, which has "?" or its like for what it lacks. Raises
/// the platform's error where it can't be converted.
std::vector<std::uint8_t> StringToAnsiBuffer(TextView text);
/// A NUL-terminated text; empty for null. With `free` the block goes back by CoTaskMemFree, also
/// that of an empty text.
Text WidePtrToString(const char16_t* wide, bool free);
/// The pieces of a list that ends in an empty one, joined by one NUL each, none at the end; empty
/// for null.
Text WideMultiSzToString(const char16_t* wide);
/// The bytes taken as UTF-16; an odd one at the end is dropped.
Text ByteArrayToString(std::span<const std::uint8_t> bytes);
/// The UTF-16 text that the bytes begin with, up to its NUL; nothing where there is none.
std::optional<Text> TextToNul(std::span<const std::uint8_t> bytes);
/// The text up to its first NUL.
Text TrimAtNul(TextView text);
/// The same without blanks at the end.
Text TrimAtNulRight(TextView text);
/// What `TrimAtNulRight` copies, as a part of the text.
TextView PartToNulRight(TextView text);
/// Four bytes from an address of any alignment; 0 for null.
std::int32_t ReadLongAt(const void* address);

// Texts into buffers

/// The text and one NUL as a byte array.
Variant ApiStringBuffer(TextView text);
/// A server's name with "\\" before it as a byte array; an empty name stays empty, which the
/// platform takes as the local computer.
Variant ApiServerName(TextView server_name);
/// The text in a buffer of the two above, to be handed to the platform while the variant lives.
/// Anything but a byte array raises 13.
const char16_t* BufferText(const Variant& buffer);

/// Fills `record` with `text`, whose units go to `bytes`; `record` points there. An empty text
/// gives three zero fields and leaves `bytes` alone. A text of 32768 units or more raises 6.
void InitLsaString(LSA_UNICODE_STRING& record, TextView text, ByteArray& bytes);

// Paths

/// The long form of a path: "\\?\" before it, "\\?\UNC\" in place of the "\\" of a network path. A
/// path with "\\?\" anywhere stays as it is.
Text ApiFilePath(TextView path);
/// The same for a folder, with a "\" at the end.
Text ApiFolderPath(TextView path);
/// The path without one "\" at its end.
Text StripTrailingBackslash(TextView path);

// Dates

/// The date of a time stamp, milliseconds dropped; with `local` by the bias in force now. Date 0
/// where there is none, as outside the years 1601 to 9999.
Date FileTimeToDate(const FILETIME& file_time, bool local);
/// Seconds since 1970, without regard to zones. 0, an unset time, gives date 0.
Date UnixTimeToDate(std::int32_t seconds);
/// By the bias in force now. Out of range it is whatever the platform's conversions leave behind.
Date UTCDateToLocalDate(Date date);
/// By the bias of the part of the year that it is now. Date 0 where the zone has no daylight time,
/// and on failure.
Date ConvertUtcToLocal(Date utc);

// Words

/// The upper word of a version number: the quotient by 65535, so one too many where upper and lower
/// word together reach 65535.
std::int32_t HiWordOfLong(std::int32_t value);
/// The lower word, sign-extended.
std::int32_t LoWordOfLong(std::int32_t value);

// Keys

/// The key that keeps texts of different case apart: each byte of the UTF-16LE form in decimal with
/// a "-" behind it.
Text GetCollectionKey(TextView text);
/// True for a text of nothing but ASCII digits, an empty one included. Clears `Err`.
bool IsIndexKey(TextView text);

}  // namespace veldmark
