#include <string>
#include <vector>

#include "automation/Text.h"
#include "contract/World.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"

namespace veldmark {
namespace {

class Volumes : public Contract {
 protected:
  Text Root() const { return world_->scratch().substr(0, 3); }
};

TEST_F(Volumes, TellTheirSpaceFromAnyFolderOnThem) {
  Touch(u"\\file");
  struct Row {
    Text folder;
    DWORD error;
  };
  for (const Row& row : std::vector<Row>{{Root(), 0},
                                         {Root().substr(0, 2), 0},
                                         {In(u""), 0},
                                         {In(u"\\"), 0},
                                         {u"\\\\?\\" + In(u"\\"), 0},
                                         {In(u"\\file"), kErrorDirectory},
                                         {In(u"\\none"), kErrorPathNotFound},
                                         {In(u"\\none\\none"), kErrorPathNotFound},
                                         {u"Q:\\", kErrorPathNotFound},
                                         {u"\\\\nobody-there\\share\\", kErrorBadNetPath},
                                         {u"", kErrorPathNotFound}}) {
    SCOPED_TRACE(ToUtf8(row.folder));
    std::uint64_t to_caller = 0, total = 0, total_free = 0;
    const BOOL told =
        files_.GetDiskFreeSpaceExW(row.folder.c_str(), &to_caller, &total, &total_free);
    EXPECT_EQ(told ? 0 : LastPlatformError(), row.error);
    EXPECT_EQ(total > 0, row.error == 0);
    EXPECT_LE(to_caller, total_free);
    EXPECT_LE(total_free, total);
  }
  std::uint64_t total = 0;
  EXPECT_TRUE(files_.GetDiskFreeSpaceExW(nullptr, nullptr, &total, nullptr));
  EXPECT_GT(total, 0u);
}

TEST_F(Volumes, DescribeThemselvesAtTheirRootOnly) {
  WCHAR label[260] = u"?", file_system[260] = u"";
  DWORD serial = 0, longest = 0, flags = 0;
  ASSERT_TRUE(files_.GetVolumeInformationW(Root().c_str(), label, 260, &serial, &longest, &flags,
                                           file_system, 260));
  EXPECT_NE(Text(label), u"?");
  EXPECT_NE(Text(file_system), u"");
  EXPECT_GE(longest, 110u);
  EXPECT_NE(flags, 0u);
  const auto own_root = Root();
  for (LPCWSTR const root : {own_root.c_str(), LPCWSTR{nullptr}}) {
    EXPECT_TRUE(
        files_.GetVolumeInformationW(root, nullptr, 0, nullptr, nullptr, nullptr, nullptr, 0));
  }
  struct Row {
    Text root;
    DWORD error;
  };
  for (const Row& row : std::vector<Row>{{In(u""), kErrorDirNotRoot},
                                         {In(u"\\"), kErrorDirNotRoot},
                                         {In(u"\\none\\"), kErrorDirNotRoot},
                                         {u"Q:\\", kErrorPathNotFound},
                                         {u"\\\\nobody-there\\share\\", kErrorBadNetPath}}) {
    EXPECT_FALSE(files_.GetVolumeInformationW(row.root.c_str(), label, 260, &serial, &longest,
                                              &flags, file_system, 260));
    EXPECT_EQ(LastPlatformError(), row.error) << ToUtf8(row.root);
  }
}

TEST_F(Volumes, TakeMediaCommandsWithoutWaitingForADevice) {
  char answer[127] = "?";
  EXPECT_NE(platform_.multimedia.mciSendStringA("set CDAudio door open", answer, 127, nullptr),
            kErrorNotSupported);
  EXPECT_EQ(std::string(answer), "");
}

}  // namespace
}  // namespace veldmark
