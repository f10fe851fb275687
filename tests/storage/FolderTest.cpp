#include "storage/StorageFixture.h"

namespace veldmark {
namespace {

using Folders = StorageTest;

TEST_F(Folders, AreFoundByPathAndRootsWithoutAskingThePlatform) {
  const struct {
    const char16_t *given, *path, *name;
    const char* asked;  // empty: no platform call at all
  } cases[] = {
      {u"C:", u"C:\\", u"", ""},
      {u"C:\\", u"C:\\", u"", ""},
      {u"Q:\\", u"Q:\\", u"", ""},
      {u"::", u"::\\", u"", ""},
      {u"\\\\nobody\\share", u"\\\\nobody\\share\\", u"", ""},
      {u"\\\\srv\\share\\", u"\\\\srv\\share\\", u"", ""},
      {u"\\\\?\\C:\\", u"C:\\", u"", ""},
      {u"c:\\d", u"c:\\d", u"D", "\\\\?\\c:\\d"},
      {u"C:\\D\\", u"C:\\D", u"D", "\\\\?\\C:\\D"},
      {u"C:\\D\\.", u"C:\\D\\.", u"", "\\\\?\\C:\\D\\."},
      {u"C:\\D\\a", u"C:\\D\\a", u"a", "\\\\?\\C:\\D\\a"},
      {u"\\\\SRV\\Share\\deep", u"\\\\SRV\\Share\\deep", u"Deep", "\\\\?\\UNC\\SRV\\Share\\deep"},
      {u"\\\\?\\UNC\\SRV\\Share\\Deep", u"\\\\SRV\\Share\\Deep", u"Deep",
       "\\\\?\\UNC\\SRV\\Share\\Deep"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(ToUtf8(c.given));
    journal().Clear();
    const Ref<CFolder> folder = Engine().GetFolder(c.given);
    EXPECT_EQ(folder->Path(), c.path);
    EXPECT_EQ(folder->FolderName, c.name);
    if (*c.asked) {
      EXPECT_EQ(journal().entries().front(),
                (simulated::Journal::Entry{"FindFirstFileW", c.asked}));
    } else {
      EXPECT_TRUE(journal().entries().empty());
      EXPECT_EQ(folder->Attributes(), FA_Directory);
      EXPECT_EQ(folder->DateCreated, Date{});
    }
  }
  const std::pair<const char16_t*, std::int32_t> missing[] = {
      {u"C:\\None", 2}, {u"C:\\None\\x", 3}, {u"Q:\\x", 3}, {u"\\\\NOBODY\\s\\x", 53}};
  for (const auto& [path, number] : missing) {
    EXPECT_EQ(ErrorOf([&] { Engine().GetFolder(path); }), number) << ToUtf8(path);
    EXPECT_EQ(Err().Description(), GetAPIErrorText(number));
  }
  for (const char16_t* path : {u"", u"\\", u".", u"\\\\SRV", u"\\\\"}) {
    EXPECT_NE(ErrorOf([&] { Engine().GetFolder(path); }), 0) << ToUtf8(path);
  }
}

TEST_F(Folders, CarryWhatTheirEntrySays) {
  SetZone(-60);
  local()
      .AddFolder(u"C:\\Long folder name")
      .ShortName(u"LONGFO~1")
      .Attributes(kFileAttributeHidden);
  const Ref<CFolders> listed = Engine().GetFolder(u"C:")->GetSubFolders();
  for (const Ref<CFolder>& folder :
       {Engine().GetFolder(u"C:\\LONGFO~1"), listed->ItemByKey(u"Long folder name")}) {
    EXPECT_EQ(folder->FolderName, u"Long folder name");
    EXPECT_EQ(folder->ShortName, u"LONGFO~1");
    EXPECT_EQ(folder->Attributes(), FA_Directory | FA_Hidden);
    EXPECT_EQ(folder->DateCreated, MakeDate(2024, 3, 5, 15, 30, 0));
  }
  EXPECT_EQ(listed->ItemByKey(u"Long folder name")->Path(), u"C:\\Long folder name");
}

TEST_F(Folders, TakeNoOtherAttributesThanTheDiskAccepts) {
  const struct {
    std::int32_t value;
    const char* failing;  // the operation that fails with 1117, or succeeds and leaves it behind
    std::int32_t raised, stored;
    const char16_t* source;
  } cases[] = {
      {FA_Directory, "SetFileAttributesW", 0, FA_Directory, u""},  // no change, no call
      {FA_Directory | FA_Hidden, "", 0, FA_Directory | FA_Hidden, u""},
      {FA_Directory | FA_ReadOnly | FA_Archive, "", 0, FA_Directory | FA_ReadOnly | FA_Archive,
       u""},
      {FA_Hidden, "", 911, FA_Directory | FA_Hidden, u"Veldmark2.CFolder"},
      {FA_Normal, "", 911, FA_Directory, u"Veldmark2.CFolder"},
      {FA_Directory | FA_Compressed, "", 911, FA_Directory, u"Veldmark2.CFolder"},
      {FA_Directory | FA_Hidden, "SetFileAttributesW", 1117, FA_Directory, u"Before"},
      {FA_Hidden, "GetFileAttributesExW", 1117, FA_Hidden, u"Before"},
  };
  const auto node = local().Find(u"C:\\D");
  for (std::size_t run = 0; run < 2 * std::size(cases); ++run) {
    const auto& c = cases[run / 2];
    SCOPED_TRACE(std::to_string(c.value) + c.failing);
    node->Attributes(0);
    const Ref<CFolder> folder = Engine().GetFolder(u"C:\\D");
    const auto arm =
        run % 2 == 0 ? &simulated::FaultHook::FailEvery : &simulated::FaultHook::LeaveEvery;
    if (*c.failing) (faults().*arm)(c.failing, 1117);
    Err().Set(AutomationError(1, u"Before", u""));
    EXPECT_EQ(ErrorOf([&] { Call(*folder, u"Attributes", MemberKind::kPut, {Variant(c.value)}); }),
              c.raised);
    EXPECT_EQ(folder->Attributes(), c.stored);
    EXPECT_EQ(Err().Source(), c.raised == 0 ? u"Before" : c.source);
    EXPECT_EQ(Err().Description() == u"Folder attributes could not be set", c.raised == 911);
    faults().Clear();
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
  struct Case {
    bool files_first, cascade;
    const char16_t* path;
    const char16_t* deny;  // what may not be deleted
    std::int32_t raised, count;
    const char* left;  // of the paths below
  };
  const char16_t* const paths[] = {u"C:\\T",          u"C:\\T\\a",    u"C:\\T\\b", u"C:\\T\\s",
                                   u"C:\\T\\s\\deep", u"C:\\T\\s\\f", u"C:\\T\\z"};
  const Case cases[] = {
      {true, true, u"C:\\T", nullptr, 0, 7, ""},
      {true, true, u"\\\\?\\C:\\T\\s\\", nullptr, 0, 3, "0126"},
      {false, false, u"C:\\T\\z", nullptr, 0, 1, "012345"},
      {false, false, u"C:\\T", nullptr, 145, 0, "0123456"},
      {true, false, u"C:\\T", nullptr, 145, 0, "03456"},
      {false, true, u"C:\\T", nullptr, 145, 0, "012356"},
      {true, true, u"C:\\T", u"C:\\T\\b", 5, 0, "023456"},
      {true, true, u"C:\\T", u"C:\\T\\s", 5, 0, "036"},
      {true, true, u"C:\\None", nullptr, 3, 0, "0123456"},
      {true, true, u"", nullptr, 0, 0, "0123456"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(ToUtf8(c.path) + " " + c.left);
    if (const auto old = local().Find(u"C:\\T")) old->Remove(estate().now());
    local().AddFile(u"C:\\T\\a").Attributes(kFileAttributeReadOnly | kFileAttributeHidden);
    local().AddFile(u"C:\\T\\b");
    local().AddFolder(u"C:\\T\\s\\deep");
    local().AddFile(u"C:\\T\\s\\f");
    local().AddFolder(u"C:\\T\\z");
    if (c.deny) local().Find(c.deny)->DenyDelete();
    Err().Set(AutomationError(4321, u"Elsewhere", u"Of a call before, which decides nothing"));
    const auto folder = Make<CFolder>();
    folder->PutPath(c.path);
    std::int32_t count = 0;
    EXPECT_EQ(ErrorOf([&] { count = folder->Delete(c.files_first, c.cascade); }), c.raised);
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
  EXPECT_EQ(FailureOf([] { Engine().GetFolder(u"C:\\T")->Delete(true, true); }),
            u"1117|Veldmark2.CFolder|" + GetAPIErrorText(1117));
  EXPECT_FALSE(local().Find(u"C:\\T\\one"));
  EXPECT_TRUE(local().Find(u"C:\\T\\two"));

  const Ref<CFolder> async = Engine().GetFolder(u"C:\\D");
  async->PutAsyncFetch(true);
  EXPECT_EQ(ErrorOf([&] { async->Delete(true, false); }), runtime_error::kObjectNotSet);
  EXPECT_EQ(ErrorOf([&] { async->Delete(false, true); }), runtime_error::kObjectNotSet);
  EXPECT_TRUE(local().Find(u"C:\\D\\a"));
}

TEST_F(Folders, AreMadeWithAYesOrNoBySubFolderAndWithAnErrorByPath) {
  const std::pair<const char16_t*, bool> cases[] = {
      {u"New", true}, {u"New", false}, {u"a", false}, {u"No\\Parent", false}, {u"ba:d", false}};
  const Ref<CFolder> folder = Engine().GetFolder(u"C:\\D");
  for (const auto& [name, made] : cases) {
    EXPECT_EQ(folder->CreateSubFolder(name), made) << ToUtf8(name);
  }
  EXPECT_TRUE(local().Find(u"C:\\D\\New")->is_folder());
  EXPECT_FALSE(Make<CFolder>()->CreateSubFolder(u"Nowhere"));

  journal().Clear();
  EXPECT_TRUE(Engine().CreateFolder(u"C:/D/Plain"));
  EXPECT_EQ(journal().entries().front(),
            (simulated::Journal::Entry{"CreateDirectoryW", "C:/D/Plain"}));
  EXPECT_EQ(ErrorOf([] { Engine().CreateFolder(u"C:\\D\\Plain"); }), 183);
  EXPECT_EQ(Err().Description(), GetAPIErrorText(183));
}

TEST(FolderFaults, StopADeletionWhereTheyHappenAndAreReported) {
  // A listing that breaks off leaves the folder not empty, but only where it had more to tell; a
  // file that keeps its attributes may yet be deletable.
  SweepFaults<StorageWorld>(
      {"FindClose", "FileTimeToLocalFileTime", "FileTimeToSystemTime"},
      [](StorageWorld&) {
        const auto folder = Make<CFolder>();
        folder->PutPath(u"C:\\D");
        EXPECT_EQ(folder->Delete(true, true), 6);
      },
      [](StorageWorld& world, const std::string&, bool raised) {
        EXPECT_EQ(world.local().Find(u"C:\\D") != nullptr, raised);
      },
      {"FindNextFileW", "SetFileAttributesW"});
}

}  // namespace
}  // namespace veldmark
