#include <functional>

#include "platform/operations/Handles.h"
#include "root/SystemRoot.h"
#include "storage/StorageFixture.h"

namespace veldmark {
namespace {

ByteArray BytesOf(std::string_view text, std::int32_t lower = 0) {
  return ByteArray({text.begin(), text.end()}, lower);
}

class FileContents : public StorageTest {
 protected:
  void Set(TextView path, std::string_view bytes) {
    const auto file = local().Find(path);
    (file ? *file : local().AddFile(path)).Content(bytes);
  }

  const Ref<SystemRoot> root_ = Make<SystemRoot>();
};

TEST_F(FileContents, ExistAsWhateverTheirNameFinds) {
  local().AddDrive(u'G');
  struct Case {
    const char16_t* path;
    bool file, folder;
  };
  const Case cases[] = {
      {u"C:\\D\\a\\", false, true},     {u"C:\\D", true, true},
      {u"C:\\D\\", false, true},        {u"C:\\D\\*", true, true},
      {u"C:\\D\\none", false, false},   {u"C:\\", false, true},
      {u"G:\\", false, false},  // nothing in it to find
      {u"\\\\SRV\\Share", false, true}, {u"\\\\NOBODY\\Share", false, false},
      {u"C:\\Secret\\s", false, false}, {u"", false, false},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(root_->FileExists(c.path), c.file) << ToUtf8(c.path);
    EXPECT_EQ(root_->FolderExists(c.path), c.folder) << ToUtf8(c.path);
  }
}

TEST_F(FileContents, AreReadAsTextByTheRulesOfEachGeneration) {
  struct Case {
    std::string_view bytes;
    TextView statements, api;
  };
  using namespace std::string_view_literals;
  const Case cases[] = {
      {"\xFF\xFEZ\0B\0C\0"sv, u"ZBC", u"ZBC"},
      {"\xFF\xFEZ\0"sv, u"Z", u"\uFEFFZ"},
      {"\xFF\xFEZ"sv, u"", u"\uFEFF"},
      {"x", u"x", u""},
      {"ten ASCII!", u"ten ASCII!", u"ten ASCII!"},
      {"abcdef", u"abcdef", u"\u6261\u6463\u6665"},
      {"abcdefg", u"abcdefg", u"\u6261\u6463\u6665"},
      {"abcdefgh", u"abcdefgh", u"abcdefgh"},
      {"\x80 and \xE9 too", u"\u20AC and \u00E9 too", u"\u20AC and \u00E9 too"},
      {"a\0b\0c\0d\0"sv, TextView(u"a\0b\0c\0d\0", 8), u"abcd"},
      // A zero tells by its place alone, a mark by both of its bytes.
      {"abcd\0efg"sv, TextView(u"abcd\0efg", 8), TextView(u"abcd\0efg", 8)},
      {"abcde\0gh"sv, TextView(u"abcde\0gh", 8), u"\u6261\u6463\x65\u6867"},
      {"abcdef\0h"sv, TextView(u"abcdef\0h", 8), TextView(u"abcdef\0h", 8)},
      {"\xFF no mark", u"\xFF no mark", u"\xFF no mark"},
      {"!\xFE no mark", u"!\xFE no mark", u"!\xFE no mark"},
      {"\xFF\xFE"
       "abcdef",
       u"\u6261\u6463\u6665", u"\u6261\u6463\u6665"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.bytes);
    Set(u"C:\\D\\t", c.bytes);
    EXPECT_EQ(root_->ReadTextFile(u"C:\\D\\t"), c.statements);
    EXPECT_EQ(root_->ReadTextFileAPI(u"C:\\D\\t"), c.api);
    EXPECT_EQ(root_->ReadBinaryFileAPI(u"C:\\D\\t"), BytesOf(c.bytes));
    EXPECT_EQ(ContentOf(u"C:\\D\\t"), c.bytes);
  }
}

TEST_F(FileContents, AreRefusedWithTheNumbersOfEachGeneration) {
  local().AddFile(u"C:\\D\\locked", "content").Locked();
  local().AddFile(u"C:\\D\\readonly", "content").Attributes(kFileAttributeReadOnly);
  Text deep = u"C:\\D";
  for (int i = 0; i < 6; ++i) deep += u"\\" + Text(50, u'n');
  local().AddFile(deep, "far below");
  struct Case {
    Text path;
    std::int32_t statements, api;
  };
  const Case cases[] = {
      {u"C:\\D\\fresh", 0, 2},
      {u"C:\\D\\b", 0, 9},
      {u"C:\\None\\f", 76, 3},
      {u"C:\\D\\locked", 70, 32},
      {u"C:\\D\\readonly", 75, 0},
      {u"C:\\D", 75, 5},
      {u"C:\\D\\a?b", 52, 123},
      {u"\\\\NOBODY\\s\\f", 52, 53},
      {u"", 76, 123},
      {deep, 76, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(ToUtf8(c.path));
    EXPECT_EQ(ErrorOf([&] { root_->ReadTextFileAPI(c.path); }), c.api);
    EXPECT_EQ(ErrorOf([&] { root_->ReadBinaryFileAPI(c.path); }), c.api);
    EXPECT_EQ(ErrorOf([&] { root_->ReadTextFile(c.path); }), c.statements);
    if (c.statements != 0) {
      EXPECT_EQ(Err().Description(), StandardErrorText(c.statements));
    }
    EXPECT_EQ(ErrorOf([&] { root_->WriteTextFile(c.path, u"", false); }), c.statements);
  }
  EXPECT_EQ(ContentOf(u"C:\\D\\fresh"), "") << "reading by the statements makes a missing file";
  EXPECT_EQ(root_->ReadTextFileAPI(deep), u"far below");
}

TEST_F(FileContents, AreSharedByEachGenerationInItsOwnWay) {
  // What somebody else holds the file open for, and what he lets others do meanwhile.
  constexpr DWORD kAll = kFileShareRead | kFileShareWrite | kFileShareDelete;
  struct Case {
    DWORD access, share;
    std::int32_t api, statements, bytes;
  };
  const Case cases[] = {
      {kGenericRead, kAll, 0, 0, 32},
      {kGenericRead, kFileShareRead, 0, 70, 32},
      {kGenericRead, kFileShareWrite, 32, 70, 32},
      {kGenericWrite, kAll, 32, 0, 32},
      {kDelete, kAll, 32, 70, 32},
  };
  for (const Case& c : cases) {
    Set(u"C:\\D\\t", "some text");
    const FileHandle open(platform.files,
                          platform.files.CreateFileW(u"C:\\D\\t", c.access, c.share, nullptr,
                                                     kOpenExisting, 0, nullptr));
    ASSERT_TRUE(open);
    SCOPED_TRACE(std::to_string(c.access) + " " + std::to_string(c.share));
    ByteArray data = BytesOf("x");
    EXPECT_EQ(ErrorOf([&] { root_->ReadTextFileAPI(u"C:\\D\\t"); }), c.api);
    EXPECT_EQ(ErrorOf([&] { root_->ReadTextFile(u"C:\\D\\t"); }), c.statements);
    EXPECT_EQ(ErrorOf([&] { root_->WriteBinaryFileAPI(u"C:\\D\\t", data); }), c.bytes);
  }
}

TEST_F(FileContents, FailWithTheSourceOfTheMemberOrOfWhoCouldTell) {
  // In the short form an error is one of the class that passes it on; in the full form it keeps its
  // source, or takes that of the error before.
  const auto in_folder = [](const Text& path) {
    const auto folder = Make<CFolder>();
    folder->PutPath(path);
    return folder;
  };
  const auto file = Make<CFile>();
  file->PutPath(u"C:\\D\\none");
  ByteArray data = BytesOf("x");
  struct Case {
    std::int32_t number;
    const char16_t* source;
    std::function<void()> call;
  };
  const Case cases[] = {
      {3, u"Veldmark2.SystemRoot", [&] { root_->GetFolder(u"C:\\None\\x"); }},
      {3, u"Veldmark2.CSupport", [&] { Engine().GetFolder(u"C:\\None\\x"); }},
      {2, u"Veldmark2.SystemRoot", [&] { root_->GetFile(u"C:\\None"); }},
      {2, u"Veldmark2.CSupport", [&] { Engine().GetFile(u"C:\\None"); }},
      {3, u"Veldmark2.CSupport", [&] { Engine().GetFiles(u"C:\\None"); }},
      {3, u"Veldmark2.CSupport", [&] { in_folder(u"C:\\None")->GetFiles(); }},
      {3, u"Veldmark2.CSupport", [&] { in_folder(u"C:\\None")->GetPathNames(true, true); }},
      {2, u"Veldmark2.CSupport", [&] { in_folder(u"C:\\None")->GetSecurityDescriptor(); }},
      {145, u"", [&] { in_folder(u"C:\\D")->Delete(false, false); }},
      {2, u"Before", [&] { in_folder(u"C:\\None")->PutAttributes(FA_Hidden); }},
      {2, u"Before", [&] { file->PutAttributes(FA_Hidden); }},
      {2, u"Veldmark2.CFile", [&] { file->Delete(false); }},
      {2, u"Veldmark2.CFile", [&] { file->GetSecurityDescriptor(); }},
      {183, u"Veldmark2.CSupport", [&] { root_->CreateFolder(u"C:\\D"); }},
      {2, u"Veldmark2.SystemRoot", [&] { root_->ReadTextFileAPI(u"C:\\None"); }},
      {3, u"Veldmark2.SystemRoot", [&] { root_->ReadBinaryFileAPI(u"C:\\None\\x"); }},
      {183, u"Before", [&] { root_->WriteBinaryFileAPI(u"C:\\D\\b", data); }},
      {2, u"Veldmark2.SystemRoot", [&] { root_->CopyFile(u"C:\\None", u"C:\\D\\x", true); }},
      {3, u"Veldmark2.CSupport", [&] { root_->CopyFile(u"C:\\D\\a", u"C:\\N\\N\\x", true); }},
  };
  for (const Case& c : cases) {
    Err().Set(AutomationError(1, u"Before", u"Before"));
    EXPECT_EQ(FailureOf(c.call),
              ToText(c.number) + u"|" + c.source + u"|" + GetAPIErrorText(c.number));
  }
  faults().LeaveEvery("CreateFileW", 1117);
  local().AddFile(u"C:\\left.txt", "some text");
  EXPECT_EQ(ErrorOf([&] { root_->ReadTextFileAPI(u"C:\\left.txt"); }), 1117)
      << "open, but with an error";
}

TEST_F(FileContents, OfTwoGibibytesAndMoreAreNotRead) {
  simulated::FileNode& file = local().AddFile(u"C:\\D\\huge");
  const std::pair<std::uint64_t, std::int32_t> sizes[] = {
      {2ull << 30, 9},       {3ull << 30, 9}, {(4ull << 30) - 1, 9},
      {(4ull << 30) + 9, 7}, {6ull << 30, 9}, {3435974ull << 32, 6}};
  for (const auto& [size, number] : sizes) {
    file.Size(size);
    EXPECT_EQ(ErrorOf([&] { root_->ReadBinaryFileAPI(u"C:\\D\\huge"); }), number) << size;
    EXPECT_EQ(ErrorOf([&] { root_->ReadTextFile(u"C:\\D\\huge"); }), 7) << size;
  }
  EXPECT_EQ(journal().Count("ReadFile"), 0u);
}

TEST_F(FileContents, AreWrittenFromTheStartWithoutCuttingWhatWasLonger) {
  struct Case {
    std::string_view before;  // "-": no file
    const char16_t* text;
    bool unicode;
    std::string_view after;
  };
  using namespace std::string_view_literals;
  const Case cases[] = {
      {"-", u"new", false, "new"},
      {"-", u"", false, ""},
      {"abcdef", u"AB", false, "ABcdef"},
      {"ab", u"longer", false, "longer"},
      {"", u"\u00E9 \u4E2D \u20AC", false, "\xE9 ? \x80"},
      {"-", u"\u00E9\u4E2D", true, "\xFF\xFE\xE9\0\x2D\x4E"sv},
      {"uvwxyz", u"", true, "\xFF\xFEwxyz"},
  };
  for (const Case& c : cases) {
    if (const auto old = local().Find(u"C:\\D\\w")) old->Remove(estate().now());
    if (c.before != "-") Set(u"C:\\D\\w", c.before);
    EXPECT_EQ(Call(*root_, u"WriteTextFile", MemberKind::kMethod,
                   {Variant(u"C:\\D\\w"), Variant(c.text), Variant(c.unicode)}),
              Variant(true));
    EXPECT_EQ(ContentOf(u"C:\\D\\w"), c.after);
  }
  faults().FailEvery("WriteFile", 112);
  EXPECT_EQ(ErrorOf([&] { root_->WriteTextFile(u"C:\\D\\w", u"x", false); }), 61);
}

TEST_F(FileContents, OfBytesAreWrittenToNewFilesOnly) {
  ByteArray squares(2, 2);
  struct Case {
    const char16_t* path;
    ByteArray data;
    std::int32_t raised;
    std::string_view after;
  };
  using namespace std::string_view_literals;
  const Case cases[] = {
      {u"C:\\D\\n1", BytesOf("\0\1\xFF"sv), 0, "\0\1\xFF"sv},
      {u"C:\\D\\n2", BytesOf("five", 5), 0, "five"},
      {u"C:\\D\\a", BytesOf("new"), 183, ""},
      {u"C:\\D\\n3", ByteArray(), 9, ""},
      {u"C:\\D\\n4", squares, 9, ""},
      {u"C:\\None\\n", BytesOf("x"), 3, "no file"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(ToUtf8(c.path));
    journal().Clear();
    ByteArray data = c.data;
    std::int32_t written = -1;
    EXPECT_EQ(ErrorOf([&] { written = root_->WriteBinaryFileAPI(c.path, data); }), c.raised);
    EXPECT_EQ(written, c.raised ? -1 : static_cast<std::int32_t>(c.after.size()));
    EXPECT_EQ(journal().Count("FlushFileBuffers"), c.raised ? 0u : 1u);
    EXPECT_EQ(ContentOf(c.path), c.after);
  }
}

TEST_F(FileContents, AreCopiedIntoAFolderThatIsMadeWhereItIsMissing) {
  local().AddFile(u"C:\\D\\taken", "old");
  struct Case {
    const char16_t* source;
    const char16_t* target;
    bool overwrite;
    std::int32_t raised;
    std::string_view after;
  };
  const Case cases[] = {
      {u"C:\\D\\a", u"C:\\Made\\copy", false, 0, "alpha"},
      {u"C:\\D\\a", u"C:\\None\\None\\copy", false, 3, "no file"},
      {u"C:\\D\\a", u"C:\\D\\taken", false, 80, "old"},
      {u"C:\\D\\a", u"C:\\D\\taken", true, 0, "alpha"},
      {u"C:\\D\\none", u"C:\\Left\\other", true, 2, "no file"},
      {u"\\\\SRV\\Share\\Deep\\f", u"C:\\D\\remote", true, 0, ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(ToUtf8(c.target));
    EXPECT_EQ(ErrorOf([&] { root_->CopyFile(c.source, c.target, c.overwrite); }), c.raised);
    EXPECT_EQ(ContentOf(c.target), c.after);
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
