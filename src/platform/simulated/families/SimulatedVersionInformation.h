#pragma once

#include "platform/operations/VersionInformation.h"
#include "platform/simulated/families/Session.h"

namespace veldmark::simulated {

// The version resources of an estate's files.
class SimulatedVersionInformation final : public VersionInformation {
 public:
  explicit SimulatedVersionInformation(Session& session) : session_(session) {}

  DWORD GetFileVersionInfoSizeW(LPCWSTR file_name, DWORD* handle) override;
  BOOL GetFileVersionInfoW(LPCWSTR file_name, DWORD handle, DWORD length, void* data) override;

 private:
  // 0, or the code that the file's resource can't be had for.
  DWORD Open(LPCWSTR file_name, std::shared_ptr<FileNode>& file);

  Session& session_;
};

}  // namespace veldmark::simulated
