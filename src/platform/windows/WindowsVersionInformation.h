#pragma once

#include "platform/operations/VersionInformation.h"

namespace veldmark {

/// The version resources of files of the operating system that this process runs on.
class WindowsVersionInformation final : public VersionInformation {
 public:
  DWORD GetFileVersionInfoSizeW(LPCWSTR file_name, DWORD* handle) override;
  BOOL GetFileVersionInfoW(LPCWSTR file_name, DWORD handle, DWORD length, void* data) override;
};

}  // namespace veldmark
