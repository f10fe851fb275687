#pragma once

#include "platform/operations/VersionInformation.h"
#include "platform/simulated/Session.h"

namespace veldmark::simulated {

// The version resources of an estate's files.
class SimulatedVersionInformation final : public VersionInformation {
 public:
  explicit SimulatedVersionInformation(Session& session) : session_(session) {}

  DWORD GetFileVersionInfoSizeW(LPCWSTR file_name, DWORD* handle) override;
  BOOL GetFileVersionInfoW(LPCWSTR file_name, DWORD handle, DWORD length, void* data) override;

 private:
  Session& session_;
};

}  // namespace veldmark::simulated
