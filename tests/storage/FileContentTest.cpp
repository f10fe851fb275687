#include <algorithm>
#include <cstring>
#include <functional>

#include "platform/simulated/estate/VersionDescription.h"
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
  void Set(TextView path, std::string_view bytes) {
    const auto file = local().Find(path);
    (file ? *file : local().AddFile(path)).Content(bytes);
  }

  const Ref<SystemRoot> root_ = Make<SystemRoot>();
};

TEST_F(FileContents, ExistAsWhateverTheirNameFinds) {
  local().AddDrive(u'G');
  const struct {
    const char16_t* path;
    bool file, folder;
  } cases[] = {{u"C:\\D\\a\\", false, true},     {u"C:\\D", true, true},
               {u"C:\\D\\", false, true},        {u"C:\\D\\*", true, true},
               {u"C:\\D\\none", false, false},   {u"C:\\", false, true},
               {u"G:\\", false, false},  // nothing in it to find
               {u"\\\\SRV\\Share", false, true}, {u"\\\\NOBODY\\Share", false, false},
               {u"C:\\Secret\\s", false, false}, {u"", false, false}};
  for (const auto& c : cases) {
    EXPECT_EQ(root_->FileExists(c.path), c.file) << ToUtf8(c.path);
    EXPECT_EQ(root_->FolderExists(c.path), c.folder) << ToUtf8(c.path);
  }
}

TEST_F(FileContents, AreReadAsTextByTheRulesOfEachGeneration) {
  const struct {
    std::string_view bytes;
    TextView statements, api;
  } cases[] = {{"\xFF\xFEZ\0"sv, u"Z", u"\uFEFFZ"},
               {"\xFF\xFEZ"sv, u"", u"\uFEFF"},
               {"x", u"x", u""},
               {"abcdef", u"abcdef", u"\u6261\u6463\u6665"},
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
  for (const auto& c : cases) {
    SCOPED_TRACE(c.bytes);
    Set(u"C:\\D\\t", c.bytes);
    EXPECT_EQ(root_->ReadTextFile(u"C:\\D\\t"), c.statements);
    EXPECT_EQ(root_->ReadTextFileAPI(u"C:\\D\\t"), c.api);
    EXPECT_EQ(root_->ReadBinaryFileAPI(u"C:\\D\\t"), BytesOf(c.bytes));
    EXPECT_EQ(ContentOf(u"C:\\D\\t"), c.bytes);
  }
}

TEST_F(FileContents, AreRefusedWithTheNumbersOfEachGeneration) {
  local().AddFile(u"C:\\D\\readonly", "content").Attributes(kFileAttributeReadOnly);
  const struct {
    const char16_t* path;
    std::int32_t statements, api;
  } cases[] = {{u"C:\\D\\fresh", 0, 2},
               {u"C:\\D\\b", 0, 9},
               {u"C:\\D\\readonly", 75, 0},
               {u"C:\\D", 75, 5},
               {u"", 76, 123}};
  for (const auto& c : cases) {
    SCOPED_TRACE(ToUtf8(c.path));
    EXPECT_EQ(ErrorOf([&] { root_->ReadTextFileAPI(c.path); }), c.api);
    EXPECT_EQ(ErrorOf([&] { root_->ReadTextFile(c.path); }), c.statements);
    EXPECT_EQ(ErrorOf([&] { root_->WriteTextFile(c.path, u"", false); }), c.statements);
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
  const struct {
    DWORD access, share;
    std::int32_t api, statements, bytes;
  } cases[] = {{kGenericRead, kAll, 0, 0, 32},
               {kGenericRead, kFileShareRead, 0, 70, 32},
               {kGenericRead, kFileShareWrite, 32, 70, 32},
               {kGenericWrite, kAll, 32, 0, 32},
               {kDelete, kAll, 32, 70, 32}};
  for (const auto& c : cases) {
    Set(u"C:\\D\\t", "some text");
    const FileHandle open = Open(u"C:\\D\\t", c.access, c.share);
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
  const Ref<CFile> file = At<CFile>(u"C:\\D\\none");
  ByteArray data = BytesOf("x");
  const struct {
    std::int32_t number;
    const char16_t* source;
    std::function<void()> call;
  } cases[] = {
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
  for (const auto& c : cases) {
    Err().Set(AutomationError(1, u"Before", u"Before"));
    EXPECT_EQ(FailureOf(c.call),
              ToText(c.number) + u"|" + c.source + u"|" + GetAPIErrorText(c.number));
  }
  faults().LeaveEvery("CreateFileW", 1117);
  local().AddFile(u"C:\\left.txt", "some text");
  EXPECT_EQ(ErrorOf([&] { root_->ReadTextFileAPI(u"C:\\left.txt"); }), 1117)
      << "open, but with an error";
}

TEST_F(FileContents, HaveASizeWithTheHighHalfAt2To28AndFrom2GibibytesAreNotRead) {
  const struct {
    std::uint64_t size;
    double told;  // 0: raised 6
    std::int32_t binary;
  } cases[] = {{2ull << 30, 2147483648.0, 9},
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
  const struct {
    std::string_view before;
    const char16_t* text;
    bool unicode;
    std::string_view after;
  } cases[] = {{"abcdef", u"AB", false, "ABcdef"},
               {"", u"\u00E9 \u4E2D \u20AC", false, "\xE9 ? \x80"},
               {"", u"\u00E9\u4E2D", true, "\xFF\xFE\xE9\0\x2D\x4E"sv},
               {"uvwxyz", u"", true, "\xFF\xFEwxyz"}};
  for (const auto& c : cases) {
    Set(u"C:\\D\\w", c.before);
    EXPECT_TRUE(root_->WriteTextFile(u"C:\\D\\w", c.text, c.unicode));
    EXPECT_EQ(ContentOf(u"C:\\D\\w"), c.after);
  }
  faults().FailEvery("WriteFile", 112);
  EXPECT_EQ(ErrorOf([&] { root_->WriteTextFile(u"C:\\D\\w", u"x", false); }), 61);
}

TEST_F(FileContents, OfBytesAreWrittenToNewFilesOnly) {
  const struct {
    const char16_t* path;
    ByteArray data;
    std::int32_t raised;
    std::string_view after;
  } cases[] = {{u"C:\\D\\n1", BytesOf("\0\1\xFF"sv), 0, "\0\1\xFF"sv},
               {u"C:\\D\\n2", BytesOf("five", 5), 0, "five"},
               {u"C:\\D\\a", BytesOf("new"), 183, ""},
               {u"C:\\D\\n3", ByteArray(), 9, ""},
               {u"C:\\D\\n4", ByteArray(2, 2), 9, ""},
               {u"C:\\None\\n", BytesOf("x"), 3, "no file"}};
  for (const auto& c : cases) {
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
  const struct {
    const char16_t* source;
    const char16_t* target;
    bool overwrite;
    std::int32_t raised;
    std::string_view after;
  } cases[] = {{u"C:\\D\\a", u"C:\\Made\\copy", false, 0, "alpha"},
               {u"C:\\D\\a", u"C:\\None\\None\\copy", false, 3, "no file"},
               {u"C:\\D\\a", u"C:\\D\\taken", false, 80, "old"},
               {u"C:\\D\\a", u"C:\\D\\taken", true, 0, "alpha"},
               {u"C:\\D\\none", u"C:\\Left\\other", true, 2, "no file"},
               {u"\\\\SRV\\Share\\Deep\\f", u"C:\\D\\remote", true, 0, ""}};
  for (const auto& c : cases) {
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

using simulated::VersionDescription;
using Bytes = std::vector<std::uint8_t>;

const char16_t* const kTextFields[] = {u"Description",      u"CompanyName",    u"ProductName",
                                       u"InternalName",     u"LegalCopyright", u"LegalTrademarks",
                                       u"OriginalFilename", u"Comments"};

class Versions : public StorageTest {
 protected:
  static Text Get(CFile& file, const Text& field) {
    return ToText(Call(file, field, MemberKind::kGet));
  }
  /// The fields that aren't empty, a blank before each.
  static std::string Texts(CFile& file) {
    std::string texts;
    for (const Text field : kTextFields) {
      const Text text = Get(file, field);
      if (!text.empty()) texts += " " + ToUtf8(field) + "=" + ToUtf8(text);
    }
    return texts;
  }
  Ref<CFile> FileWith(Bytes resource) {
    if (!local().Find(u"C:\\D\\v")) local().AddFile(u"C:\\D\\v");
    local().Find(u"C:\\D\\v")->Version(std::move(resource));
    return Engine().GetFile(u"C:\\D\\v");
  }
};

TEST_F(Versions, HaveAFormatOfTheirOwn) {
  const std::pair<VersionDescription::Number, const char16_t*> cases[] = {
      {{5, 1, 2600, 0}, u"05.01.2600.00"},
      {{1, 2, 0, 0}, u"01.02.0000"},
      {{1, 2, 0, 1}, u"01.02.00.01"},
      {{1, 65535, 3, 65535}, u"02.-01.04.-01"},
      {{5, 32768, 1, 2}, u"05.-32768.01.02"},
      {{65535, 65535, 65535, 65531}, u"-01.-01.-0005"},
      {{32768, 7, 32768, 0}, u"-32769.07.-2147483648"}};
  for (const auto& [number, text] : cases) {
    const VersionDescription version{.file = {2, 0, 0, 7}, .product = number};
    const Ref<CFile> file = FileWith(version.Build());
    EXPECT_EQ(Get(*file, u"ProductVersion"), text);
    EXPECT_EQ(Get(*file, u"Version"), u"02.00.00.07");
  }
}

TEST_F(Versions, BringTheTextsOfTheFirstTranslationOnly) {
  const VersionDescription::Strings all = {
      {u"FileDescription", u"d\x00E9"}, {u"CompanyName", u"c"},    {u"productname", u"p"},
      {u"InternalName", u"i"},          {u"LegalCopyright", u"©"}, {u"LegalTrademarks", u"t"},
      {u"OriginalFilename", u"o"},      {u"Comments", u"x\0y"}};
  const VersionDescription::Strings one = {{u"Comments", u""}, {u"CompanyName", u"Other"}};
  const char* const every =
      " Description=dé CompanyName=c ProductName=p InternalName=i LegalCopyright=©"
      " LegalTrademarks=t OriginalFilename=o Comments=x";
  const struct {
    std::vector<Text> translations;
    std::vector<std::pair<Text, VersionDescription::Strings>> strings;
    const char* texts;
  } cases[] = {{{u"040904B0"}, {{u"040904B0", all}}, every},
               {{u"04090CFE"}, {{u"00000000", one}, {u"04090cfe", all}}, every},
               {{u"040704B0", u"040904B0"},
                {{u"040904B0", all}, {u"040704B0", one}},
                " CompanyName=Other Comments=put before"},
               {{u"040704B0"}, {{u"040904B0", all}}, " Comments=put before"},
               {{u"040904B0"}, {}, " Comments=put before"},
               {{}, {{u"040904B0", all}}, " Comments=put before"}};
  for (const auto& c : cases) {
    const VersionDescription version{
        .file = {1, 2, 3, 4}, .translations = c.translations, .strings = c.strings};
    const Ref<CFile> file = FileWith(version.Build());
    Call(*file, u"Comments", MemberKind::kPut, {Variant(u"put before")});
    EXPECT_EQ(Texts(*file), c.texts);
    EXPECT_EQ(Get(*file, u"Version"), u"01.02.03.04");
  }
}

TEST_F(Versions, AreReadOnceAndTriedAgainAfterAFailure) {
  const Ref<CFile> file = Engine().GetFile(u"C:\\D\\a");
  EXPECT_EQ(ErrorOf([&] { Get(*file, u"Comments"); }), runtime_error::kTypeMismatch);
  const VersionDescription version{
      .translations = {u"040904B0"},
      .strings = {{u"040904B0", {{u"CompanyName", u"c"}, {u"Comments", u"x"}}}}};
  local().Find(u"C:\\D\\a")->Version(version.Build());
  faults().FailNthOf("GetFileVersionInfoW", 1, 1117);
  EXPECT_EQ(ErrorOf([&] { Get(*file, u"Comments"); }), 1117);
  Call(*file, u"CompanyName", MemberKind::kPut, {Variant(u"put before")});
  EXPECT_EQ(Texts(*file), " CompanyName=c Comments=x");
  Call(*file, u"CompanyName", MemberKind::kPut, {Variant(u"put after")});
  journal().Clear();
  file->PutPath(u"C:\\D\\none");
  EXPECT_EQ(Texts(*file), " CompanyName=put after Comments=x");

  const auto pathless = Make<CFile>();
  EXPECT_EQ(Texts(*pathless), "");
  pathless->PutPath(u"C:\\D\\a");
  EXPECT_EQ(Texts(*pathless), "") << "an object without a path counts as loaded";
  EXPECT_TRUE(journal().entries().empty());
}

TEST_F(Versions, RaiseThePlatformsErrorOnlyWhereANumberStandsInTheErrorObject) {
  const struct {
    const char16_t *path, *description;
    Text failure;
  } cases[] = {{u"C:\\D\\a", u"5", u"1812|Veldmark2.CSupport|" + GetAPIErrorText(5)},
               {u"C:\\D\\none", u"&H5", u"2|Veldmark2.CSupport|" + GetAPIErrorText(5)},
               {u"C:\\D\\a", u"Access is denied.", u"13|Veldmark2|Type mismatch"},
               {u"C:\\D\\a", u"3000000000", u"6|Veldmark2|Overflow"}};
  for (const auto& c : cases) {
    const Ref<CFile> file = At<CFile>(c.path);
    Err().Set(AutomationError(1, u"Before", c.description));
    EXPECT_EQ(FailureOf([&] { Get(*file, u"Version"); }), c.failure);
  }
}

TEST_F(Versions, AreReadAsFarAsTheirLengthsCanBeTrusted) {
  const Bytes sound = VersionDescription{.file = {1, 2, 3, 4},
                                         .translations = {u"040904B0"},
                                         .strings = {{u"040904B0", {{u"Comments", u"some text"}}}}}
                          .Build();
  // Where the block of a key begins.
  const auto at = [&](TextView key) {
    const auto* units = reinterpret_cast<const std::uint8_t*>(key.data());
    const auto found = std::search(sound.begin(), sound.end(), units, units + key.size() * 2);
    return static_cast<std::size_t>(found - sound.begin() - 6);
  };
  const auto with = [&](std::size_t offset, std::uint16_t word) {
    Bytes changed = sound;
    std::memcpy(changed.data() + offset, &word, sizeof word);
    return changed;
  };
  const std::size_t tables = at(u"StringFileInfo"), text = at(u"Comments");
  constexpr std::size_t kValueLength = 2;
  constexpr std::uint16_t kTooLong = 0xFFFF;
  const struct {
    const char* what;
    Bytes bytes;
    std::int32_t raised;
    bool has_text;
  } cases[] = {
      {"sound", sound, 0, true},
      {"the whole claims more than there is", with(0, kTooLong), 0, true},
      {"the whole claims nothing", with(0, 0), 13, false},
      {"the whole ends with its head", with(0, 6), 0, false},
      {"the fixed part is short", with(kValueLength, 51), 0, true},
      {"the fixed part is cut", Bytes(sound.begin(), sound.begin() + 91), 13, false},
      {"the fixed part is all", Bytes(sound.begin(), sound.begin() + 92), 0, false},
      {"the tables claim more", with(tables, kTooLong), 0, false},
      {"the tables claim nothing", with(tables, 0), 0, false},
      {"the tables claim an odd length", with(tables, 5), 0, false},
      {"a text claims more", with(text, kTooLong), 0, true},
      {"a text is counted in bytes", with(text + kValueLength, 20), 0, true},
      {"a text is counted too short", with(text + kValueLength, 1), 0, true},
      {"a text is said to be empty", with(text + kValueLength, 0), 0, false},
      {"a translation is said to be short", with(at(u"Translation") + kValueLength, 3), 0, false},
      {"a translation is cut", Bytes(sound.begin(), sound.end() - 1), 13, false},
      {"nothing but a head", {8, 0, 0, 0, 0, 0, 'V', 0}, 0, false},
      {"less than a head", {8, 0, 0, 0, 0}, 13, false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const Ref<CFile> file = FileWith(c.bytes);
    std::string texts;
    EXPECT_EQ(ErrorOf([&] { texts = Texts(*file); }), c.raised);
    EXPECT_EQ(texts, c.has_text ? " Comments=some text" : "");
  }
  const Ref<CFile> numberless = FileWith(with(kValueLength, 51));
  EXPECT_EQ(Get(*numberless, u"Version") + Get(*numberless, u"ProductVersion"), u"");
}

TEST_F(Versions, Of16BitModulesHaveTheirTextsInTheCodePage) {
  // Length, length of the value, key, and the value at a multiple of four.
  const auto block = [](std::string_view key, std::string_view value, const Bytes& children) {
    Bytes bytes = {0, 0, static_cast<std::uint8_t>(value.size()), 0};
    const auto align = [&] { bytes.resize((bytes.size() + 3) & ~std::size_t{3}); };
    bytes.insert(bytes.end(), key.begin(), key.end());
    bytes.push_back(0);
    align();
    bytes.insert(bytes.end(), value.begin(), value.end());
    align();
    bytes.insert(bytes.end(), children.begin(), children.end());
    bytes[0] = static_cast<std::uint8_t>(bytes.size());
    bytes[1] = static_cast<std::uint8_t>(bytes.size() >> 8);
    return bytes;
  };
  Bytes children =
      block("StringFileInfo", "", block("040904E4", "", block("Comments", {"caf\xE9", 5}, {})));
  const Bytes list = block("VarFileInfo", "", block("Translation", {"\x09\x04\xE4\x04", 4}, {}));
  children.insert(children.end(), list.begin(), list.end());
  const Ref<CFile> file = FileWith(block("VS_VERSION_INFO", "some", children));
  EXPECT_EQ(Texts(*file), " Comments=café");
}

}  // namespace
}  // namespace veldmark
