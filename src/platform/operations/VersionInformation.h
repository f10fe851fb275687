#pragma once

#include "platform/operations/Types.h"

namespace veldmark {

inline constexpr DWORD kFixedFileInfoSignature = 0xFEEF04BD;

// The part of a version resource that no language changes. 52 bytes.
struct VS_FIXEDFILEINFO {
  DWORD dwSignature;
  DWORD dwStrucVersion;
  DWORD dwFileVersionMS;
  DWORD dwFileVersionLS;
  DWORD dwProductVersionMS;
  DWORD dwProductVersionLS;
  DWORD dwFileFlagsMask;
  DWORD dwFileFlags;
  DWORD dwFileOS;
  DWORD dwFileType;
  DWORD dwFileSubtype;
  DWORD dwFileDateMS;
  DWORD dwFileDateLS;
};

// The version resources of files.
class VersionInformation {
 public:
  virtual ~VersionInformation() = default;

  // The size in bytes of a file's version resource as GetFileVersionInfoW returns it. `*handle`
  // (may be null) becomes 0. 0 on failure: 1813 for a module without such a resource, 1812 for a
  // file that is no module, 2, 3, 5, 32, 53, 67, 123 as files fail, 5 for a folder.
  virtual DWORD GetFileVersionInfoSizeW(LPCWSTR file_name, DWORD* handle) = 0;

  // Copies the resource, cut to `length` bytes, to `data`. The platform may put room for its own
  // use behind it. Non-zero on success; failures as above. `handle` is ignored.
  virtual BOOL GetFileVersionInfoW(LPCWSTR file_name, DWORD handle, DWORD length, void* data) = 0;
};

}  // namespace veldmark
