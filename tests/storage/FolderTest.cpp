#include "root/SystemRoot.h"
#include "security/CSid.h"
#include "storage/StorageFixture.h"

namespace veldmark {
namespace {

using Files = StorageTest;
using Folders = StorageTest;
using Paths = StorageTest;
using Walks = StorageTest;

TEST_F(Files, AreFoundByPathAndTakeTheirNameFromTheEntry) {
  local().AddFile(u"C:\\D\\Long file name.txt").ShortName(u"LONGFI~1.TXT");
  const struct {
    const char16_t *given, *path, *name;
  } cases[] = {
      {u"c:\\d\\A", u"c:\\d\\A", u"a"},
      {u"\\\\?\\C:\\D\\a", u"C:\\D\\a", u"a"},
      {u"\\\\SRV\\Share\\Deep\\f", u"\\\\SRV\\Share\\Deep\\f", u"f"},
      {u"C:\\D\\longfi~1.txt", u"C:\\D\\longfi~1.txtLong file name.txt", u"Long file name.txt"},
      {u"C:\\D\\b*", u"C:\\D\\b*b", u"b"},
      {u"C:\\D\\o", u"C:\\D\\o", u"o"}};
  for (const auto& c : cases) {
    const Ref<CFile> file = Engine().GetFile(c.given);
    EXPECT_EQ(file->Path(), c.path);
    EXPECT_EQ(file->FileName, c.name);
  }
}

TEST_F(Folders, AreFoundByPathAndRootsWithoutAskingThePlatform) {
  const struct {
    const char16_t *given, *path, *name;
    const char* asked;  // empty: no platform call at all
  } cases[] = {
      {u"C:", u"C:\\", u"", ""},
      {u"Q:\\", u"Q:\\", u"", ""},
      {u"::", u"::\\", u"", ""},
      {u"\\\\nobody\\share", u"\\\\nobody\\share\\", u"", ""},
      {u"\\\\srv\\share\\", u"\\\\srv\\share\\", u"", ""},
      {u"c:\\d", u"c:\\d", u"D", "\\\\?\\c:\\d"},
      {u"C:\\D\\", u"C:\\D", u"D", "\\\\?\\C:\\D"},
      {u"C:\\D\\.", u"C:\\D\\.", u"", "\\\\?\\C:\\D\\."},
      {u"\\\\SRV\\Share\\deep", u"\\\\SRV\\Share\\deep", u"Deep", "\\\\?\\UNC\\SRV\\Share\\deep"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(ToUtf8(c.given));
    journal().Clear();
    const Ref<CFolder> folder = Engine().GetFolder(c.given);
    EXPECT_EQ(folder->Path(), c.path);
    EXPECT_EQ(folder->FolderName, c.name);
    EXPECT_EQ(folder->Attributes(), FA_Directory);
    EXPECT_EQ(journal().entries().empty() ? "" : journal().entries().front().argument, c.asked);
  }
  for (const char16_t* path : {u"", u"\\", u".", u"\\\\SRV", u"\\\\"}) {
    EXPECT_NE(ErrorOf([&] { Engine().GetFolder(path); }), 0) << ToUtf8(path);
  }
}

TEST_F(Files, AndFoldersCarryWhatTheirEntrySays) {
  SetZone(300);
  const auto furnish = [noon = simulated::Estate::kDefaultTime](simulated::FileNode& node) {
    constexpr auto kSecond = simulated::kTicksPerSecond;
    node.ShortName(u"LONG~1").Attributes(kFileAttributeHidden);
    node.Times(noon, noon + 64 * kSecond, noon + 5 * kSecond / 2);
  };
  furnish(local().AddFile(u"C:\\D\\o\\Long file", "alpha"));
  furnish(local().AddFolder(u"C:\\Empty\\Long folder"));
  const auto expect = [](const auto& item, const Text& path, std::int32_t attributes) {
    EXPECT_EQ(item->Path(), path);
    EXPECT_EQ(item->ShortName, u"LONG~1");
    EXPECT_EQ(item->Attributes(), attributes);
    EXPECT_EQ(item->DateCreated, MakeDate(2024, 3, 5, 9, 30, 0));
    EXPECT_EQ(item->DateLastAccessed, MakeDate(2024, 3, 5, 9, 31, 4));
    EXPECT_EQ(item->DateLastModified, MakeDate(2024, 3, 5, 9, 30, 2));
  };
  const Ref<CFiles> files = Engine().GetFolder(u"C:\\D\\o")->GetFiles();
  expect(files->ItemByKey(u"Long file"), u"C:\\D\\o\\Long file", FA_Hidden);
  EXPECT_EQ(files->ItemByKey(u"Long file")->FileSize, Variant(5.0));
  EXPECT_EQ(files->ItemByKey(u".")->Attributes(), FA_Directory);
  expect(Engine().GetFile(u"C:\\D\\o\\Long file"), u"C:\\D\\o\\Long file", FA_Hidden);
  const Ref<CFolder> folder = Engine().GetFolders(u"C:\\Empty")->ItemByKey(u"Long folder");
  expect(folder, u"C:\\Empty\\Long folder", FA_Directory | FA_Hidden);
  expect(Engine().GetFolder(u"C:\\Empty\\LONG~1"), u"C:\\Empty\\LONG~1", FA_Directory | FA_Hidden);
}

TEST_F(Files, AreDeletedOrSayWhyNot) {
  const struct {
    DWORD attributes;
    bool delete_read_only, locked;
    const char* failing;
    std::int32_t raised;
    DWORD attributes_left;
  } cases[] = {
      {kFileAttributeReadOnly, true, false, "", 0, 0},
      {kFileAttributeReadOnly, false, false, "", 5, kFileAttributeReadOnly},
      {kFileAttributeReadOnly, true, true, "", 32, kFileAttributeNormal},
      {kFileAttributeHidden, true, false, "SetFileAttributesW", 0, 0},
      {kFileAttributeReadOnly, true, false, "SetFileAttributesW", 5, kFileAttributeReadOnly},
      {kFileAttributeHidden, false, false, "DeleteFileW", 1117, kFileAttributeHidden}};
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.attributes) + c.failing);
    const Text path = u"C:\\D\\t" + ToText(&c - cases);
    local().AddFile(path).Attributes(c.attributes).Locked(c.locked);
    const Ref<CFile> file = Engine().GetFile(path);
    if (*c.failing) faults().FailEvery(c.failing, 1117);
    Err().Set(AutomationError(1, u"Before", u"Before"));
    EXPECT_EQ(ErrorOf([&] { EXPECT_TRUE(file->Delete(c.delete_read_only)); }), c.raised);
    EXPECT_NE(Err().Description(), u"Before");
    faults().Clear();
    const auto left = local().Find(path);
    EXPECT_EQ(left == nullptr, c.raised == 0);
    EXPECT_EQ(left ? left->attributes() : 0, c.attributes_left);
  }
  Err().Set(AutomationError(1, u"", u""));
  EXPECT_EQ(Call(*Make<CFile>(), u"Delete", MemberKind::kMethod), Variant(false));
  EXPECT_EQ(Err().Number(), 1);
}

TEST_F(Files, WriteChangedAttributesToDiskWithoutReadingThemBack) {
  const Ref<CFile> file = Engine().GetFile(u"C:\\D\\a");
  file->PutAttributes(FA_Compressed);
  EXPECT_EQ(file->Attributes(), FA_Compressed);
  EXPECT_EQ(local().Find(u"C:\\D\\a")->attributes(), kFileAttributeNormal);
  journal().Clear();
  file->PutAttributes(FA_Compressed);
  EXPECT_TRUE(journal().entries().empty());
  file->PutPath(u"C:\\D\\none");
  EXPECT_EQ(ErrorOf([&] { file->PutAttributes(FA_Hidden); }), 2);
  EXPECT_EQ(file->Attributes(), FA_Compressed);
  for (const char16_t* stored : {u"ShortPath", u"FileType"}) {
    EXPECT_EQ(Call(*file, stored, MemberKind::kGet), Variant(u""));
    Call(*file, stored, MemberKind::kPut, {Variant(stored)});
  }
  EXPECT_EQ(Call(*file, u"ShortPath", MemberKind::kGet), Variant(u"ShortPath"));
}

TEST_F(Folders, TakeNoOtherAttributesThanTheDiskAccepts) {
  const struct {
    std::int32_t value;
    const char* failing;  // the operation that fails with 1117, or succeeds and leaves it behind
    std::int32_t raised, stored;
    const char16_t* source;
  } cases[] = {
      {FA_Directory, "SetFileAttributesW", 0, FA_Directory, u"Before"},  // no change, no call
      {FA_Directory | FA_Hidden, "", 0, FA_Directory | FA_Hidden, u"Before"},
      {FA_Hidden, "", 911, FA_Directory | FA_Hidden, u"Veldmark2.CFolder"},
      {FA_Directory | FA_Compressed, "", 911, FA_Directory, u"Veldmark2.CFolder"},
      {FA_Directory | FA_Hidden, "SetFileAttributesW", 1117, FA_Directory, u"Before"},
      {FA_Hidden, "GetFileAttributesExW", 1117, FA_Hidden, u"Before"}};
  const auto node = local().Find(u"C:\\D");
  for (const auto arm : {&simulated::FaultHook::FailEvery, &simulated::FaultHook::LeaveEvery}) {
    for (const auto& c : cases) {
      SCOPED_TRACE(std::to_string(c.value) + c.failing);
      node->Attributes(0);
      const Ref<CFolder> folder = Engine().GetFolder(u"C:\\D");
      if (*c.failing) (faults().*arm)(c.failing, 1117);
      Err().Set(AutomationError(1, u"Before", u""));
      const auto put = [&] { folder->PutAttributes(static_cast<FileAttribute>(c.value)); };
      EXPECT_EQ(ErrorOf(put), c.raised);
      EXPECT_EQ(folder->Attributes(), c.stored);
      EXPECT_EQ(Err().Source(), c.source);
      EXPECT_EQ(Err().Description() == u"Folder attributes could not be set", c.raised == 911);
      faults().Clear();
    }
  }
  const Ref<CFolder> folder = Engine().GetFolder(u"C:\\D");
  const simulated::Ticks noon = simulated::Estate::kDefaultTime;
  node->Times(noon, noon + 64 * simulated::kTicksPerSecond, noon + simulated::kTicksPerSecond);
  folder->PutAttributes(static_cast<FileAttribute>(FA_Directory | FA_System));
  EXPECT_EQ(folder->DateCreated, MakeDate(2024, 3, 5, 14, 30, 0));
  EXPECT_EQ(folder->DateLastAccessed, MakeDate(2024, 3, 5, 14, 31, 4));
  EXPECT_EQ(folder->DateLastModified, MakeDate(2024, 3, 5, 14, 30, 1));
}

TEST_F(Folders, CountWhatTheirDeletionRemovesAndStopAtTheFirstItemThatStays) {
  const char16_t* const paths[] = {u"C:\\T",          u"C:\\T\\a",    u"C:\\T\\b", u"C:\\T\\s",
                                   u"C:\\T\\s\\deep", u"C:\\T\\s\\f", u"C:\\T\\z"};
  const struct {
    bool files_first, cascade;
    const char16_t* path;
    const char16_t* deny;  // what may not be deleted
    std::int32_t raised, count;
    const char* left;  // of the paths above
  } cases[] = {{true, true, u"C:\\T", u"", 0, 7, ""},
               {true, true, u"\\\\?\\C:\\T\\s\\", u"", 0, 3, "0126"},
               {false, false, u"C:\\T\\z", u"", 0, 1, "012345"},
               {false, false, u"C:\\T", u"", 145, 0, "0123456"},
               {true, false, u"C:\\T", u"", 145, 0, "03456"},
               {false, true, u"C:\\T", u"", 145, 0, "012356"},
               {true, true, u"C:\\T", u"C:\\T\\b", 5, 0, "023456"},
               {true, true, u"C:\\T", u"C:\\T\\s", 5, 0, "036"},
               {true, true, u"C:\\None", u"", 3, 0, "0123456"},
               {true, true, u"", u"", 0, 0, "0123456"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(ToUtf8(c.path) + " " + c.left);
    if (const auto old = local().Find(u"C:\\T")) old->Remove(estate().now());
    local().AddFile(u"C:\\T\\a").Attributes(kFileAttributeReadOnly | kFileAttributeHidden);
    local().AddFile(u"C:\\T\\b");
    local().AddFolder(u"C:\\T\\s\\deep");
    local().AddFile(u"C:\\T\\s\\f");
    local().AddFolder(u"C:\\T\\z");
    if (*c.deny) local().Find(c.deny)->DenyDelete();
    Err().Set(AutomationError(4321, u"Elsewhere", u"Of a call before, which decides nothing"));
    std::int32_t count = 0;
    EXPECT_EQ(ErrorOf([&] { count = At<CFolder>(c.path)->Delete(c.files_first, c.cascade); }),
              c.raised);
    EXPECT_EQ(count, c.count);
    std::string left;
    for (std::size_t i = 0; i < std::size(paths); ++i) {
      if (local().Find(paths[i])) left += std::to_string(i);
    }
    EXPECT_EQ(left, c.left);
  }
}

TEST_F(Folders, PassOnAnErrorThatTheirDeletionLeftWhenASubFolderIsGone) {
  local().AddFile(u"C:\\T\\one\\f").Attributes(kFileAttributeHidden);
  local().AddFolder(u"C:\\T\\two");
  faults().FailEvery("SetFileAttributesW", 1117);
  EXPECT_EQ(FailureOf([] { At<CFolder>(u"C:\\T")->Delete(true, true); }),
            u"1117|Veldmark2.CFolder|" + GetAPIErrorText(1117));
  EXPECT_FALSE(local().Find(u"C:\\T\\one"));
  EXPECT_TRUE(local().Find(u"C:\\T\\two"));

  const Ref<CFolder> async = At<CFolder>(u"C:\\D");
  async->PutAsyncFetch(true);
  EXPECT_EQ(ErrorOf([&] { async->Delete(true, false); }), runtime_error::kObjectNotSet);
  EXPECT_EQ(ErrorOf([&] { async->Delete(false, true); }), runtime_error::kObjectNotSet);
  EXPECT_TRUE(local().Find(u"C:\\D\\a"));
}

TEST_F(Folders, AreMadeWithAYesOrNoBySubFolderAndByPathAsItIsGiven) {
  const Ref<CFolder> folder = At<CFolder>(u"C:\\D");
  EXPECT_TRUE(folder->CreateSubFolder(u"New"));
  EXPECT_TRUE(local().Find(u"C:\\D\\New")->is_folder());
  for (const char16_t* name : {u"New", u"No\\Parent", u"ba:d"}) {
    EXPECT_FALSE(folder->CreateSubFolder(name)) << ToUtf8(name);
  }
  EXPECT_TRUE(Engine().CreateFolder(u"C:/D/Plain"));
  EXPECT_EQ(journal().entries().back(),
            (simulated::Journal::Entry{"CreateDirectoryW", "C:/D/Plain"}));
}

TEST(FolderFaults, StopADeletionWhereTheyHappenAndAreReported) {
  // A listing that breaks off leaves the folder not empty, but only where it had more to tell; a
  // file that keeps its attributes may yet be deletable.
  SweepFaults<StorageWorld>(
      {"FindClose", "FileTimeToLocalFileTime", "FileTimeToSystemTime"},
      [](StorageWorld&) { EXPECT_EQ(At<CFolder>(u"C:\\D")->Delete(true, true), 6); },
      [](StorageWorld& world, const std::string&, bool raised) {
        EXPECT_EQ(world.local().Find(u"C:\\D") != nullptr, raised);
      },
      {"FindNextFileW", "SetFileAttributesW"});
}

TEST_F(Paths, LoseTheirLongFormExactlyAsWritten) {
  const std::pair<TextView, TextView> cases[] = {
      {u"\\\\?\\UNC\\SRV\\S\\f", u"\\\\SRV\\S\\f"},
      {u"\\\\?\\unc\\SRV\\S", u"unc\\SRV\\S"},
      {u"\\\\SRV\\S", u"\\\\SRV\\S"},
      {u"UNC", u"\\"},
      {u"UNCLE\\x", u"\\LE\\x"},
      {u"\\\\?\\\\\\?\\C:\\f", u"\\\\?\\C:\\f"},
      {TextView(u"\\\\?\\C:\\a\0b", 10), TextView(u"C:\\a\0b", 6)}};
  for (const auto& [given, plain] : cases) {
    EXPECT_EQ(Engine().StripLongPathChars(Text(given)), plain);
    EXPECT_EQ(At<CFile>(Text(given))->Path(), plain);
    EXPECT_EQ(At<CFolder>(Text(given))->Path(), plain);
  }
}

TEST_F(Paths, NameTheComputerThatTheyLieOn) {
  const std::pair<const char16_t*, const char16_t*> cases[] = {
      {u"\\\\srv\\share\\x", u"SRV"}, {u"\\\\srv", u"SRV"},      {u"\\\\\\x", u""},
      {u"c:\\x", u"LOCALHOST"},       {u"\\x\\y", u"LOCALHOST"}, {u"", u""}};
  // Asked for until the platform tells it, and then no more.
  faults().FailEvery("GetComputerNameW", 5);
  EXPECT_EQ(Engine().GetServerNameFromPath(u"c:\\x"), u"(UNKNOWN)");
  faults().Clear();
  journal().Clear();
  for (const auto& [path, server] : cases) {
    EXPECT_EQ(Engine().GetServerNameFromPath(path), server) << ToUtf8(path);
  }
  EXPECT_EQ(journal().Count("GetComputerNameW"), 1u);
}

TEST_F(Paths, BeyondTheLimitOfPlainOnesReachThePlatformInTheLongForm) {
  Text deep = u"C:\\D";
  for (int i = 0; i < 6; ++i) deep += u"\\" + Text(50, u'n');
  local().AddFile(deep + u"\\f", "far below");
  local().AddFolder(deep + u"\\sub");
  const auto root = Make<SystemRoot>();
  journal().Clear();
  EXPECT_TRUE(root->FileExists(deep + u"\\f"));
  EXPECT_TRUE(root->FolderExists(deep));
  EXPECT_EQ(root->ReadTextFileAPI(deep + u"\\f"), u"far below");
  ByteArray bytes = root->ReadBinaryFileAPI(deep + u"\\f");
  EXPECT_EQ(root->WriteBinaryFileAPI(deep + u"\\g", bytes), 9);
  root->CopyFile(deep + u"\\f", deep + u"\\made\\copy", false);
  EXPECT_TRUE(root->CreateFolder(deep + u"\\made too"));
  EXPECT_EQ(Engine().GetFolders(deep)->Count(), 3);
  EXPECT_EQ(Engine().GetFiles(deep)->Count(), 2);

  const Ref<CFile> file = root->GetFile(deep + u"\\f");
  EXPECT_EQ(file->Path(), deep + u"\\f");
  file->PutAttributes(FA_Hidden);
  EXPECT_TRUE(file->GetSecurityDescriptor()->GetOwnerSid());
  EXPECT_EQ(ErrorOf([&] { file->VersionField<&CFile::Details::Version>(); }), 13);
  EXPECT_TRUE(file->Delete(false));

  const Ref<CFolder> folder = root->GetFolder(deep);
  EXPECT_EQ(folder->Path(), deep);
  EXPECT_TRUE(folder->CreateSubFolder(u"fourth"));
  EXPECT_EQ(folder->GetSubFolders()->Count(), 4);
  EXPECT_EQ(folder->GetFiles()->Count(), 7);
  EXPECT_EQ(folder->GetPathNames(true, true)->Count(), 5);
  folder->PutAttributes(static_cast<FileAttribute>(FA_Directory | FA_Hidden));
  EXPECT_TRUE(folder->GetSecurityDescriptor()->GetOwnerSid());
  EXPECT_EQ(folder->Delete(true, true), 7);
  for (const auto& [operation, argument] : journal().entries()) {
    for (std::size_t at = argument.find("C:"); at != std::string::npos;
         at = argument.find("C:", at + 1)) {
      EXPECT_EQ(argument.substr(at < 4 ? 0 : at - 4, 4), "\\\\?\\") << operation;
    }
  }
  EXPECT_EQ(ErrorOf([&] { root->ReadTextFile(deep + u"\\f"); }), 76) << "taken as it is";
  // No platform takes these; the object keeps what it was given.
  const Text endless = u"C:\\" + Text(40'000, u'n');
  const Ref<CFolder> nowhere = At<CFolder>(endless);
  EXPECT_EQ(nowhere->Path(), endless);
  EXPECT_NE(ErrorOf([&] { nowhere->GetFiles(); }), 0);
  EXPECT_FALSE(nowhere->CreateSubFolder(u"s"));
  const Text with_nul(u"C:\\D\\a\0.txt", 11);
  EXPECT_EQ(Engine().GetFile(with_nul)->Path(), with_nul + u"a");
}

std::string NamesIn(const Ref<CPathNames>& list) {
  return Listed(
      list, [](const CPathName& line) { return line.PathName + (line.IsDirectory ? u"/" : u""); });
}

TEST_F(Walks, PutEachEntryInItsListAndCountFoldersAsFilesWhereNoneAreWanted) {
  const struct {
    const char16_t* path;
    bool get_folders, get_files;
    const char *folders, *files, *names = nullptr;  // null: the same as the files
  } cases[] = {
      {u"C:\\D", true, true, " C:\\D\\o C:\\D\\x", " C:\\D\\a C:\\D\\b",
       " C:\\D\\a C:\\D\\b C:\\D\\o/ C:\\D\\x/"},
      {u"C:\\D\\", true, false, " C:\\D\\o C:\\D\\x", "Nothing", " C:\\D\\o/ C:\\D\\x/"},
      {u"c:\\d", false, true, "Nothing", " c:\\d\\. c:\\d\\.. c:\\d\\a c:\\d\\b c:\\d\\o c:\\d\\x"},
      {u"C:\\D", false, false, "Nothing", "Nothing", ""},
      {u"E:", true, true, "", " E:\\one"},
      {u"\\\\?\\UNC\\SRV\\Share\\Deep", true, true, "", " \\\\SRV\\Share\\Deep\\f"},
      {u"", true, true, "Nothing", "Nothing"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(ToUtf8(c.path));
    Ref<CFolders> folders;
    Ref<CFiles> files;
    EXPECT_EQ(Engine().GetFolderContents(c.path, folders, files, c.get_folders, c.get_files, false),
              *c.path != u'\0');
    EXPECT_EQ(PathsIn(folders), c.folders);
    EXPECT_EQ(PathsIn(files), c.files);
    EXPECT_EQ(NamesIn(Engine().GetPathNames(c.path, c.get_folders, c.get_files, false)),
              c.names ? c.names : c.files);
  }
  EXPECT_EQ(PathsIn(Engine().GetFolders(u"C:\\D")), " C:\\D\\o C:\\D\\x");
  EXPECT_EQ(PathsIn(Engine().GetFolders(u"")), "");
  EXPECT_EQ(PathsIn(Engine().GetFiles(u"C:\\D\\")), " C:\\D\\a C:\\D\\b");
  faults().FailNthOf("FindNextFileW", 4, 1117);
  EXPECT_EQ(PathsIn(At<CFolder>(u"C:\\D")->GetFiles()), " C:\\D\\. C:\\D\\.. C:\\D\\a C:\\D\\b")
      << "to where the platform fails to go on";
}

TEST_F(Walks, RaiseWhyAFolderCantBeOpenedAndLeaveTheOutputsNothing) {
  const std::pair<const char16_t*, std::int32_t> cases[] = {
      {u"C:\\Secret", 5}, {u"C:\\None", 3}, {u"C:\\D\\a", 267}, {u"\\\\NOBODY\\Share", 53}};
  for (const auto& [path, number] : cases) {
    SCOPED_TRACE(ToUtf8(path));
    EXPECT_EQ(ErrorOf([&] { At<CFolder>(path)->GetPathNames(true, true); }), number);
    EXPECT_EQ(ErrorOf([&] { Engine().GetFolders(path); }), number);
    EXPECT_EQ(ErrorOf([&] { Engine().GetFiles(path); }), number);
    Ref<CFolders> folders = Make<CFolders>();
    Ref<CFiles> files = Make<CFiles>();
    EXPECT_EQ(ErrorOf([&] { At<CFolder>(path)->GetFolderContents(folders, files); }), number);
    EXPECT_FALSE(folders || files);
  }
}

TEST_F(Walks, NarrateEveryEntryAndAskWhileNothingIsFound) {
  std::string log;
  Listen(StatusObject(), [&](std::int32_t event, std::span<Variant> arguments) {
    log += (event == 1 ? "" : "cancel? ") + ToUtf8(ToText(arguments[0])) + "\n";
  });
  const std::string entries =
      "Retrieved 0 Folders, 0 Files\ncancel? 0\nRetrieved 0 Folders, 0 Files\ncancel? 0\n"
      "Retrieved 0 Folders, 1 Files\nRetrieved 0 Folders, 2 Files\n"
      "Retrieved 1 Folders, 2 Files\nRetrieved 2 Folders, 2 Files\n";
  const Ref<CFolder> folder = At<CFolder>(u"C:\\D");
  Ref<CFolders> folders;
  Ref<CFiles> files;
  folder->GetFolderContents(folders, files);
  folder->GetPathNames(true, true);
  Make<CFolder>()->GetFiles();
  EXPECT_EQ(log, "Retrieving Contents of Folder C:\\D\n" + entries +
                     "Retrieving Path Names in Folder C:\\D\n" + entries +
                     "Retrieving Contents of Folder \n");
}

TEST_F(Walks, AskAtEveryThousandObjectsAndKeepWhatWasFoundBefore) {
  for (std::int64_t i = 0; i < 2001; ++i) {
    const Text path = u"C:\\Big\\" + ToText(100000 + i);
    i % 2 ? local().AddFolder(path) : local().AddFile(path);
  }
  std::vector<std::int32_t> asked;
  std::int32_t stop_at = -1;
  Listen(StatusObject(), [&](std::int32_t event, std::span<Variant> arguments) {
    if (event != 2) return;
    asked.push_back(ToLong(arguments[0]));
    if (asked.back() == stop_at) arguments[1].Assign(true);
  });
  const struct {
    std::int32_t stop_at;
    std::vector<std::int32_t> asked;
    std::int32_t found;
  } cases[] = {{-1, {0, 0, 1000, 2000}, 2001}, {0, {0}, 0}, {1000, {0, 0, 1000}, 1000}};
  const Ref<CFolder> folder = At<CFolder>(u"C:\\Big");
  for (const auto& c : cases) {
    stop_at = c.stop_at;
    asked.clear();
    Ref<CFolders> folders;
    Ref<CFiles> files;
    folder->GetFolderContents(folders, files);
    EXPECT_EQ(asked, c.asked);
    EXPECT_EQ(folders->Count() + files->Count(), c.found);
    asked.clear();
    EXPECT_EQ(folder->GetPathNames(true, true)->Count(), c.found);
    EXPECT_EQ(asked, c.asked);
  }
}

/// Writes down what a folder's events bring, and cancels at the event that `cancel_at` counts.
struct Recorder {
  void ListenTo(CFolder& folder) {
    Listen(folder, [this](std::int32_t event, std::span<Variant> arguments) {
      EXPECT_FALSE(ToBoolean(arguments[1]));
      seen += " " + std::to_string(event) + ":" +
              ToUtf8(ToText(Call(*ToObject(arguments[0]), u"Path", MemberKind::kGet)));
      if (++events == cancel_at) arguments[1].Assign(true);
    });
  }
  int cancel_at = 0;
  std::string seen{};
  int events = 0;
};

TEST_F(Walks, DeliverByEventsInThePlaceOfListsUntilAListenerCancels) {
  const struct {
    int cancel_at;
    const char *contents, *files;
  } cases[] = {{0, " 2:C:\\D\\a 2:C:\\D\\b 1:C:\\D\\o 1:C:\\D\\x",
                " 2:C:\\D\\. 2:C:\\D\\.. 2:C:\\D\\a 2:C:\\D\\b 2:C:\\D\\o 2:C:\\D\\x"},
               {3, " 2:C:\\D\\a 2:C:\\D\\b 1:C:\\D\\o", " 2:C:\\D\\. 2:C:\\D\\.. 2:C:\\D\\a"}};
  for (const auto& c : cases) {
    const Ref<CFolder> folder = Engine().GetFolder(u"C:\\D");
    Recorder recorder{c.cancel_at};
    recorder.ListenTo(*folder);
    folder->PutAsyncFetch(true);
    Ref<CFolders> folders;
    Ref<CFiles> files;
    folder->GetFolderContents(folders, files);
    EXPECT_EQ(recorder.seen, c.contents);
    EXPECT_FALSE(folders || files);
    recorder = {c.cancel_at};
    EXPECT_FALSE(folder->GetFiles());
    EXPECT_EQ(recorder.seen, c.files);

    recorder = {};
    EXPECT_FALSE(folder->GetPathNames(true, true));
    folder->PutAsyncFetch(false);
    EXPECT_EQ(PathsIn(folder->GetSubFolders()), " C:\\D\\o C:\\D\\x");
    EXPECT_EQ(recorder.seen, "");
  }
}

TEST_F(Walks, BringEveryObjectToAllFoldersThatListenAndLetAnyOfThemCancel) {
  const Ref<CFolder> walking = Engine().GetFolder(u"C:\\D");
  Ref<CFolder> bystander = Engine().GetFolder(u"C:\\Empty");
  Recorder first, second;
  first.ListenTo(*walking);
  second.ListenTo(*bystander);
  walking->PutAsyncFetch(true);
  bystander->PutAsyncFetch(true);
  bystander->PutAsyncFetch(true);
  EXPECT_FALSE(walking->GetSubFolders());
  EXPECT_EQ(first.seen, " 1:C:\\D\\o 1:C:\\D\\x");
  EXPECT_EQ(second.seen, first.seen);

  first = {};
  second = {1};
  walking->GetSubFolders();
  EXPECT_EQ(second.seen, " 1:C:\\D\\o");
  EXPECT_EQ(first.seen, second.seen);

  Listen(*walking, [&](auto, auto) { bystander = nullptr; });
  first = {};
  second = {};
  walking->GetSubFolders();
  EXPECT_EQ(first.seen, " 1:C:\\D\\o 1:C:\\D\\x");
  EXPECT_EQ(second.seen, "") << "it ended earlier in the same event, still with AsyncFetch on";
}

TEST_F(Walks, HandAListenersErrorToTheCaller) {
  const Ref<CFolder> folder = At<CFolder>(u"C:\\D");
  for (Object* source :
       {static_cast<Object*>(folder.Get()), static_cast<Object*>(&StatusObject())}) {
    Listen(*source, [](auto, auto) { Raise(1234, u"Listener", u"Enough"); });
    folder->PutAsyncFetch(source == folder.Get());
    EXPECT_EQ(FailureOf([&] { folder->GetFiles(); }), u"1234|Listener|Enough");
  }
}

TEST_F(Walks, OutliveTheFolderThatAListenerLetsGo) {
  Ref<CFolder> folder = Engine().GetFolder(u"C:\\D");
  int events = 0;
  Listen(*folder, [&](std::int32_t, std::span<Variant>) {
    ++events;
    folder = nullptr;
  });
  folder->PutAsyncFetch(true);
  CFolder& walking = *folder;
  EXPECT_FALSE(walking.GetFiles());
  EXPECT_EQ(events, 6);
  EXPECT_EQ(Apartment::Current().counters[Counter::kFolder], 0);
}

TEST(WalkFaults, AreReportedByTheOpeningAndSwallowedAfterIt) {
  for (const bool async : {false, true}) {
    SweepFaults<StorageWorld>(
        {"FindNextFileW", "FindClose", "FileTimeToLocalFileTime", "FileTimeToSystemTime"},
        [async](StorageWorld&) {
          const Ref<CFolder> folder = At<CFolder>(u"C:\\D");
          folder->PutAsyncFetch(async);
          folder->GetFiles();
          folder->GetPathNames(true, true);
        },
        [](StorageWorld&, const std::string&, bool) {
          EXPECT_EQ(Apartment::Current().counters[Counter::kFile], 0);
          EXPECT_EQ(Apartment::Current().counters[Counter::kFolder], 0);
        });
  }
}

}  // namespace
}  // namespace veldmark
