#include "frame/DebugLog.h"

#include <vector>

#include "frame/Apartment.h"
#include "frame/Support.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"

namespace veldmark {
namespace {

constexpr TextView kLogName = u"\\VK2_DEBUG.LOG";

[[noreturn]] void RaiseFileError() {
  // A write that takes nothing and reports nothing has found no room.
  const DWORD error = LastPlatformError();
  RaisePlatformError(static_cast<std::int32_t>(error != 0 ? error : kErrorDiskFull),
                     Text(kLibraryName));
}

}  // namespace

void DebugLog(TextView text) {
  Apartment& apartment = Apartment::Current();
  if (!apartment.g_bDebug) return;
  Platform& platform = apartment.platform;
  const std::vector<std::uint8_t> line = StringToAnsiBuffer(Text(text) + u"\r\n");
  const Text path = StripTrailingBackslash(platform.system.ModuleFolder()).append(kLogName);
  const FileHandle file(
      platform.files,
      platform.files.CreateFileW(path.c_str(), kFileAppendData, kFileShareRead | kFileShareWrite,
                                 nullptr, kOpenAlways, kFileAttributeNormal, nullptr));
  if (!file) RaiseFileError();
  for (std::size_t done = 0; done < line.size();) {
    DWORD written = 0;
    if (!platform.files.WriteFile(file.Get(), line.data() + done,
                                  static_cast<DWORD>(line.size() - done), &written, nullptr) ||
        written == 0) {
      RaiseFileError();
    }
    done += written;
  }
}

}  // namespace veldmark
