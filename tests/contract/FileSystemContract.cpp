#include <cstring>
#include <string>
#include <tuple>
#include <vector>

#include "automation/Text.h"
#include "contract/World.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"

namespace veldmark {
namespace {

// In a table: this operation isn't asked.
constexpr int kSkip = -1;
constexpr DWORD kShareAll = kFileShareRead | kFileShareWrite | kFileShareDelete;

class FilesAndFolders : public Contract {
 protected:
  FilesAndFolders() {
    Touch(u"\\file.txt", "text");
    for (const char16_t* name : {u"\\dir", u"\\empty"}) {
      EXPECT_TRUE(files_.CreateDirectoryW(In(name).c_str(), nullptr));
    }
    Touch(u"\\dir\\in.txt");
  }

  FileHandle Open(TextView path, DWORD access, DWORD share, DWORD disposition, DWORD flags = 0) {
    return FileHandle(files_, files_.CreateFileW(Text(path).c_str(), access, share, nullptr,
                                                 disposition, flags, nullptr));
  }

  std::string ContentOf(TextView name) {
    const FileHandle file = Open(In(name), kGenericRead, kShareAll, kOpenExisting);
    char bytes[64];
    DWORD count = 0;
    EXPECT_TRUE(files_.ReadFile(file.Get(), bytes, sizeof bytes, &count, nullptr));
    return {bytes, count};
  }

  // The attributes of a file or folder; 0 where there is none.
  DWORD Attributes(const Text& path) {
    WIN32_FILE_ATTRIBUTE_DATA record{};
    files_.GetFileAttributesExW(path.c_str(), kGetFileExInfoStandard, &record);
    return record.dwFileAttributes;
  }

  // The names that a listing gives, each followed by a blank; "!" and the code if it fails.
  std::string List(TextView path) {
    WIN32_FIND_DATAW data;
    const FindHandle find(files_, files_.FindFirstFileW(Text(path).c_str(), &data));
    if (!find) return "!" + std::to_string(LastPlatformError());
    std::string names;
    do {
      names += ToUtf8(data.cFileName) + " ";
    } while (files_.FindNextFileW(find.Get(), &data));
    EXPECT_EQ(LastPlatformError(), kErrorNoMoreFiles);
    EXPECT_FALSE(files_.FindNextFileW(find.Get(), &data)) << "past the end";
    return names;
  }

  // What each operation fails with on a path; 0 where it succeeds.
  struct Failures {
    Text path;
    int find, attributes, create, remove, erase, open;
  };

  void Expect(const std::vector<Failures>& table) {
    for (const Failures& row : table) {
      SCOPED_TRACE(ToUtf8(row.path.substr(0, 80)));
      LPCWSTR const path = row.path.c_str();
      const auto expect = [&](const char* operation, int expected, auto call) {
        if (expected == kSkip) return;
        EXPECT_EQ(Code(call()), static_cast<DWORD>(expected)) << operation;
      };
      WIN32_FIND_DATAW data;
      WIN32_FILE_ATTRIBUTE_DATA record;
      expect("find", row.find,
             [&] { return FindHandle(files_, files_.FindFirstFileW(path, &data)); });
      expect("attributes", row.attributes,
             [&] { return files_.GetFileAttributesExW(path, kGetFileExInfoStandard, &record); });
      expect("set", row.attributes,
             [&] { return files_.SetFileAttributesW(path, kFileAttributeArchive); });
      expect("create", row.create, [&] { return files_.CreateDirectoryW(path, nullptr); });
      expect("remove", row.remove, [&] { return files_.RemoveDirectoryW(path); });
      expect("erase", row.erase, [&] { return files_.DeleteFileW(path); });
      expect("open", row.open, [&] { return Open(path, kGenericRead, kShareAll, kOpenExisting); });
    }
  }
};

TEST_F(FilesAndFolders, FailWithTheCodeOfWhatIsWrongWithThePathOrItsDriveOrServer) {
  Expect({{In(u"\\none"), 2, 2, kSkip, 2, 2, 2},
          {In(u"\\none\\x"), 3, 3, 3, 3, 3, 3},
          {In(u"\\none\\*"), 3, 123, 123, 123, 123, 123},
          {u"", 3, 3, 3, kSkip, 3, 3},
          {In(u"\\dir"), 0, 0, 183, 145, 5, 5},
          {In(u"\\dir\\"), 2, 0, 183, 145, 5, 5},
          {In(u"\\DIR\\..\\dIr\\."), 0, 0, 183, 145, 5, 5},
          {In(u"/dir/in.txt"), 0, 0, 183, 267, kSkip, 0},
          {In(u"\\FILE.txt. . "), 0, 0, 183, 267, kSkip, 0},
          {In(u"\\file.txt\\"), kSkip, kSkip, kSkip, kSkip, 123, 123},
          {In(u"\\file.txt\\x"), kSkip, 3, 3, kSkip, 3, 3},
          {In(u"\\a*b"), 2, 123, 123, 123, 123, 123},
          {In(u"\\a?b"), 2, 123, 123, 123, 123, 123},
          {In(u"\\d*r\\in.txt"), 123, 123, 123, 123, 123, 123},
          {u"\\\\?\\" + In(u"\\dir"), 0, 0, 183, 145, 5, 5},
          {u"\\\\?\\" + In(u"\\dir\\*.*"), 0, 123, 123, 123, 123, 123},
          {u"\\\\?\\" + In(u"\\.\\file.txt"), 123, 123, 123, 123, 123, 123},
          {u"\\\\?\\" + In(u"\\none\\x"), 3, 3, 3, 3, 3, 3},
          {In(u"").substr(0, 3), 2, kSkip, kSkip, kSkip, 5, 5},
          {u"Q:\\x", 3, 3, 3, 3, 3, 3},
          {u"\\\\?\\Q:\\x\\y", 3, 3, 3, 3, 3, 3},
          {u"\\\\no-such-srv\\share\\x", 53, 53, 53, 53, 53, 53},
          {u"\\\\?\\UNC\\no-such-srv\\share\\x", 53, 53, 53, 53, 53, 53}});
}

TEST_F(FilesAndFolders, HaveNamesAndPathsWithinThePublishedRules) {
  if (const char* why = WhyNot(Trait::PathRules)) GTEST_SKIP() << why;
  const auto padded = [&](std::size_t length) {
    return In(u"\\") + Text(length - In(u"\\").size(), u'p');
  };
  const Text long_name = u"\\\\?\\" + In(u"\\") + Text(256, u'n');
  Expect({{In(u"\\a|b"), 123, 123, 123, 123, 123, 123},
          {In(u"\\a\"b"), 2, 123, 123, 123, 123, 123},
          {In(u"\\a\u0001b"), 123, 123, 123, 123, 123, 123},
          {padded(247), 2, 2, 0, 0, 2, 2},
          {padded(248), 2, 2, 206, 2, 2, 2},
          {padded(259), 2, 2, 206, 2, 2, 2},
          {padded(260), 3, 3, 206, 3, 3, 3},
          {u"\\\\?\\" + padded(262), 2, 2, kSkip, 2, 2, 2},
          {long_name, 123, 123, 123, 123, 123, 123},
          {long_name.substr(0, long_name.size() - 1), 2, 2, 0, 0, 2, 2},
          {u"\\\\?\\" + In(u"/dir"), 123, 123, 123, 123, 123, 123},
          {u"\\\\?\\" + In(u"\\file.txt."), 2, 2, kSkip, 2, 2, 2},
          {u"\\\\?\\" + In(u"\\dir\\\\in.txt"), 123, 123, 123, 123, 123, 123},
          {In(u"\\file.txt\\*"), 267, kSkip, kSkip, kSkip, kSkip, kSkip},
          {In(u"\\file.txt\\"), 267, 123, kSkip, kSkip, kSkip, kSkip},
          {In(u"\\none\\"), 3, 2, kSkip, 2, kSkip, kSkip}});
  // A folder of this name is out of reach of plain paths.
  const Text odd = u"\\\\?\\" + In(u"\\odd.");
  EXPECT_TRUE(files_.CreateDirectoryW(odd.c_str(), nullptr));
  EXPECT_EQ(Attributes(In(u"\\odd.")), 0u);
  EXPECT_TRUE(files_.RemoveDirectoryW(odd.c_str()));
}

TEST_F(FilesAndFolders, ComeInListingsAfterTheFolderAndItsParent) {
  EXPECT_EQ(List(In(u"\\*.*")), ". .. dir empty file.txt ");
  EXPECT_EQ(List(In(u"\\empty\\*")), ". .. ");
  EXPECT_EQ(List(In(u"\\EMPTY")), "empty ");
  const std::string root = List(In(u"").substr(0, 3) + u"*");
  EXPECT_NE(root.substr(0, 2), ". ") << "a drive's root has no parent";

  WIN32_FIND_DATAW data;
  const FindHandle find(files_, files_.FindFirstFileW(In(u"\\dir").c_str(), &data));
  EXPECT_EQ(data.dwFileAttributes, kFileAttributeDirectory);
  EXPECT_EQ(Text(data.cAlternateFileName), u"");
  EXPECT_NE(data.ftCreationTime.dwHighDateTime, 0u);
  EXPECT_EQ(data.nFileSizeLow, 0u);
}

TEST_F(FilesAndFolders, MatchPatternsByLongAndShortNames) {
  for (const char16_t* name : {u"\\alpha.txt", u"\\beta.html", u"\\noext", u"\\two words.text",
                               u"\\.hidden", u"\\a.b.c", u"\\UPPER.TXT"}) {
    Touch(name);
  }
  EXPECT_EQ(List(In(u"\\*.txt")), "alpha.txt file.txt UPPER.TXT ");
  EXPECT_EQ(List(In(u"\\B*")), "beta.html ");
  EXPECT_EQ(List(In(u"\\*.htm")), "beta.html ");
  EXPECT_EQ(List(In(u"\\n?ext")), "noext ");
  EXPECT_EQ(List(In(u"\\a*.*")), "a.b.c alpha.txt ");
  EXPECT_EQ(List(In(u"\\*.b.*")), "a.b.c ");
  EXPECT_EQ(List(In(u"\\*.c")), "a.b.c ");
  EXPECT_EQ(List(In(u"\\noext.*")), "noext ");
  EXPECT_EQ(List(In(u"\\.h*")), ".hidden ");
  EXPECT_EQ(List(In(u"\\upper.TXT")), "UPPER.TXT ");
  EXPECT_EQ(List(In(u"\\*.zzz")), "!2");
  if (const char* why = WhyNot(Trait::DosWildcards)) GTEST_SKIP() << why;
  EXPECT_EQ(List(In(u"\\*.")), ". .. .hidden dir empty noext ");
  EXPECT_EQ(List(In(u"\\file.txt?")), "file.txt ");
  EXPECT_EQ(List(In(u"\\?????.txt")), "alpha.txt file.txt UPPER.TXT ");
  EXPECT_EQ(List(In(u"\\noext.??")), "noext ");
  EXPECT_EQ(List(In(u"\\a.?.?")), "a.b.c ");
}

TEST_F(FilesAndFolders, GetShortNamesWhereTheirNamesAreNoneThemselves) {
  if (const char* why = WhyNot(Trait::ShortNames)) GTEST_SKIP() << why;
  const std::pair<const char16_t*, const char*> table[] = {
      {u"\\LongFileName.text", "LONGFI~1.TEX"},
      {u"\\LongFileOther.txt", "LONGFI~1.TXT"},
      {u"\\Long File Three.txt", "LONGFI~2.TXT"},
      {u"\\.profile", "PROFIL~1"},
      {u"\\a+b=c.txt", "A_B_C~1.TXT"},
      {u"\\x.y.z.html", "XYZ~1.HTM"},
      {u"\\lower.txt", ""},
      {u"\\EIGHTCHR.EXT", ""}};
  for (const auto& [name, short_name] : table) {
    Touch(name);
    WIN32_FIND_DATAW data;
    const FindHandle find(files_, files_.FindFirstFileW(In(name).c_str(), &data));
    EXPECT_EQ(ToUtf8(data.cAlternateFileName), short_name) << ToUtf8(name);
  }
  EXPECT_EQ(List(In(u"\\longfi~2.*")), "Long File Three.txt ");
  EXPECT_EQ(List(In(u"\\PROFIL~1")), ".profile ");
  EXPECT_EQ(Attributes(In(u"\\profil~1")), kFileAttributeArchive);
}

TEST_F(FilesAndFolders, MayGoWhileTheyAreListed) {
  for (const char16_t* name : {u"\\empty\\1", u"\\empty\\2", u"\\empty\\3"}) Touch(name);
  WIN32_FIND_DATAW data;
  std::string seen;
  {
    const FindHandle find(files_, files_.FindFirstFileW(In(u"\\empty\\*").c_str(), &data));
    ASSERT_TRUE(find);
    do {
      const Text name = data.cFileName;
      seen += ToUtf8(name) + " ";
      if (name.size() == 1 && name != u".") {
        EXPECT_TRUE(files_.DeleteFileW(In(u"\\empty\\" + name).c_str()));
      }
    } while (files_.FindNextFileW(find.Get(), &data));
    if (!WhyNot(Trait::ListedFoldersStay)) {
      EXPECT_EQ(Code(files_.RemoveDirectoryW(In(u"\\empty").c_str())), kErrorSharingViolation)
          << "the listing holds the folder";
    }
  }
  EXPECT_EQ(seen, ". .. 1 2 3 ");
  EXPECT_TRUE(files_.RemoveDirectoryW(In(u"\\empty").c_str()));
}

TEST_F(FilesAndFolders, KeepTheAttributesThatCanBeSet) {
  const Text file = In(u"\\file.txt");
  const Text folder = In(u"\\dir");
  const auto set = [&](const Text& path, DWORD attributes) {
    EXPECT_TRUE(files_.SetFileAttributesW(path.c_str(), attributes));
    return Attributes(path);
  };
  constexpr DWORD kArchive = kFileAttributeArchive;
  constexpr DWORD kHiddenSystem = kFileAttributeHidden | kFileAttributeSystem;
  EXPECT_EQ(Attributes(file), kArchive);
  EXPECT_EQ(set(file, kHiddenSystem | kArchive), kHiddenSystem | kArchive);
  EXPECT_EQ(set(folder, kFileAttributeHidden) & ~kArchive,
            kFileAttributeHidden | kFileAttributeDirectory);
  EXPECT_EQ(set(folder, 0), kFileAttributeDirectory);
  EXPECT_EQ(set(file, kArchive | kFileAttributeReadOnly), kArchive | kFileAttributeReadOnly);
  EXPECT_EQ(Code(files_.DeleteFileW(file.c_str())), kErrorAccessDenied);
  WIN32_FILE_ATTRIBUTE_DATA record;
  EXPECT_TRUE(files_.GetFileAttributesExW(file.c_str(), kGetFileExInfoStandard, &record));
  EXPECT_EQ(record.nFileSizeLow, 4u);
  EXPECT_EQ(Code(files_.GetFileAttributesExW(file.c_str(), 1, &record)), kErrorInvalidParameter);
  EXPECT_TRUE(files_.SetFileAttributesW(file.c_str(), 0));
  EXPECT_TRUE(files_.DeleteFileW(file.c_str()));
}

TEST_F(FilesAndFolders, AreGuardedByTheirAttributesAndByTheAccessAskedFor) {
  if (const char* why = WhyNot(Trait::FileGuards)) GTEST_SKIP() << why;
  const Text file = In(u"\\file.txt");
  const Text folder = In(u"\\empty");
  EXPECT_EQ(Code(Open(file, kGenericRead, 0, kTruncateExisting)), kErrorInvalidParameter);
  for (const DWORD attributes : {0u, kFileAttributeNormal, kFileAttributeDirectory}) {
    EXPECT_TRUE(files_.SetFileAttributesW(file.c_str(), attributes));
    EXPECT_EQ(Attributes(file), kFileAttributeNormal);
  }
  files_.SetFileAttributesW(file.c_str(), kFileAttributeHidden);
  EXPECT_EQ(Code(Open(file, kGenericWrite, 0, kCreateAlways)), kErrorAccessDenied);
  EXPECT_TRUE(Open(file, kGenericWrite, 0, kCreateAlways, kFileAttributeHidden));
  EXPECT_EQ(Attributes(file), kFileAttributeHidden | kFileAttributeArchive);
  files_.SetFileAttributesW(file.c_str(), kFileAttributeReadOnly);
  for (const DWORD disposition : {kOpenExisting, kCreateAlways, kOpenAlways, kTruncateExisting}) {
    EXPECT_EQ(Code(Open(file, kGenericWrite, 0, disposition)), kErrorAccessDenied);
  }
  EXPECT_EQ(Code(files_.CopyFileW(In(u"\\dir\\in.txt").c_str(), file.c_str(), 0)),
            kErrorAccessDenied);
  files_.SetFileAttributesW(folder.c_str(), kFileAttributeReadOnly);
  EXPECT_EQ(Code(files_.RemoveDirectoryW(folder.c_str())), kErrorAccessDenied);
}

TEST_F(FilesAndFolders, OpenByTheirDisposition) {
  const std::tuple<const char16_t*, DWORD, DWORD, DWORD, DWORD, bool> table[] = {
      {u"\\file.txt", kCreateNew, kGenericRead, 0, kErrorFileExists, false},
      {u"\\n1", kCreateNew, kGenericWrite, 0, 0, true},
      {u"\\n1", kCreateAlways, kGenericWrite, 0, kErrorAlreadyExists, true},
      {u"\\n2", kCreateAlways, kGenericWrite, 0, 0, true},
      {u"\\n2", kOpenAlways, kGenericRead, 0, kErrorAlreadyExists, true},
      {u"\\n3", kOpenAlways, kGenericRead, 0, 0, true},
      {u"\\n3", kOpenExisting, 0, 0, 0, true},
      {u"\\n4", kOpenExisting, kGenericWrite, 0, kErrorFileNotFound, false},
      {u"\\n4", kTruncateExisting, kGenericWrite, 0, kErrorFileNotFound, false},
      {u"\\file.txt", kTruncateExisting, kGenericWrite, 0, 0, true},
      {u"\\file.txt", 0, kGenericRead, 0, kErrorInvalidParameter, false},
      {u"\\file.txt", 9, kGenericRead, 0, kErrorInvalidParameter, false},
      {u"\\none\\x", kCreateAlways, kGenericWrite, 0, kErrorPathNotFound, false},
      {u"\\new\\", kCreateAlways, kGenericWrite, 0, kErrorInvalidName, false},
      {u"\\dir", kCreateNew, kGenericRead, 0, kErrorFileExists, false},
      {u"\\dir", kCreateAlways, kGenericWrite, 0, kErrorAccessDenied, false},
      {u"\\dir", kOpenExisting, kGenericRead, kFileFlagBackupSemantics, 0, true}};
  for (const auto& [name, disposition, access, flags, error, succeeds] : table) {
    const FileHandle file = Open(In(name), access, 0, disposition, flags);
    EXPECT_EQ(static_cast<bool>(file), succeeds);
    EXPECT_EQ(LastPlatformError(), error) << ToUtf8(name) << " " << disposition;
  }
  EXPECT_EQ(ContentOf(u"\\file.txt"), "") << "truncated";
}

TEST_F(FilesAndFolders, AreSharedAsBothSidesAgree) {
  constexpr DWORD kR = kGenericRead, kW = kGenericWrite;
  const std::tuple<DWORD, DWORD, DWORD, DWORD, DWORD> table[] = {
      {kR, kFileShareRead, kR, kFileShareRead, 0},
      {kR, kFileShareRead, kR, 0, kErrorSharingViolation},
      {kR, kFileShareRead, kW, kShareAll, kErrorSharingViolation},
      {kR, kShareAll, kW, kShareAll, 0},
      {kR, kShareAll, kW, kFileShareWrite, kErrorSharingViolation},
      {kW, kShareAll, kR, kFileShareRead, kErrorSharingViolation},
      {kR, 0, 0, 0, 0},
      {0, 0, kW, 0, 0},
      {kR, kFileShareRead, kDelete, kShareAll, kErrorSharingViolation},
      {kR, kShareAll, kDelete, kShareAll, 0}};
  for (const auto& [access, share, other_access, other_share, error] : table) {
    const FileHandle first = Open(In(u"\\file.txt"), access, share, kOpenExisting);
    ASSERT_TRUE(first);
    Open(In(u"\\file.txt"), other_access, other_share, kOpenExisting);
    EXPECT_EQ(LastPlatformError(), error)
        << std::hex << access << " " << share << " " << other_access;
  }
  FileHandle reader = Open(In(u"\\file.txt"), kR, kFileShareRead, kOpenExisting);
  EXPECT_EQ(Code(files_.DeleteFileW(In(u"\\file.txt").c_str())), kErrorSharingViolation);
  EXPECT_EQ(Code(files_.CopyFileW(In(u"\\dir\\in.txt").c_str(), In(u"\\file.txt").c_str(), 0)),
            kErrorSharingViolation);
  reader = Open(In(u"\\dir\\in.txt"), kR, kShareAll, kOpenExisting);
  EXPECT_TRUE(files_.DeleteFileW(In(u"\\dir\\in.txt").c_str()));
  reader.Reset();
  EXPECT_EQ(List(In(u"\\dir\\in.txt")), "!2") << "gone with the last handle";
  const FileHandle folder = Open(In(u"\\dir"), kR, kFileShareRead | kFileShareWrite, kOpenExisting,
                                 kFileFlagBackupSemantics);
  EXPECT_EQ(Code(files_.RemoveDirectoryW(In(u"\\dir").c_str())), kErrorSharingViolation);
}

TEST_F(FilesAndFolders, AreReadAndWrittenAtAPosition) {
  char bytes[8] = {};
  DWORD count = 99;
  {
    const FileHandle file = Open(In(u"\\file.txt"), kGenericRead | kGenericWrite, 0, kOpenExisting);
    EXPECT_TRUE(files_.ReadFile(file.Get(), bytes, 2, &count, nullptr));
    EXPECT_TRUE(files_.WriteFile(file.Get(), "--", 2, &count, nullptr));
    EXPECT_TRUE(files_.ReadFile(file.Get(), bytes + 2, 2, &count, nullptr));
    EXPECT_EQ(count, 0u) << "at the end";
    EXPECT_STREQ(bytes, "te");
    EXPECT_TRUE(files_.WriteFile(file.Get(), "!", 1, &count, nullptr));
    LARGE_INTEGER size = 0;
    EXPECT_TRUE(files_.GetFileSizeEx(file.Get(), &size));
    EXPECT_EQ(size, 5);
    DWORD high = 99;
    EXPECT_EQ(files_.GetFileSize(file.Get(), &high), 5u);
    EXPECT_EQ(high, 0u);
    EXPECT_TRUE(files_.FlushFileBuffers(file.Get()));
  }
  EXPECT_EQ(ContentOf(u"\\file.txt"), "te--!");
  {
    const FileHandle appender = Open(In(u"\\file.txt"), kFileAppendData, 0, kOpenAlways);
    EXPECT_TRUE(files_.WriteFile(appender.Get(), "+", 1, &count, nullptr));
    EXPECT_EQ(Code(files_.ReadFile(appender.Get(), bytes, 1, &count, nullptr)), kErrorAccessDenied);
  }
  EXPECT_EQ(ContentOf(u"\\file.txt").substr(4), "!+");
  const FileHandle reader = Open(In(u"\\file.txt"), kGenericRead, 0, kOpenExisting);
  EXPECT_EQ(Code(files_.WriteFile(reader.Get(), "x", 1, &count, nullptr)), kErrorAccessDenied);
  EXPECT_EQ(Code(files_.FlushFileBuffers(reader.Get())), kErrorAccessDenied);
}

TEST_F(FilesAndFolders, RecordWhenTheyWereWritten) {
  WIN32_FILE_ATTRIBUTE_DATA before, after;
  const Text path = In(u"\\file.txt");
  ASSERT_TRUE(files_.GetFileAttributesExW(path.c_str(), kGetFileExInfoStandard, &before));
  world_->LetPass(50);
  {
    const FileHandle file = Open(path, kGenericWrite, 0, kOpenExisting);
    DWORD count = 0;
    files_.WriteFile(file.Get(), "later", 5, &count, nullptr);
  }
  ASSERT_TRUE(files_.GetFileAttributesExW(path.c_str(), kGetFileExInfoStandard, &after));
  if (!WhyNot(Trait::CreationTimes)) {
    EXPECT_EQ(std::memcmp(&before.ftCreationTime, &after.ftCreationTime, sizeof(FILETIME)), 0);
  }
  EXPECT_GT(Ticks(after.ftLastWriteTime), Ticks(before.ftLastWriteTime));
}

TEST_F(FilesAndFolders, AreCopiedWithContentAndAttributes) {
  const Text file = In(u"\\file.txt"), copy = In(u"\\copy"), away = u"\\\\no-such-srv\\share\\x";
  const auto copied = [&](const Text& from, const Text& to, BOOL keep) {
    return Code(files_.CopyFileW(from.c_str(), to.c_str(), keep));
  };
  EXPECT_EQ(copied(file, copy, 1), 0u);
  EXPECT_EQ(copied(file, copy, 1), kErrorFileExists);
  EXPECT_EQ(copied(In(u"\\dir\\in.txt"), copy, 0), 0u);
  EXPECT_EQ(copied(In(u"\\none"), copy, 0), kErrorFileNotFound);
  EXPECT_EQ(copied(In(u"\\dir"), In(u"\\copy2"), 0), kErrorAccessDenied);
  EXPECT_EQ(copied(file, In(u"\\dir"), 0), kErrorAccessDenied);
  EXPECT_EQ(copied(file, In(u"\\dir"), 1), kErrorFileExists);
  EXPECT_EQ(copied(file, In(u"\\none\\x"), 1), kErrorPathNotFound);
  EXPECT_EQ(copied(file, file, 0), kErrorSharingViolation);
  EXPECT_EQ(copied(file, u"Q:\\x", 0), kErrorPathNotFound);
  EXPECT_EQ(copied(u"Q:\\x", copy, 0), kErrorPathNotFound);
  EXPECT_EQ(copied(file, away, 0), kErrorBadNetPath);
  EXPECT_EQ(copied(away, copy, 0), kErrorBadNetPath);
  EXPECT_EQ(copied(In(u"\\none"), u"Q:\\x", 0), kErrorFileNotFound);
  EXPECT_EQ(copied(u"Q:\\x", away, 0), kErrorPathNotFound);
  EXPECT_EQ(ContentOf(u"\\copy"), "");
  files_.SetFileAttributesW(file.c_str(), kFileAttributeReadOnly | kFileAttributeArchive);
  EXPECT_EQ(copied(file, In(u"\\copy3"), 1), 0u);
  EXPECT_EQ(ContentOf(u"\\copy3"), "text");
  EXPECT_EQ(Attributes(In(u"\\copy3")), kFileAttributeReadOnly | kFileAttributeArchive);
}

TEST_F(FilesAndFolders, RefuseHandlesThatAreNone) {
  DWORD count = 0;
  LARGE_INTEGER size = 0;
  HANDLE const none = kInvalidHandleValue;
  EXPECT_EQ(Code(files_.FindClose(none)), kErrorInvalidHandle);
  EXPECT_EQ(Code(files_.ReadFile(none, &count, 1, &count, nullptr)), kErrorInvalidHandle);
  EXPECT_EQ(Code(files_.WriteFile(none, &count, 1, &count, nullptr)), kErrorInvalidHandle);
  EXPECT_EQ(Code(files_.GetFileSizeEx(none, &size)), kErrorInvalidHandle);
  EXPECT_EQ(files_.GetFileSize(none, nullptr), kInvalidFileSize);
  EXPECT_EQ(LastPlatformError(), kErrorInvalidHandle);
}

TEST_F(FilesAndFolders, StandOnDrivesOfAType) {
  WCHAR roots[128];
  const DWORD needed = files_.GetLogicalDriveStringsW(0, nullptr);
  ASSERT_GE(needed, 5u);
  EXPECT_EQ(files_.GetLogicalDriveStringsW(needed - 1, roots), needed) << "too small";
  ASSERT_EQ(files_.GetLogicalDriveStringsW(128, roots), needed - 1);
  EXPECT_NE(Text(roots, needed).find(TextView(u"C:\\\0", 4)), Text::npos);
  EXPECT_EQ(Text(roots, needed).substr(needed - 2), TextView(u"\0\0", 2));
  for (const char16_t* fixed : {u"C:\\", u"c:", LPCWSTR{nullptr}}) {
    EXPECT_EQ(files_.GetDriveTypeW(fixed), kDriveFixed);
  }
  for (const char16_t* none : {u"Q:\\", u"C:\\no such"}) {
    EXPECT_EQ(files_.GetDriveTypeW(none), kDriveNoRootDir);
  }
}

class Volumes : public Contract {
 protected:
  Text Root() const { return world_->scratch().substr(0, 3); }
};

TEST_F(Volumes, TellTheirSpaceFromAnyFolderOnThem) {
  Touch(u"\\file");
  const std::pair<Text, DWORD> rows[] = {{Root(), 0},
                                         {Root().substr(0, 2), 0},
                                         {In(u""), 0},
                                         {In(u"\\"), 0},
                                         {u"\\\\?\\" + In(u"\\"), 0},
                                         {In(u"\\file"), kErrorDirectory},
                                         {In(u"\\none"), kErrorPathNotFound},
                                         {In(u"\\none\\none"), kErrorPathNotFound},
                                         {u"Q:\\", kErrorPathNotFound},
                                         {u"\\\\nobody-there\\share\\", kErrorBadNetPath},
                                         {u"", kErrorPathNotFound}};
  for (const auto& [folder, error] : rows) {
    SCOPED_TRACE(ToUtf8(folder));
    std::uint64_t to_caller = 0, total = 0, total_free = 0;
    EXPECT_EQ(Code(files_.GetDiskFreeSpaceExW(folder.c_str(), &to_caller, &total, &total_free)),
              error);
    EXPECT_EQ(total > 0, error == 0);
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
  const auto describe = [&](const Text& root) {
    return Code(files_.GetVolumeInformationW(root.c_str(), label, 260, &serial, &longest, &flags,
                                             file_system, 260));
  };
  ASSERT_EQ(describe(Root()), 0u);
  EXPECT_NE(Text(label), u"?");
  EXPECT_NE(Text(file_system), u"");
  EXPECT_GE(longest, 110u);
  EXPECT_NE(flags, 0u);
  const auto own_root = Root();
  for (LPCWSTR const root : {own_root.c_str(), LPCWSTR{nullptr}}) {
    EXPECT_TRUE(
        files_.GetVolumeInformationW(root, nullptr, 0, nullptr, nullptr, nullptr, nullptr, 0));
  }
  EXPECT_EQ(describe(In(u"")), kErrorDirNotRoot);
  EXPECT_EQ(describe(In(u"\\")), kErrorDirNotRoot);
  EXPECT_EQ(describe(In(u"\\none\\")), kErrorDirNotRoot);
  EXPECT_EQ(describe(u"Q:\\"), kErrorPathNotFound);
  EXPECT_EQ(describe(u"\\\\nobody-there\\share\\"), kErrorBadNetPath);
}

TEST_F(Volumes, TakeMediaCommandsWithoutWaitingForADevice) {
  char answer[127] = "?";
  EXPECT_NE(platform_.multimedia.mciSendStringA("set CDAudio door open", answer, 127, nullptr),
            kErrorNotSupported);
  EXPECT_EQ(std::string(answer), "");
}

}  // namespace
}  // namespace veldmark
