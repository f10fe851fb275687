#include "storage/StorageFixture.h"

namespace veldmark {
namespace {

using Files = StorageTest;

TEST_F(Files, AreFoundByPathAndTakeTheirNameFromTheEntry) {
  local().AddFile(u"C:\\D\\Long file name.txt").ShortName(u"LONGFI~1.TXT");
  const struct {
    const char16_t *given, *path, *name;
  } cases[] = {
      {u"C:\\D\\a", u"C:\\D\\a", u"a"},
      {u"c:\\d\\A", u"c:\\d\\A", u"a"},
      {u"\\\\?\\C:\\D\\a", u"C:\\D\\a", u"a"},
      {u"\\\\SRV\\Share\\Deep\\f", u"\\\\SRV\\Share\\Deep\\f", u"f"},
      {u"C:\\D\\LONG FILE NAME.TXT", u"C:\\D\\LONG FILE NAME.TXT", u"Long file name.txt"},
      {u"C:\\D\\longfi~1.txt", u"C:\\D\\longfi~1.txtLong file name.txt", u"Long file name.txt"},
      {u"C:\\D\\b*", u"C:\\D\\b*b", u"b"},
      {u"C:\\D\\o", u"C:\\D\\o", u"o"},
  };
  for (const auto& c : cases) {
    const Ref<CFile> file = Engine().GetFile(c.given);
    EXPECT_EQ(file->Path(), c.path);
    EXPECT_EQ(file->FileName, c.name);
  }
  EXPECT_EQ(Engine().GetFile(u"C:\\D\\Long file name.txt")->ShortName, u"LONGFI~1.TXT");
  const std::pair<const char16_t*, std::int32_t> missing[] = {
      {u"C:\\D\\none", 2}, {u"C:\\None\\f", 3}, {u"C:\\", 2}, {u"\\\\NOBODY\\s\\f", 53}};
  for (const auto& [path, number] : missing) {
    EXPECT_EQ(ErrorOf([&] { Engine().GetFile(path); }), number) << ToUtf8(path);
    EXPECT_EQ(Err().Description(), GetAPIErrorText(number));
  }
}

TEST_F(Files, TellTheirSizeWithTheHighHalfAt2To28) {
  const struct {
    std::uint64_t size;
    double told;
  } cases[] = {
      {0, 0},
      {4294967295, 4294967295},
      {4294967296, 268435456},
      {(5ull << 32) + 7, 5 * 268435456.0 + 7},
      {3435973ull << 32, 3435973 * 268435456.0},
  };
  auto& node = local().AddFile(u"C:\\D\\sized");
  for (const auto& c : cases) {
    node.Size(c.size);
    EXPECT_EQ(Engine().GetFile(u"C:\\D\\sized")->FileSize, Variant(c.told)) << c.size;
  }
  node.Size(3435974ull << 32);
  EXPECT_EQ(ErrorOf([] { Engine().GetFile(u"C:\\D\\sized"); }), runtime_error::kOverflow);
}

TEST_F(Files, CarryWhatTheirEntrySays) {
  SetZone(300);
  const simulated::Ticks noon = simulated::Estate::kDefaultTime;
  local()
      .Find(u"C:\\D\\a")
      ->Attributes(kFileAttributeHidden | kFileAttributeArchive)
      .Times(noon, noon + 64 * simulated::kTicksPerSecond,
             noon + 5 * simulated::kTicksPerSecond / 2);
  const Ref<CFolder> folder = Engine().GetFolder(u"C:\\D");
  for (const Ref<CFile>& file :
       {Engine().GetFile(u"C:\\D\\a"), folder->GetFiles()->ItemByKey(u"a")}) {
    EXPECT_EQ(file->Path(), u"C:\\D\\a");
    EXPECT_EQ(file->Attributes(), FA_Hidden | FA_Archive);
    EXPECT_EQ(file->FileSize, Variant(5.0));
    EXPECT_EQ(file->DateCreated, MakeDate(2024, 3, 5, 9, 30, 0));
    EXPECT_EQ(file->DateLastAccessed, MakeDate(2024, 3, 5, 9, 31, 4));
    EXPECT_EQ(file->DateLastModified, MakeDate(2024, 3, 5, 9, 30, 2));
  }
  EXPECT_EQ(folder->GetFiles()->ItemByKey(u"x")->Attributes(), FA_Directory);
}

TEST_F(Files, AreDeletedOrSayWhyNot) {
  const struct {
    DWORD attributes;
    bool delete_read_only, locked;
    const char* failing;
    std::int32_t raised;
    DWORD attributes_left;
  } cases[] = {
      {0, false, false, "", 0, 0},
      {kFileAttributeReadOnly, true, false, "", 0, 0},
      {kFileAttributeReadOnly, false, false, "", 5, kFileAttributeReadOnly},
      {kFileAttributeReadOnly, true, true, "", 32, kFileAttributeNormal},
      {kFileAttributeHidden, true, false, "SetFileAttributesW", 0, 0},
      {kFileAttributeReadOnly, true, false, "SetFileAttributesW", 5, kFileAttributeReadOnly},
      {kFileAttributeHidden, false, false, "DeleteFileW", 1117, kFileAttributeHidden},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.attributes) + c.failing);
    local().AddFile(u"C:\\D\\t").Attributes(c.attributes).Locked(c.locked);
    const Ref<CFile> file = Engine().GetFile(u"C:\\D\\t");
    if (*c.failing) faults().FailEvery(c.failing, 1117);
    Err().Set(AutomationError(1, u"Before", u"Before"));
    bool deleted = false;
    EXPECT_EQ(ErrorOf([&] {
                deleted = ToBoolean(
                    Call(*file, u"Delete", MemberKind::kMethod, {Variant(c.delete_read_only)}));
              }),
              c.raised);
    EXPECT_EQ(deleted, c.raised == 0);
    faults().Clear();
    const auto left = local().Find(u"C:\\D\\t");
    ASSERT_EQ(left == nullptr, deleted);
    if (deleted) {
      EXPECT_NE(Err().Description(), u"Before");
    } else {
      EXPECT_EQ(Err().Source(), u"Veldmark2.CFile");
      EXPECT_EQ(left->attributes(), c.attributes_left);
      left->Remove(estate().now());
    }
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
  Err().Set(AutomationError(1, u"Before", u""));
  EXPECT_EQ(ErrorOf([&] { file->PutAttributes(FA_Hidden); }), 2);
  EXPECT_EQ(Err().Source(), u"Before");
  EXPECT_EQ(file->Attributes(), FA_Compressed);
}

TEST_F(Files, KeepTheirRarelyFilledFields) {
  const char16_t* const names[] = {u"Description",    u"Version",         u"ProductName",
                                   u"ProductVersion", u"CompanyName",     u"InternalName",
                                   u"LegalCopyright", u"LegalTrademarks", u"OriginalFilename",
                                   u"Comments",       u"ShortPath",       u"FileType"};
  const auto file = Make<CFile>();
  const auto get = [&](const Text& name) { return Call(*file, name, MemberKind::kGet); };
  for (const char16_t* name : names) EXPECT_EQ(get(name), Variant(u""));
  for (const char16_t* name : names) Call(*file, name, MemberKind::kPut, {Variant(name)});
  for (const char16_t* name : names) EXPECT_EQ(get(name), Variant(name));
}

}  // namespace
}  // namespace veldmark
