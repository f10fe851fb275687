#include <functional>
#include <string_view>

#include "root/SystemRoot.h"
#include "storage/StorageFixture.h"

namespace veldmark {
namespace {

using namespace std::string_view_literals;

ByteArray BytesOf(std::string_view text, std::int32_t lower = 0) {
  return ByteArray({text.begin(), text.end()}, lower);
}

class FileContents : public StorageTest {
 protected:
  const Ref<SystemRoot> root_ = Make<SystemRoot>();
};

TEST_F(FileContents, ExistAsWhateverTheirNameFinds) {
  local().AddDrive(u'G');
  const std::tuple<const char16_t*, bool, bool> cases[] = {
      {u"C:\\D\\a\\", false, true},     {u"C:\\D", true, true},
      {u"C:\\D\\", false, true},        {u"C:\\D\\*", true, true},
      {u"C:\\D\\none", false, false},   {u"C:\\", false, true},
      {u"G:\\", false, false},  // nothing in it to find
      {u"\\\\SRV\\Share", false, true}, {u"\\\\NOBODY\\Share", false, false},
      {u"C:\\Secret\\s", false, false}, {u"", false, false}};
  for (const auto& [path, file, folder] : cases) {
    EXPECT_EQ(root_->FileExists(path), file) << ToUtf8(path);
    EXPECT_EQ(root_->FolderExists(path), folder) << ToUtf8(path);
  }
}

TEST_F(FileContents, AreReadAsTextByTheRulesOfEachGeneration) {
  const std::tuple<std::string_view, TextView, TextView> cases[] = {
      {"\xFF\xFEZ\0"sv, u"Z", u"\uFEFFZ"},
      {"\xFF\xFEZ"sv, u"", u"\uFEFF"},
      {"x", u"x", u""},
      {"abcdefg", u"abcdefg", u"\u6261\u6463\u6665"},
      {"abcdefgh", u"abcdefgh", u"abcdefgh"},
      {"\x80 and \xE9 too", u"\u20AC and \u00E9 too", u"\u20AC and \u00E9 too"},
      {"a\0b\0c\0d\0"sv, TextView(u"a\0b\0c\0d\0", 8), u"abcd"},
      // A zero tells by its place alone, a mark by both of its bytes.
      {"abcd\0efg"sv, TextView(u"abcd\0efg", 8), TextView(u"abcd\0efg", 8)},
      {"abcde\0gh"sv, TextView(u"abcde\0gh", 8), u"\u6261\u6463\x65\u6867"},
      {"\xFF no mark", u"\xFF no mark", u"\xFF no mark"},
      {"!\xFE no mark", u"!\xFE no mark", u"!\xFE no mark"},
      {"\xFF\xFEqrstuv", u"\u7271\u7473\u7675", u"\u7271\u7473\u7675"}};
  for (const auto& [bytes, statements, api] : cases) {
    SCOPED_TRACE(bytes);
    local().Find(u"C:\\D\\b")->Content(bytes);
    EXPECT_EQ(root_->ReadTextFile(u"C:\\D\\b"), statements);
    EXPECT_EQ(root_->ReadTextFileAPI(u"C:\\D\\b"), api);
    EXPECT_EQ(root_->ReadBinaryFileAPI(u"C:\\D\\b"), BytesOf(bytes));
    EXPECT_EQ(ContentOf(u"C:\\D\\b"), bytes);
  }
}

TEST_F(FileContents, AreRefusedWithTheNumbersOfEachGeneration) {
  local().AddFile(u"C:\\D\\readonly", "content").Attributes(kFileAttributeReadOnly);
  const std::tuple<const char16_t*, std::int32_t, std::int32_t> cases[] = {
      {u"C:\\D\\fresh", 0, 2},
      {u"C:\\D\\b", 0, 9},
      {u"C:\\D\\readonly", 75, 0},
      {u"C:\\D", 75, 5},
      {u"", 76, 123}};
  for (const auto& [path, statements, api] : cases) {
    SCOPED_TRACE(ToUtf8(path));
    EXPECT_EQ(ErrorOf([&] { root_->ReadTextFileAPI(path); }), api);
    EXPECT_EQ(ErrorOf([&] { root_->ReadTextFile(path); }), statements);
    EXPECT_EQ(ErrorOf([&] { root_->WriteTextFile(path, u"", false); }), statements);
  }
  EXPECT_EQ(ContentOf(u"C:\\D\\fresh"), "") << "reading by the statements makes a missing file";
  const std::pair<DWORD, std::int32_t> numbers[] = {
      {2, 53},  {3, 76},   {267, 76}, {4, 67},   {5, 75},   {16, 75},   {6, 52},
      {53, 52}, {67, 52},  {123, 52}, {161, 52}, {206, 52}, {8, 7},     {14, 7},
      {21, 71}, {19, 70},  {32, 70},  {33, 70},  {65, 70},  {1224, 70}, {170, 55},
      {80, 58}, {183, 58}, {39, 61},  {112, 61}, {38, 62},  {1117, 57}};
  for (const auto& [code, number] : numbers) {
    faults().FailEvery("CreateFileW", code);
    EXPECT_EQ(FailureOf([&] { root_->ReadTextFile(u"C:\\D\\a"); }),
              ToText(number) + u"|Veldmark2|" + Text(StandardErrorText(number)))
        << code;
    faults().Clear();
  }
}

TEST_F(FileContents, AreSharedByEachGenerationInItsOwnWay) {
  // What somebody else holds the file open for, and what he lets others do meanwhile.
  constexpr DWORD kAll = kFileShareRead | kFileShareWrite | kFileShareDelete;
  const std::tuple<DWORD, DWORD, std::int32_t, std::int32_t> cases[] = {
      {kGenericRead, kAll, 0, 0},
      {kGenericRead, kFileShareRead, 0, 70},
      {kGenericRead, kFileShareWrite, 32, 70},
      {kGenericWrite, kAll, 32, 0},
      {kDelete, kAll, 32, 70}};
  for (const auto& [access, share, api, statements] : cases) {
    const FileHandle open = Open(u"C:\\D\\a", access, share);
    ASSERT_TRUE(open);
    SCOPED_TRACE(std::to_string(access) + " " + std::to_string(share));
    ByteArray data = BytesOf("x");
    EXPECT_EQ(ErrorOf([&] { root_->ReadTextFileAPI(u"C:\\D\\a"); }), api);
    EXPECT_EQ(ErrorOf([&] { root_->ReadTextFile(u"C:\\D\\a"); }), statements);
    EXPECT_EQ(ErrorOf([&] { root_->WriteBinaryFileAPI(u"C:\\D\\a", data); }), 32) << "alone";
  }
}

TEST_F(FileContents, FailWithTheSourceOfTheMemberOrOfWhoCouldTell) {
  // In the short form an error is one of the class that passes it on; in the full form it keeps its
  // source, or takes that of the error before.
  const Ref<CFile> file = At<CFile>(u"C:\\D\\none");
  ByteArray data = BytesOf("x");
  const std::tuple<std::int32_t, const char16_t*, std::function<void()>> cases[] = {
      {3, u"Veldmark2.SystemRoot", [&] { root_->GetFolder(u"C:\\None\\x"); }},
      {53, u"Veldmark2.CSupport", [&] { Engine().GetFolder(u"\\\\NOBODY\\s\\x"); }},
      {2, u"Veldmark2.SystemRoot", [&] { root_->GetFile(u"C:\\None"); }},
      {3, u"Veldmark2.CSupport", [&] { At<CFolder>(u"C:\\None")->GetFiles(); }},
      {2, u"Veldmark2.CSupport", [&] { At<CFolder>(u"C:\\None")->GetSecurityDescriptor(); }},
      {145, u"", [&] { At<CFolder>(u"C:\\D")->Delete(false, false); }},
      {2, u"Before", [&] { At<CFolder>(u"C:\\None")->PutAttributes(FA_Hidden); }},
      {2, u"Before", [&] { file->PutAttributes(FA_Hidden); }},
      {2, u"Veldmark2.CFile", [&] { file->Delete(false); }},
      {2, u"Veldmark2.CFile", [&] { file->GetSecurityDescriptor(); }},
      {183, u"Veldmark2.CSupport", [&] { root_->CreateFolder(u"C:\\D"); }},
      {2, u"Veldmark2.SystemRoot", [&] { root_->ReadTextFileAPI(u"C:\\None"); }},
      {3, u"Veldmark2.SystemRoot", [&] { root_->ReadBinaryFileAPI(u"C:\\None\\x"); }},
      {183, u"Before", [&] { root_->WriteBinaryFileAPI(u"C:\\D\\b", data); }},
      {2, u"Veldmark2.SystemRoot", [&] { root_->CopyFile(u"C:\\None", u"C:\\D\\x", true); }},
      {3, u"Veldmark2.CSupport", [&] { root_->CopyFile(u"C:\\D\\a", u"C:\\N\\N\\x", true); }}};
  for (const auto& [number, source, call] : cases) {
    Err().Set(AutomationError(1, u"Before", u"Before"));
    EXPECT_EQ(FailureOf(call), ToText(number) + u"|" + source + u"|" + GetAPIErrorText(number));
  }
  faults().LeaveEvery("CreateFileW", 1117);
  EXPECT_EQ(ErrorOf([&] { root_->ReadTextFileAPI(u"C:\\D\\a"); }), 1117) << "open, but in error";
}

TEST_F(FileContents, HaveASizeWithTheHighHalfAt2To28AndFrom2GibibytesAreNotRead) {
  // What is told of a size (0: 6 is raised), and what reading so many bytes raises.
  const std::tuple<std::uint64_t, double, std::int32_t> cases[] = {
      {2ull << 30, 2147483648.0, 9},
      {(4ull << 30) - 1, 4294967295.0, 9},
      {4ull << 30, 268435456.0, 7},
      {(5ull << 32) + 7, 5 * 268435456.0 + 7, 7},
      {6ull << 30, 268435456.0 + 2147483648.0, 9},
      {3435973ull << 32, 3435973 * 268435456.0, 7},
      {3435974ull << 32, 0, 6}};
  simulated::FileNode& file = local().AddFile(u"C:\\D\\huge");
  for (const auto& [size, told, number] : cases) {
    SCOPED_TRACE(size);
    file.Size(size);
    Variant found(0.0);
    EXPECT_EQ(ErrorOf([&] { found = Engine().GetFile(u"C:\\D\\huge")->FileSize; }),
              told == 0 ? 6 : 0);
    EXPECT_EQ(found, Variant(told));
    EXPECT_EQ(ErrorOf([&] { root_->ReadBinaryFileAPI(u"C:\\D\\huge"); }), number);
    EXPECT_EQ(ErrorOf([&] { root_->ReadTextFile(u"C:\\D\\huge"); }), 7);
  }
  EXPECT_EQ(journal().Count("ReadFile"), 0u);
}

TEST_F(FileContents, AreWrittenFromTheStartWithoutCuttingWhatWasLonger) {
  const std::tuple<std::string_view, const char16_t*, bool, std::string_view> cases[] = {
      {"abcdef", u"AB", false, "ABcdef"},
      {"", u"\u00E9 \u4E2D \u20AC", false, "\xE9 ? \x80"},
      {"", u"\u00E9\u4E2D", true, "\xFF\xFE\xE9\0\x2D\x4E"sv},
      {"uvwxyz", u"", true, "\xFF\xFEwxyz"}};
  for (const auto& [before, text, unicode, after] : cases) {
    local().Find(u"C:\\D\\b")->Content(before);
    EXPECT_TRUE(root_->WriteTextFile(u"C:\\D\\b", text, unicode));
    EXPECT_EQ(ContentOf(u"C:\\D\\b"), after);
  }
  faults().FailEvery("WriteFile", 112);
  EXPECT_EQ(ErrorOf([&] { root_->WriteTextFile(u"C:\\D\\b", u"x", false); }), 61);
}

TEST_F(FileContents, OfBytesAreWrittenToNewFilesOnly) {
  const std::tuple<const char16_t*, ByteArray, std::int32_t, std::string_view> cases[] = {
      {u"C:\\D\\n1", BytesOf("\0\1\xFF"sv), 0, "\0\1\xFF"sv},
      {u"C:\\D\\n2", BytesOf("five", 5), 0, "five"},
      {u"C:\\D\\a", BytesOf("new"), 183, ""},
      {u"C:\\D\\n3", ByteArray(), 9, ""},
      {u"C:\\D\\n4", ByteArray(2, 2), 9, ""},
      {u"C:\\None\\n", BytesOf("x"), 3, "no file"}};
  for (auto [path, data, raised, after] : cases) {
    SCOPED_TRACE(ToUtf8(path));
    journal().Clear();
    std::int32_t written = -1;
    EXPECT_EQ(ErrorOf([&] { written = root_->WriteBinaryFileAPI(path, data); }), raised);
    EXPECT_EQ(written, raised ? -1 : static_cast<std::int32_t>(after.size()));
    EXPECT_EQ(journal().Count("FlushFileBuffers"), raised ? 0u : 1u);
    EXPECT_EQ(ContentOf(path), after);
  }
}

TEST_F(FileContents, AreCopiedIntoAFolderThatIsMadeWhereItIsMissing) {
  local().AddFile(u"C:\\D\\taken", "old");
  const std::tuple<const char16_t*, const char16_t*, bool, std::int32_t, const char*> cases[] = {
      {u"C:\\D\\a", u"C:\\Made\\copy", false, 0, "alpha"},
      {u"C:\\D\\a", u"C:\\None\\None\\copy", false, 3, "no file"},
      {u"C:\\D\\a", u"C:\\D\\taken", false, 80, "old"},
      {u"C:\\D\\a", u"C:\\D\\taken", true, 0, "alpha"},
      {u"C:\\D\\none", u"C:\\Left\\other", true, 2, "no file"}};
  for (const auto& [source, target, overwrite, raised, after] : cases) {
    SCOPED_TRACE(ToUtf8(target));
    EXPECT_EQ(ErrorOf([&] { root_->CopyFile(source, target, overwrite); }), raised);
    EXPECT_EQ(ContentOf(target), after);
  }
  EXPECT_NE(local().Find(u"C:\\Left"), nullptr) << "the folder was made before the copy failed";
  EXPECT_NE(ErrorOf([&] { root_->CopyFile(u"C:\\D\\a", u"relative", true); }), 0);
}

TEST(FileContentFaults, AreRaisedWithNoHandleLeftAndNoOtherFileTouched) {
  SweepFaults<StorageWorld>(
      {"FindClose", "CloseHandle"},
      [](StorageWorld&) {
        const auto root = Make<SystemRoot>();
        root->WriteTextFile(u"C:\\D\\b", u"written \u00E9", false);
        EXPECT_EQ(root->ReadTextFile(u"C:\\D\\b"), u"written \u00E9");
        ByteArray data = BytesOf("0123456789");
        EXPECT_EQ(root->WriteBinaryFileAPI(u"C:\\D\\binary", data), 10);
        EXPECT_EQ(root->ReadTextFileAPI(u"C:\\D\\binary"), u"0123456789");
        EXPECT_EQ(root->ReadBinaryFileAPI(u"C:\\D\\binary"), data);
        root->CopyFile(u"C:\\D\\a", u"C:\\Made\\copy", false);
      },
      [](StorageWorld& world, const std::string&, bool raised) {
        EXPECT_EQ(world.ContentOf(u"C:\\D\\a"), "alpha");
        EXPECT_EQ(world.ContentOf(u"C:\\Made\\copy"), raised ? "no file" : "alpha");
      },
      {"CreateFileW", "GetFileSizeEx", "GetFileSize", "ReadFile", "WriteFile", "FindFirstFileW"});
}

}  // namespace
}  // namespace veldmark
