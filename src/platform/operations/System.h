#pragma once

#include <string>

#include "automation/Object.h"
#include "platform/operations/FileSystem.h"
#include "platform/operations/Types.h"

namespace veldmark {

inline constexpr DWORD kTimeZoneIdUnknown = 0;
inline constexpr DWORD kTimeZoneIdStandard = 1;
inline constexpr DWORD kTimeZoneIdDaylight = 2;
inline constexpr DWORD kTimeZoneIdInvalid = 0xFFFFFFFF;

inline constexpr UINT kCodePageAnsi = 0;
inline constexpr UINT kCodePageUtf8 = 65001;
inline constexpr DWORD kMultiBytePrecomposed = 0x1;
inline constexpr DWORD kMultiByteErrInvalidChars = 0x8;
inline constexpr DWORD kWideErrInvalidChars = 0x80;

inline constexpr UINT kLocalZeroInitialised = 0x40;

inline constexpr DWORD kLocaleInvariant = 0x7F;
inline constexpr DWORD kLcmapSortKey = 0x400;
inline constexpr DWORD kNormIgnoreCase = 0x1;

struct SYSTEMTIME {
  WORD wYear;  // 1601 to 30827
  WORD wMonth;
  WORD wDayOfWeek;  // Sunday is 0; results only
  WORD wDay;
  WORD wHour;
  WORD wMinute;
  WORD wSecond;
  WORD wMilliseconds;
};

// Biases are minutes: UTC = local time + bias.
struct TIME_ZONE_INFORMATION {
  LONG Bias;
  WCHAR StandardName[32];
  SYSTEMTIME StandardDate;
  LONG StandardBias;
  WCHAR DaylightName[32];
  SYSTEMTIME DaylightDate;
  LONG DaylightBias;
};

// Names, times and memory of this computer.
class System {
 public:
  virtual ~System() = default;

  // Writes the NUL-terminated name of the calling thread's user. `*size` goes in as the buffer's
  // size in characters and comes back as the length with the NUL. Non-zero on success; 0 with 122
  // if the buffer is too small (`*size` then tells the size needed).
  virtual BOOL GetUserNameW(LPWSTR buffer, DWORD* size) = 0;

  // Writes this computer's NetBIOS name. `*size` goes in as the buffer's size in characters and
  // comes back as the length without the NUL. Non-zero on success; 0 with 111 if the buffer is too
  // small (`*size` then tells the size needed with the NUL).
  virtual BOOL GetComputerNameW(LPWSTR buffer, DWORD* size) = 0;

  // Fills the zone's record and returns which part of the year it is: kTimeZoneIdUnknown (the zone
  // has no daylight time), kTimeZoneIdStandard, kTimeZoneIdDaylight; kTimeZoneIdInvalid on failure.
  virtual DWORD GetTimeZoneInformation(TIME_ZONE_INFORMATION* information) = 0;

  // UTC to local time by the bias in force now, whatever the date. Non-zero on success; 87 out of
  // range.
  virtual BOOL FileTimeToLocalFileTime(const FILETIME* file_time, FILETIME* local_file_time) = 0;

  // Non-zero on success; 87 for a value of 0x8000000000000000 or more.
  virtual BOOL FileTimeToSystemTime(const FILETIME* file_time, SYSTEMTIME* system_time) = 0;

  // Non-zero on success; 87 for a date or time that doesn't exist. The day of the week is ignored.
  virtual BOOL SystemTimeToFileTime(const SYSTEMTIME* system_time, FILETIME* file_time) = 0;

  // From and to an automation date (days since 1899-12-30, years 100 to 9999; a two-digit year
  // counts as 1930 to 2029), without fractions of a second. Non-zero on success, 0 out of range.
  virtual INT VariantTimeToSystemTime(double variant_time, SYSTEMTIME* system_time) = 0;
  virtual INT SystemTimeToVariantTime(const SYSTEMTIME* system_time, double* variant_time) = 0;

  // Our own: the folder of the library's file (of the program's where there are no loadable
  // modules), without a trailing "\" unless it is a root.
  virtual std::u16string ModuleFolder() = 0;

  // Our own: a new object of another library, by the name that this is registered under,
  // "Library.Class". Nothing where there is none or it can't be made.
  virtual Ref<Object> CreateObject(LPCWSTR program_identity) = 0;

  // Converts bytes of a code page to UTF-16 and returns the number of characters written, or needed
  // if `wide_size` is 0. `multi_byte_size` -1: the text ends with its NUL, which is converted too.
  // 0 on failure: 122 if the buffer is too small, 87 for an unknown code page or a size of 0, 1113
  // for an invalid sequence under kMultiByteErrInvalidChars, 1004 for unknown flags.
  virtual INT MultiByteToWideChar(UINT code_page, DWORD flags, LPCSTR multi_byte,
                                  INT multi_byte_size, LPWSTR wide, INT wide_size) = 0;

  // Converts UTF-16 to a code page and returns the number of bytes written, or needed if
  // `multi_byte_size` is 0. `wide_size` -1: the text ends with its NUL, which is converted too.
  // What the code page lacks becomes a character that looks like it, or the default character, with
  // `*used_default` set if given; `default_character` null is the code page's own. Neither goes
  // with UTF-8 (87), where half a surrogate pair becomes U+FFFD, or 1113 under
  // kWideErrInvalidChars. 0 on failure: 122, 87, 1004 as above.
  virtual INT WideCharToMultiByte(UINT code_page, DWORD flags, LPCWSTR wide, INT wide_size,
                                  char* multi_byte, INT multi_byte_size, LPCSTR default_character,
                                  BOOL* used_default) = 0;

  // With kLcmapSortKey in `flags`: the sort key of `text_size` characters, bytes of which the last
  // is 0. Two texts have the same where they compare equal under the kNorm... flags and the locale.
  // Writes it to `mapped`, which has room for `mapped_size` bytes, and returns its length, or the
  // length needed if `mapped_size` is 0. 0 on failure: 122 if the room is too small, 87 for a
  // `text_size` of 0 or an unknown locale.
  virtual INT LCMapStringW(DWORD locale, DWORD flags, LPCWSTR text, INT text_size, LPWSTR mapped,
                           INT mapped_size) = 0;

  // Writes `source` with each "%NAME%" replaced by that variable of this process's environment,
  // named in any case; one that isn't set stays as it is. `size` is the room in characters. Returns
  // the number of characters with the NUL, also where they don't fit (what is written then can't be
  // told); 0 on failure.
  virtual DWORD ExpandEnvironmentStringsW(LPCWSTR source, LPWSTR target, DWORD size) = 0;

  // The length of a NUL-terminated text in characters; 0 for null.
  virtual INT lstrlenW(LPCWSTR text) = 0;

  // A block of memory that the receiver frees with CoTaskMemFree; null if there is none.
  virtual void* CoTaskMemAlloc(std::size_t size) = 0;

  // Frees a block of CoTaskMemAlloc, or of a platform interface that says so. Null does nothing.
  virtual void CoTaskMemFree(void* memory) = 0;

  // A block of the local heap, which the receiver frees with LocalFree; zeroed with
  // kLocalZeroInitialised. Null with 8 if there is none.
  virtual HLOCAL LocalAlloc(UINT flags, std::size_t size) = 0;

  // Frees a block that was given to the caller to be freed so. Returns null on success, else
  // `memory` (6). Null is allowed and does nothing.
  virtual HLOCAL LocalFree(HLOCAL memory) = 0;
};

}  // namespace veldmark
