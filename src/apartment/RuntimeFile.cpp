#include "apartment/RuntimeFile.h"

#include <algorithm>

#include "automation/Error.h"
#include "platform/operations/ErrorCodes.h"

namespace veldmark {
namespace {

std::int32_t RuntimeNumber(DWORD code) {
  switch (code) {
    case kErrorFileNotFound:
      return runtime_error::kFileNotFound;
    case kErrorPathNotFound:
    case kErrorDirectory:
      return runtime_error::kPathNotFound;
    case kErrorTooManyOpenFiles:
      return runtime_error::kTooManyFiles;
    case kErrorAccessDenied:
    case kErrorCurrentDirectory:
      return runtime_error::kPathFileAccess;
    case kErrorInvalidHandle:
    case kErrorBadNetPath:
    case kErrorBadNetName:
    case kErrorInvalidName:
    case kErrorBadPathname:
    case kErrorFilenameExcedRange:
      return runtime_error::kBadFileName;
    case kErrorNotEnoughMemory:
    case kErrorOutOfMemory:
      return runtime_error::kOutOfMemory;
    case kErrorNotReady:
      return runtime_error::kDiskNotReady;
    case kErrorWriteProtect:
    case kErrorSharingViolation:
    case kErrorLockViolation:
    case kErrorNetworkAccessDenied:
    case kErrorUserMappedFile:
      return runtime_error::kPermissionDenied;
    case kErrorBusy:
      return runtime_error::kFileAlreadyOpen;
    case kErrorFileExists:
    case kErrorAlreadyExists:
      return runtime_error::kFileAlreadyExists;
    case kErrorHandleDiskFull:
    case kErrorDiskFull:
      return runtime_error::kDiskFull;
    case kErrorHandleEof:
      return runtime_error::kInputPastEnd;
    default:
      return runtime_error::kDeviceError;
  }
}

[[noreturn]] void RaiseRuntimeError() { Raise(RuntimeNumber(LastPlatformError())); }

}  // namespace

RuntimeFile::RuntimeFile(FileSystem& files, const Text& path, Mode mode)
    : files_(files),
      file_(files, files.CreateFileW(
                       path.c_str(),
                       mode == Mode::kAppend ? kFileAppendData : kGenericRead | kGenericWrite,
                       kFileShareRead | kFileShareWrite, nullptr, kOpenAlways, kFileAttributeNormal,
                       nullptr)) {
  if (!file_) RaiseRuntimeError();
}

std::vector<std::uint8_t> RuntimeFile::ReadAll() {
  LARGE_INTEGER size = 0;
  if (!files_.GetFileSizeEx(file_.Get(), &size)) RaiseRuntimeError();
  if (size > INT32_MAX) Raise(runtime_error::kOutOfMemory);
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
  for (std::size_t done = 0; done < bytes.size();) {
    DWORD read = 0;
    if (!files_.ReadFile(file_.Get(), bytes.data() + done, static_cast<DWORD>(bytes.size() - done),
                         &read, nullptr)) {
      RaiseRuntimeError();
    }
    // Somebody made it shorter in the meantime.
    if (read == 0) Raise(runtime_error::kInputPastEnd);
    done += read;
  }
  return bytes;
}

void RuntimeFile::Write(std::span<const std::uint8_t> bytes) {
  constexpr std::size_t kMostAtOnce = INT32_MAX;
  while (!bytes.empty()) {
    DWORD written = 0;
    if (!files_.WriteFile(file_.Get(), bytes.data(),
                          static_cast<DWORD>(std::min(bytes.size(), kMostAtOnce)), &written,
                          nullptr)) {
      RaiseRuntimeError();
    }
    // A write that takes nothing and reports nothing has found no room.
    if (written == 0) Raise(runtime_error::kDiskFull);
    bytes = bytes.subspan(written);
  }
}

}  // namespace veldmark
