#include "frame/DebugLog.h"

#include <algorithm>
#include <array>
#include <string>
#include <unordered_map>
#include <vector>

#include "frame/Apartment.h"
#include "frame/Support.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"

namespace veldmark {
namespace {

constexpr TextView kLogName = u"\\VK2_DEBUG.LOG";

bool IsAscii(char16_t unit) { return unit < 0x80; }

/// Texts in the system's code page. The platform's operations only read a code page, so the bytes
/// of a unit are found by reading all that there are.
class AnsiEncoder {
 public:
  explicit AnsiEncoder(System& system) : system_(system) {}

  std::string Encode(TextView text) {
    if (std::ranges::all_of(text, IsAscii)) return std::string(text.begin(), text.end());
    if (IsUtf8()) return ToUtf8(text);
    ReadCodePage();
    std::string bytes;
    for (const char16_t unit : text) {
      if (IsAscii(unit)) {
        bytes += static_cast<char>(unit);
      } else if (const auto found = bytes_of_.find(unit); found != bytes_of_.end()) {
        bytes += found->second;
      } else {
        bytes += '?';
      }
    }
    return bytes;
  }

 private:
  // The one unit that these bytes are; 0 if they aren't.
  char16_t Decode(const std::string& bytes) {
    std::array<WCHAR, 4> units{};
    const INT length = system_.MultiByteToWideChar(kCodePageAnsi, kMultiByteErrInvalidChars,
                                                   bytes.data(), static_cast<INT>(bytes.size()),
                                                   units.data(), static_cast<INT>(units.size()));
    return length == 1 ? units[0] : u'\0';
  }

  bool IsUtf8() { return Decode("\xE2\x82\xAC") == u'\u20AC'; }

  void ReadCodePage() {
    std::vector<char> leads;
    for (int byte = 0x80; byte <= 0xFF; ++byte) {
      const std::string single(1, static_cast<char>(byte));
      const char16_t unit = Decode(single);
      if (unit == 0) leads.push_back(single[0]);
      bytes_of_.emplace(unit, single);
    }
    for (const char lead : leads) {
      for (int trail = 0x40; trail <= 0xFE; ++trail) {
        const std::string pair{lead, static_cast<char>(trail)};
        bytes_of_.emplace(Decode(pair), pair);
      }
    }
    bytes_of_.erase(u'\0');
  }

  System& system_;
  std::unordered_map<char16_t, std::string> bytes_of_;
};

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
  const std::string line = AnsiEncoder(platform.system).Encode(text) + "\r\n";
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
