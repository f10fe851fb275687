#include <cstring>
#include <string>
#include <vector>

#include "automation/Text.h"
#include "contract/World.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"

namespace veldmark {
namespace {

// A module of every installation.
constexpr const char16_t* kModule = u"C:\\windows\\system32\\kernel32.dll";

class VersionContract : public Contract {
 protected:
  VersionInformation& versions_ = platform_.version_information;
};

TEST_F(VersionContract, AResourceBeginsWithItsHeadAndItsFixedPart) {
  for (const Text& path : {Text(kModule), u"\\\\?\\" + Text(kModule)}) {
    DWORD handle = 7;
    const DWORD size = versions_.GetFileVersionInfoSizeW(path.c_str(), &handle);
    ASSERT_GE(size, 92u) << LastPlatformError();
    EXPECT_EQ(handle, 0u);
    EXPECT_EQ(versions_.GetFileVersionInfoSizeW(path.c_str(), nullptr), size);
    constexpr std::uint8_t kUntouched = 0xCD;
    std::vector<std::uint8_t> bytes(size + 1, kUntouched);
    ASSERT_TRUE(versions_.GetFileVersionInfoW(path.c_str(), 7, size, bytes.data()));
    EXPECT_EQ(bytes.back(), kUntouched);
    std::uint16_t head[3];
    std::memcpy(head, bytes.data(), sizeof head);
    EXPECT_LE(head[0], size);
    EXPECT_EQ(head[1], sizeof(VS_FIXEDFILEINFO));
    EXPECT_EQ(head[2], 0);
    EXPECT_EQ(Text(reinterpret_cast<const char16_t*>(bytes.data() + sizeof head)),
              u"VS_VERSION_INFO");
    VS_FIXEDFILEINFO info;
    std::memcpy(&info, bytes.data() + 40, sizeof info);
    EXPECT_EQ(info.dwSignature, kFixedFileInfoSignature);
    EXPECT_NE(info.dwFileVersionMS, 0u);

    std::vector<std::uint8_t> part(92, kUntouched);
    EXPECT_TRUE(versions_.GetFileVersionInfoW(path.c_str(), 0, 60, part.data()));
    EXPECT_EQ(std::memcmp(part.data() + 2, bytes.data() + 2, 58), 0);
    EXPECT_EQ(part[60], kUntouched);
  }
}

TEST_F(VersionContract, AFileWithoutAResourceSaysWhy) {
  Touch(u"\\plain");
  const std::pair<Text, DWORD> cases[] = {
      {In(u"\\plain"), kErrorResourceDataNotFound},
      {In(u"\\none"), kErrorFileNotFound},
      {In(u"\\none\\file"), kErrorPathNotFound},
      {In(u""), kErrorAccessDenied},
  };
  for (const auto& [path, error] : cases) {
    DWORD handle = 7;
    EXPECT_EQ(Code(versions_.GetFileVersionInfoSizeW(path.c_str(), &handle)), error)
        << ToUtf8(path);
    EXPECT_EQ(handle, 0u);
    std::uint8_t bytes[64];
    EXPECT_EQ(Code(versions_.GetFileVersionInfoW(path.c_str(), 0, sizeof bytes, bytes)), error)
        << ToUtf8(path);
  }
}

}  // namespace
}  // namespace veldmark
