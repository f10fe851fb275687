#include "root/SystemRoot.h"
#include "security/CSid.h"
#include "storage/StorageFixture.h"

namespace veldmark {
namespace {

using Paths = StorageTest;

TEST_F(Paths, LoseTheirLongFormExactlyAsWritten) {
  const std::pair<TextView, TextView> cases[] = {
      {u"\\\\?\\UNC\\SRV\\S\\f", u"\\\\SRV\\S\\f"},
      {u"\\\\?\\unc\\SRV\\S", u"unc\\SRV\\S"},
      {u"\\\\?\\C:\\f", u"C:\\f"},
      {u"C:\\f", u"C:\\f"},
      {u"\\\\SRV\\S", u"\\\\SRV\\S"},
      {u"UNC", u"\\"},
      {u"UNCLE\\x", u"\\LE\\x"},
      {u"\\\\?\\", u""},
      {u"\\\\?\\\\\\?\\C:\\f", u"\\\\?\\C:\\f"},
      {u"", u""},
      {TextView(u"\\\\?\\C:\\a\0b", 10), TextView(u"C:\\a\0b", 6)},
  };
  for (const auto& [given, plain] : cases) {
    EXPECT_EQ(Engine().StripLongPathChars(Text(given)), plain);
    const auto file = Make<CFile>();
    file->PutPath(Text(given));
    EXPECT_EQ(file->Path(), plain);
    const auto folder = Make<CFolder>();
    Call(*folder, u"Path", MemberKind::kPut, {Variant(given)});
    EXPECT_EQ(PathOf(*folder), plain);
  }
}

TEST_F(Paths, NameTheComputerThatTheyLieOn) {
  const std::pair<const char16_t*, const char16_t*> cases[] = {
      {u"\\\\srv\\share\\x", u"SRV"},
      {u"\\\\srv", u"SRV"},
      {u"\\\\", u""},
      {u"\\\\\\x", u""},
      {u"c:\\x", u"LOCALHOST"},
      {u"x", u"LOCALHOST"},
      {u"\\x\\y", u"LOCALHOST"},
      {u"", u""},
  };
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
  // No platform takes these; the object keeps what it was given.
  const Text endless = u"C:\\" + Text(40'000, u'n');
  const auto nowhere = Make<CFolder>();
  nowhere->PutPath(endless);
  EXPECT_EQ(nowhere->Path(), endless);
  EXPECT_NE(ErrorOf([&] { nowhere->GetFiles(); }), 0);
  EXPECT_FALSE(nowhere->CreateSubFolder(u"s"));
  const Text with_nul(u"C:\\D\\a\0.txt", 11);
  EXPECT_EQ(Engine().GetFile(with_nul)->Path(), with_nul + u"a");
}

}  // namespace
}  // namespace veldmark
