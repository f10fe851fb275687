#pragma once

#include "platform/operations/Types.h"

namespace veldmark {

inline constexpr DWORD kLoadLibraryAsDatafile = 0x2;

inline constexpr DWORD kFormatMessageMaxWidthMask = 0xFF;
inline constexpr DWORD kFormatMessageAllocateBuffer = 0x100;
inline constexpr DWORD kFormatMessageIgnoreInserts = 0x200;
inline constexpr DWORD kFormatMessageFromString = 0x400;
inline constexpr DWORD kFormatMessageFromHmodule = 0x800;
inline constexpr DWORD kFormatMessageFromSystem = 0x1000;
inline constexpr DWORD kFormatMessageArgumentArray = 0x2000;

// Message tables and their texts.
class Messages {
 public:
  virtual ~Messages() = default;

  // Loads a module, once more if it is loaded already; with kLoadLibraryAsDatafile only as data,
  // running none of its code. A bare name is searched for on the system's path. Returns a module
  // that the caller frees with FreeLibrary, or HMODULE{0}: 2 for a missing file, as a path or as
  // data (126 for a bare name that is to run); 193 if it is no module; 5, 32, 53 and 67 as files
  // fail. `file` must be null.
  virtual HMODULE LoadLibraryExW(LPCWSTR library_file_name, HANDLE file, DWORD flags) = 0;

  // Gives back one load of a module. Non-zero on success; 0 with 6 or 126 if it isn't loaded.
  virtual BOOL FreeLibrary(HMODULE module) = 0;

  // Writes the text of a message, NUL-terminated, and returns its length in characters without the
  // NUL; 0 on failure. `source` is the module (as a pointer) with kFormatMessageFromHmodule, the
  // text itself with kFormatMessageFromString. With module and system both, the module is asked
  // first.
  //
  // The text goes to `buffer` of `size` characters (122 if it doesn't fit); with
  // kFormatMessageAllocateBuffer `buffer` is the address of an LPWSTR that receives a block of at
  // least `size` characters, which the caller frees with LocalFree (left null on failure).
  // `language` 0 and 0x400 take the user's language. Inserts stay as they are with
  // kFormatMessageIgnoreInserts; otherwise `arguments` is an array of pointer-sized values and
  // kFormatMessageArgumentArray must be given. Texts of a message table end in carriage return and
  // line feed.
  //
  // 317: no text of this number; 1812, 1813 or 317: the module has no such message or no table at
  // all; 1815: not in this language; 87: flags that don't go together, or an insert without
  // arguments.
  virtual DWORD FormatMessageW(DWORD flags, const void* source, DWORD message_id, DWORD language_id,
                               LPWSTR buffer, DWORD size, void* arguments) = 0;
};

}  // namespace veldmark
