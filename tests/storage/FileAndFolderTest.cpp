#include "automation/CaseMapping.h"
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
  const std::pair<const char16_t*, const char*> cases[] = {
      {u"c:\\d\\A", "c:\\d\\A|a"},
      {u"\\\\?\\C:\\D\\a", "C:\\D\\a|a"},
      {u"C:\\D\\longfi~1.txt", "C:\\D\\longfi~1.txtLong file name.txt|Long file name.txt"},
      {u"C:\\D\\b*", "C:\\D\\b*b|b"},
      {u"C:\\D\\o", "C:\\D\\o|o"}};
  for (const auto& [given, found] : cases) {
    EXPECT_EQ(ValuesOf(*Engine().GetFile(given), {u"Path", u"FileName"}), found);
  }
}

TEST_F(Folders, AreFoundByPathAndRootsWithoutAskingThePlatform) {
  // What is found, and what the platform is asked for first; empty: there is no call at all.
  const std::tuple<const char16_t*, const char*, const char*> cases[] = {
      {u"Q:\\", "Q:\\||16", ""},
      {u"::", "::\\||16", ""},
      {u"\\\\nobody\\share", "\\\\nobody\\share\\||16", ""},
      {u"\\\\srv\\share\\", "\\\\srv\\share\\||16", ""},
      {u"c:\\d", "c:\\d|D|16", "\\\\?\\c:\\d"},
      {u"C:\\D\\", "C:\\D|D|16", "\\\\?\\C:\\D"},
      {u"C:\\D\\.", "C:\\D\\.||16", "\\\\?\\C:\\D\\."},
      {u"\\\\SRV\\Share\\deep", "\\\\SRV\\Share\\deep|Deep|16", "\\\\?\\UNC\\SRV\\Share\\deep"}};
  for (const auto& [given, found, asked] : cases) {
    journal().Clear();
    EXPECT_EQ(ValuesOf(*Engine().GetFolder(given), {u"Path", u"FolderName", u"Attributes"}), found);
    EXPECT_EQ(journal().entries().empty() ? "" : journal().entries().front().argument, asked);
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
    node.Times(noon, noon + 64 * kSecond, noon + 11 * kSecond / 4);
  };
  furnish(local().AddFile(u"C:\\D\\o\\Long file", "alpha"));
  furnish(local().AddFolder(u"C:\\Empty\\Long folder"));
  const auto show = [](auto item) {
    return ValuesOf(*item, {u"Path", u"ShortName", u"Attributes", u"DateCreated",
                            u"DateLastAccessed", u"DateLastModified"});
  };
  const std::string dates = "3/5/2024 9:30:00 AM|3/5/2024 9:31:04 AM|3/5/2024 9:30:02 AM";
  const Text path = u"C:\\D\\o\\Long file";
  const Ref<CFiles> files = Engine().GetFolder(u"C:\\D\\o")->GetFiles();
  EXPECT_EQ(show(files->ItemByKey(u"Long file")), ToUtf8(path) + "|LONG~1|2|" + dates);
  EXPECT_EQ(files->ItemByKey(u"Long file")->FileSize, Variant(5.0));
  EXPECT_EQ(files->ItemByKey(u".")->Attributes(), FA_Directory);
  EXPECT_EQ(show(Engine().GetFile(path)), ToUtf8(path) + "|LONG~1|2|" + dates);
  const Ref<CFolders> folders = Engine().GetFolders(u"C:\\Empty");
  EXPECT_EQ(show(folders->ItemByKey(u"Long folder")), "C:\\Empty\\Long folder|LONG~1|18|" + dates);
  EXPECT_EQ(show(Engine().GetFolder(u"C:\\Empty\\LONG~1")), "C:\\Empty\\LONG~1|LONG~1|18|" + dates);
}

TEST_F(Files, AreDeletedOrSayWhyNot) {
  // Attributes, DeleteReadOnly, whether it is locked, what fails; the error, attributes that stay.
  const std::tuple<DWORD, bool, bool, const char*, std::int32_t, DWORD> cases[] = {
      {kFileAttributeReadOnly, true, false, "", 0, 0},
      {kFileAttributeReadOnly, false, false, "", 5, kFileAttributeReadOnly},
      {kFileAttributeReadOnly, true, true, "", 32, kFileAttributeNormal},
      {kFileAttributeHidden, true, false, "SetFileAttributesW", 0, 0},
      {kFileAttributeReadOnly, true, false, "SetFileAttributesW", 5, kFileAttributeReadOnly},
      {kFileAttributeHidden, false, false, "DeleteFileW", 1117, kFileAttributeHidden}};
  for (const auto& [attributes, delete_read_only, locked, failing, raised, kept] : cases) {
    SCOPED_TRACE(std::to_string(attributes) + failing);
    local().AddFile(u"C:\\D\\t").Attributes(attributes).Locked(locked);
    const Ref<CFile> file = Engine().GetFile(u"C:\\D\\t");
    if (*failing) faults().FailEvery(failing, 1117);
    Err().Set(AutomationError(1, u"Before", u"Before"));
    EXPECT_EQ(ErrorOf([&] { EXPECT_TRUE(file->Delete(delete_read_only)); }), raised);
    EXPECT_NE(Err().Description(), u"Before");
    faults().Clear();
    const auto left = local().Find(u"C:\\D\\t");
    EXPECT_EQ(left == nullptr, raised == 0);
    EXPECT_EQ(left ? left->attributes() : 0, kept);
    if (left) left->Remove(estate().now());
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
    Call(*file, stored, MemberKind::kPut, {Variant(stored)});
  }
  EXPECT_EQ(ValuesOf(*file, {u"ShortPath", u"FileType"}), "ShortPath|FileType");
}

TEST_F(Folders, TakeNoOtherAttributesThanTheDiskAccepts) {
  // A value, the operation that fails with 1117 or succeeds and leaves it behind; the error, the
  // attributes of the object, and the source in `Err`.
  const std::tuple<int, const char*, int, int, const char16_t*> cases[] = {
      {FA_Directory, "SetFileAttributesW", 0, FA_Directory, u"Before"},  // no change, no call
      {FA_Directory | FA_Hidden, "", 0, FA_Directory | FA_Hidden, u"Before"},
      {FA_Hidden, "", 911, FA_Directory | FA_Hidden, u"Veldmark2.CFolder"},
      {FA_Directory | FA_Compressed, "", 911, FA_Directory, u"Veldmark2.CFolder"},
      {FA_Directory | FA_Hidden, "SetFileAttributesW", 1117, FA_Directory, u"Before"},
      {FA_Hidden, "GetFileAttributesExW", 1117, FA_Hidden, u"Before"}};
  const auto node = local().Find(u"C:\\D");
  for (const auto arm : {&simulated::FaultHook::FailEvery, &simulated::FaultHook::LeaveEvery}) {
    for (const auto& [value, failing, raised, stored, source] : cases) {
      SCOPED_TRACE(std::to_string(value) + failing);
      node->Attributes(0);
      const Ref<CFolder> folder = Engine().GetFolder(u"C:\\D");
      if (*failing) (faults().*arm)(failing, 1117);
      Err().Set(AutomationError(1, u"Before", u""));
      EXPECT_EQ(ErrorOf([&] { folder->PutAttributes(static_cast<FileAttribute>(value)); }), raised);
      EXPECT_EQ(folder->Attributes(), stored);
      EXPECT_EQ(Err().Source(), source);
      EXPECT_EQ(Err().Description() == u"Folder attributes could not be set", raised == 911);
      faults().Clear();
    }
  }
  const Ref<CFolder> folder = Engine().GetFolder(u"C:\\D");
  const simulated::Ticks noon = simulated::Estate::kDefaultTime;
  node->Times(noon, noon + 64 * simulated::kTicksPerSecond, noon + simulated::kTicksPerSecond);
  SetZone(300);
  folder->PutAttributes(static_cast<FileAttribute>(FA_Directory | FA_System));
  EXPECT_EQ(ValuesOf(*folder, {u"DateCreated", u"DateLastAccessed", u"DateLastModified"}),
            "3/5/2024 9:30:00 AM|3/5/2024 9:31:04 AM|3/5/2024 9:30:01 AM");
}

TEST_F(Folders, CountWhatTheirDeletionRemovesAndStopAtTheFirstItemThatStays) {
  const char16_t* const paths[] = {u"C:\\T",          u"C:\\T\\a",    u"C:\\T\\b", u"C:\\T\\s",
                                   u"C:\\T\\s\\deep", u"C:\\T\\s\\f", u"C:\\T\\z"};
  // Both flags, what is deleted and what may not go; the error, the count, and which paths stay.
  const std::tuple<bool, bool, const char16_t*, const char16_t*, int, int, std::string> cases[] = {
      {true, true, u"C:\\T", u"", 0, 7, ""},
      {true, true, u"\\\\?\\C:\\T\\s\\", u"", 0, 3, "0126"},
      {false, false, u"C:\\T\\z", u"", 0, 1, "012345"},
      {false, false, u"C:\\T", u"", 145, 0, "0123456"},
      {true, false, u"C:\\T", u"", 145, 0, "03456"},
      {false, true, u"C:\\T", u"", 145, 0, "012356"},
      {true, true, u"C:\\T", u"C:\\T\\b", 5, 0, "023456"},
      {true, true, u"C:\\T", u"C:\\T\\s", 5, 0, "036"},
      {true, true, u"", u"", 0, 0, "0123456"}};
  for (const auto& [files_first, cascade, path, denied, raised, counted, staying] : cases) {
    SCOPED_TRACE(ToUtf8(path) + " " + staying);
    if (const auto old = local().Find(u"C:\\T")) old->Remove(estate().now());
    local().AddFile(u"C:\\T\\a").Attributes(kFileAttributeReadOnly | kFileAttributeHidden);
    local().AddFile(u"C:\\T\\b");
    local().AddFolder(u"C:\\T\\s\\deep");
    local().AddFile(u"C:\\T\\s\\f");
    local().AddFolder(u"C:\\T\\z");
    if (*denied) local().Find(denied)->DenyDelete();
    Err().Set(AutomationError(4321, u"Elsewhere", u"Of a call before, which decides nothing"));
    std::int32_t count = 0;
    EXPECT_EQ(ErrorOf([&] { count = At<CFolder>(path)->Delete(files_first, cascade); }), raised);
    EXPECT_EQ(count, counted);
    std::string left;
    for (std::size_t i = 0; i < std::size(paths); ++i) {
      if (local().Find(paths[i])) left += std::to_string(i);
    }
    EXPECT_EQ(left, staying);
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
  EXPECT_TRUE(root->FileExists(deep + u"\\f") && root->FolderExists(deep));
  EXPECT_EQ(root->ReadTextFileAPI(deep + u"\\f"), u"far below");
  ByteArray bytes = root->ReadBinaryFileAPI(deep + u"\\f");
  EXPECT_EQ(root->WriteBinaryFileAPI(deep + u"\\g", bytes), 9);
  root->CopyFile(deep + u"\\f", deep + u"\\made\\copy", false);
  EXPECT_TRUE(root->CreateFolder(deep + u"\\made too"));
  EXPECT_EQ(Engine().GetFolders(deep)->Count(), 3);
  EXPECT_EQ(Engine().GetFiles(deep)->Count(), 2);

  const Ref<CFile> file = root->GetFile(deep + u"\\f");
  file->PutAttributes(FA_Hidden);
  EXPECT_TRUE(file->GetSecurityDescriptor()->GetOwnerSid());
  EXPECT_EQ(ErrorOf([&] { file->VersionField<&CFile::Details::Version>(); }), 13);
  EXPECT_TRUE(file->Delete(false));

  const Ref<CFolder> folder = root->GetFolder(deep);
  EXPECT_TRUE(folder->CreateSubFolder(u"fourth"));
  EXPECT_EQ(folder->GetSubFolders()->Count(), 4);
  EXPECT_EQ(folder->GetFiles()->Count(), 7);
  EXPECT_EQ(folder->GetPathNames(true, true)->Count(), 5);
  folder->PutAttributes(static_cast<FileAttribute>(FA_Directory | FA_Hidden));
  EXPECT_TRUE(folder->GetSecurityDescriptor()->GetOwnerSid());
  EXPECT_EQ(folder->Delete(true, true), 7);
  for (const auto& [operation, argument] : journal().entries()) {
    const Text others = ReplaceAll(FromUtf8(argument), u"\\\\?\\C:", u"");
    EXPECT_EQ(others.find(u"C:"), Text::npos) << operation;
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

TEST_F(Walks, PutEachEntryInItsListAndCountFoldersAsFilesWhereNoneAreWanted) {
  // What is wanted, folders and files, and what is found: folders, files, the lines of both.
  const std::tuple<const char16_t*, bool, bool, const char*> cases[] = {
      {u"C:\\D", true, true,
       "C:\\D\\o, C:\\D\\x / C:\\D\\a, C:\\D\\b / "
       "C:\\D\\a|False, C:\\D\\b|False, C:\\D\\o|True, C:\\D\\x|True"},
      {u"C:\\D\\", true, false, "C:\\D\\o, C:\\D\\x / Nothing / C:\\D\\o|True, C:\\D\\x|True"},
      {u"c:\\d", false, true,
       "Nothing / c:\\d\\., c:\\d\\.., c:\\d\\a, c:\\d\\b, c:\\d\\o, c:\\d\\x / c:\\d\\.|False, "
       "c:\\d\\..|False, c:\\d\\a|False, c:\\d\\b|False, c:\\d\\o|False, c:\\d\\x|False"},
      {u"C:\\D", false, false, "Nothing / Nothing / "},
      {u"E:", true, true, " / E:\\one / E:\\one|False"},
      {u"\\\\?\\UNC\\SRV\\Share\\Deep", true, true,
       " / \\\\SRV\\Share\\Deep\\f / \\\\SRV\\Share\\Deep\\f|False"},
      {u"", true, true, "Nothing / Nothing / Nothing"}};
  for (const auto& [path, get_folders, get_files, found] : cases) {
    Ref<CFolders> folders;
    Ref<CFiles> files;
    EXPECT_EQ(Engine().GetFolderContents(path, folders, files, get_folders, get_files, false),
              *path != u'\0');
    const auto lines = Engine().GetPathNames(path, get_folders, get_files, false);
    EXPECT_EQ(ListOf(folders, {u"Path"}) + " / " + ListOf(files, {u"Path"}) + " / " +
                  ListOf(lines, {u"PathName", u"IsDirectory"}),
              found);
  }
  EXPECT_EQ(ListOf(Engine().GetFolders(u"C:\\D"), {u"Path"}), "C:\\D\\o, C:\\D\\x");
  EXPECT_EQ(Engine().GetFolders(u"")->Count(), 0);
  EXPECT_EQ(ListOf(Engine().GetFiles(u"C:\\D\\"), {u"Path"}), "C:\\D\\a, C:\\D\\b");
  faults().FailNthOf("FindNextFileW", 4, 1117);
  EXPECT_EQ(ListOf(At<CFolder>(u"C:\\D")->GetFiles(), {u"FileName"}), "., .., a, b")
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
  Log(log);  // the question whether to go on shows as the number of objects
  const std::string entries =
      "Retrieved 0 Folders, 0 Files\n0\nRetrieved 0 Folders, 0 Files\n0\n"
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
  const std::tuple<std::int32_t, std::vector<std::int32_t>, std::int32_t> cases[] = {
      {-1, {0, 0, 1000, 2000}, 2001}, {0, {0}, 0}, {1000, {0, 0, 1000}, 1000}};
  const Ref<CFolder> folder = At<CFolder>(u"C:\\Big");
  for (const auto& [stop, questions, found] : cases) {
    stop_at = stop;
    asked.clear();
    Ref<CFolders> folders;
    Ref<CFiles> files;
    folder->GetFolderContents(folders, files);
    EXPECT_EQ(asked, questions);
    EXPECT_EQ(folders->Count() + files->Count(), found);
    asked.clear();
    EXPECT_EQ(folder->GetPathNames(true, true)->Count(), found);
    EXPECT_EQ(asked, questions);
  }
}

/// Writes down what a folder's events bring, and cancels at the event that `cancel_at` counts.
struct Recorder {
  explicit Recorder(CFolder& folder, int cancelled = 0) : cancel_at(cancelled) {
    Listen(folder, [this](std::int32_t event, std::span<Variant> arguments) {
      EXPECT_FALSE(ToBoolean(arguments[1]));
      seen += " " + std::to_string(event) + ":" + ValuesOf(*ToObject(arguments[0]), {u"Path"});
      if (++events == cancel_at) arguments[1].Assign(true);
    });
  }
  /// What has been seen since the last time.
  std::string Take() {
    events = 0;
    return std::exchange(seen, {});
  }
  int cancel_at, events = 0;
  std::string seen;
};

TEST_F(Walks, DeliverByEventsInThePlaceOfListsUntilAListenerCancels) {
  const std::tuple<int, const char*, const char*> cases[] = {
      {0, " 2:C:\\D\\a 2:C:\\D\\b 1:C:\\D\\o 1:C:\\D\\x",
       " 2:C:\\D\\. 2:C:\\D\\.. 2:C:\\D\\a 2:C:\\D\\b 2:C:\\D\\o 2:C:\\D\\x"},
      {3, " 2:C:\\D\\a 2:C:\\D\\b 1:C:\\D\\o", " 2:C:\\D\\. 2:C:\\D\\.. 2:C:\\D\\a"}};
  for (const auto& [cancel_at, contents, all_as_files] : cases) {
    const Ref<CFolder> folder = Engine().GetFolder(u"C:\\D");
    Recorder recorder(*folder, cancel_at);
    folder->PutAsyncFetch(true);
    Ref<CFolders> folders;
    Ref<CFiles> files;
    folder->GetFolderContents(folders, files);
    EXPECT_EQ(recorder.Take(), contents);
    EXPECT_FALSE(folders || files || folder->GetFiles());
    EXPECT_EQ(recorder.Take(), all_as_files);
    EXPECT_FALSE(folder->GetPathNames(true, true));
    folder->PutAsyncFetch(false);
    EXPECT_EQ(ListOf(folder->GetSubFolders(), {u"Path"}), "C:\\D\\o, C:\\D\\x");
    EXPECT_EQ(recorder.Take(), "");
  }
}

TEST_F(Walks, BringEveryObjectToAllFoldersThatListenAndLetAnyOfThemCancel) {
  const Ref<CFolder> walking = Engine().GetFolder(u"C:\\D");
  Ref<CFolder> bystander = Engine().GetFolder(u"C:\\Empty");
  Recorder first(*walking), second(*bystander);
  walking->PutAsyncFetch(true);
  for (int i = 0; i < 2; ++i) bystander->PutAsyncFetch(true);
  EXPECT_FALSE(walking->GetSubFolders());
  const std::string both = " 1:C:\\D\\o 1:C:\\D\\x";
  EXPECT_EQ(first.Take(), both);
  EXPECT_EQ(second.Take(), both);

  second.cancel_at = 1;
  walking->GetSubFolders();
  EXPECT_EQ(second.Take(), " 1:C:\\D\\o");
  EXPECT_EQ(first.Take(), " 1:C:\\D\\o");

  Listen(*walking, [&](auto, auto) { bystander = nullptr; });
  walking->GetSubFolders();
  EXPECT_EQ(first.Take(), both);
  EXPECT_EQ(second.Take(), "") << "it ended earlier in the same event, still with AsyncFetch on";
}

TEST_F(Walks, HandAListenersErrorToTheCaller) {
  const Ref<CFolder> folder = At<CFolder>(u"C:\\D");
  for (Object* source : std::vector<Object*>{folder.Get(), &StatusObject()}) {
    Listen(*source, [](auto, auto) { Raise(1234, u"Listener", u"Enough"); });
    folder->PutAsyncFetch(source == folder.Get());
    EXPECT_EQ(FailureOf([&] { folder->GetFiles(); }), u"1234|Listener|Enough");
  }
}

TEST_F(Walks, OutliveTheFolderThatAListenerLetsGo) {
  Ref<CFolder> folder = Engine().GetFolder(u"C:\\D");
  Recorder recorder(*folder);
  Listen(*folder, [&](auto, auto) { folder = nullptr; });
  folder->PutAsyncFetch(true);
  EXPECT_FALSE(folder->GetFiles());
  EXPECT_EQ(recorder.events, 6);
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
