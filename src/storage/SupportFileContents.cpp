#include <cstring>

#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "apartment/RuntimeFile.h"
#include "platform/operations/Handles.h"
#include "storage/PlatformFiles.h"

namespace veldmark {
namespace {

using Bytes = std::span<const std::uint8_t>;

// What a script calls here are members of the root, and their errors name it.
constexpr TextView kClassName = u"SystemRoot";
constexpr std::uint8_t kByteOrderMark[] = {0xFF, 0xFE};

[[noreturn]] void RaiseLast() { RaisePlatformError(Err().LastDllError(), SourceOf(kClassName)); }
[[noreturn]] void RaiseLastKeepingSource() {
  RaisePlatformError(Err().LastDllError(), Err().Source());
}

bool IsOpen(const FileHandle& file) {
  return LastPlatformError() == 0 && reinterpret_cast<std::intptr_t>(file.Get()) > 0;
}

bool HasByteOrderMark(Bytes bytes) {
  return bytes.size() >= std::size(kByteOrderMark) &&
         std::memcmp(bytes.data(), kByteOrderMark, std::size(kByteOrderMark)) == 0;
}

Text AnsiText(Bytes bytes) {
  Text text = AnsiBufferToString(bytes.data(), static_cast<std::int32_t>(bytes.size()));
  if (text.empty() && !bytes.empty()) RaiseLast();
  return text;
}

/// The text of a whole file. Without a mark, UTF-16 is told by the zero that plain letters have in
/// their third unit; a file too short for that is UTF-16 whatever it holds.
Text Decoded(Bytes bytes) {
  constexpr std::size_t kLongestUntested = 7;
  constexpr std::size_t kTelling = 5;
  if (bytes.size() <= kLongestUntested) return ByteArrayToString(bytes);
  if (HasByteOrderMark(bytes)) return ByteArrayToString(bytes.subspan(std::size(kByteOrderMark)));
  return bytes[kTelling] == 0 ? ByteArrayToString(bytes) : AnsiText(bytes);
}

/// How many bytes to read: the low half, signed, and 2^28 for each of the high half, which is right
/// below 2 GiB. Raises 6 where a currency value can't hold it, 9 where it leaves no array to read
/// into; what is wrong and yet looks possible is an array too large, 7.
std::size_t WholeSize(DWORD low, DWORD high) {
  constexpr std::int64_t kHighWeight = 1 << 28;
  constexpr std::int64_t kLimit = INT64_MAX / Currency::kScale;
  const std::int64_t size = static_cast<std::int32_t>(low) + high * kHighWeight;
  if (size > kLimit) Raise(runtime_error::kOverflow);
  if (size < 1) Raise(runtime_error::kSubscriptOutOfRange);
  if (high != 0) Raise(runtime_error::kOutOfMemory);
  return static_cast<std::size_t>(size);
}

std::vector<std::uint8_t> ReadWhole(const Text& file_name) {
  const FileHandle file(
      Files(), Files().CreateFileW(ApiFilePath(file_name).c_str(), kGenericRead, kFileShareRead,
                                   nullptr, kOpenExisting, kFileFlagSequentialScan, nullptr));
  if (!IsOpen(file)) RaiseLast();
  DWORD high = 0;
  const DWORD low = Files().GetFileSize(file.Get(), &high);
  std::vector<std::uint8_t> bytes(WholeSize(low, high));
  DWORD read = 0;
  if (!Files().ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read,
                        nullptr)) {
    RaiseLast();
  }
  return bytes;
}

}  // namespace

bool CSupport::FileExists(const Text& path) {
  return ReRaising([&] {
    WIN32_FIND_DATAW data{};
    const FindHandle find(Files(), Files().FindFirstFileW(ApiFilePath(path).c_str(), &data));
    return reinterpret_cast<std::intptr_t>(find.Get()) >= 1;
  });
}

bool CSupport::FolderExists(const Text& path) {
  const Text bare = StripTrailingBackslash(path);
  return FileExists(bare) || FileExists(bare + u"\\*.*");
}

Text CSupport::ReadTextFile(const Text& file_name) {
  return ReRaising([&] {
    const std::vector<std::uint8_t> bytes = RuntimeFile(Files(), file_name).ReadAll();
    return HasByteOrderMark(bytes) ? ByteArrayToString(Bytes(bytes).subspan(2)) : AnsiText(bytes);
  });
}

void CSupport::WriteTextFile(const Text& file_name, const Text& contents, bool as_unicode) {
  ReRaising([&] {
    const std::vector<std::uint8_t> bytes = StringToAnsiBuffer(as_unicode ? TextView() : contents);
    RuntimeFile file(Files(), file_name);
    if (as_unicode) {
      file.Write(kByteOrderMark);
      file.Write({reinterpret_cast<const std::uint8_t*>(contents.data()),
                  contents.size() * sizeof(char16_t)});
    } else {
      file.Write(bytes);
    }
  });
}

Text CSupport::ReadTextFileAPI(const Text& file_name) {
  return ReRaising([&] { return Decoded(ReadWhole(file_name)); });
}

ByteArray CSupport::ReadBinaryFileAPI(const Text& file_name) {
  return ReRaising([&] { return ByteArray(ReadWhole(file_name)); });
}

std::int32_t CSupport::WriteBinaryFileAPI(const Text& file_name, const ByteArray& data) {
  return ReRaising([&] {
    const FileHandle file(
        Files(), Files().CreateFileW(ApiFilePath(file_name).c_str(), kGenericWrite, 0, nullptr,
                                     kCreateAlways, kFileAttributeNormal, nullptr));
    // A file that was replaced is told by 183, and so is a failure here.
    if (!IsOpen(file)) RaiseLastKeepingSource();
    if (data.bounds.size() != 1 || data.elements.empty()) {
      Raise(runtime_error::kSubscriptOutOfRange);
    }
    DWORD written = 0;
    if (!Files().WriteFile(file.Get(), data.elements.data(),
                           static_cast<DWORD>(data.elements.size()), &written, nullptr) ||
        !Files().FlushFileBuffers(file.Get())) {
      RaiseLastKeepingSource();
    }
    return static_cast<std::int32_t>(written);
  });
}

void CSupport::CopyFile(const Text& existing_file, const Text& new_file, bool overwrite) {
  ReRaising([&] {
    const Text source = ApiFilePath(existing_file);
    const Text target = ApiFilePath(new_file);
    const Text folder = target.substr(0, target.rfind(u'\\') + 1);
    if (!FolderExists(folder)) CreateFolder(folder);
    if (!Files().CopyFileW(source.c_str(), target.c_str(), !overwrite)) RaiseLast();
  });
}

}  // namespace veldmark
