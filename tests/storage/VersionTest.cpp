#include <algorithm>
#include <cstring>

#include "platform/simulated/estate/VersionDescription.h"
#include "storage/StorageFixture.h"

namespace veldmark {
namespace {

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
      {{10, 0, 19041, 1}, u"10.00.19041.01"},
      {{1, 2, 0, 1}, u"01.02.00.01"},
      {{1, 65535, 3, 65535}, u"02.-01.04.-01"},
      {{5, 32768, 1, 2}, u"05.-32768.01.02"},
      {{65535, 65535, 65535, 65531}, u"-01.-01.-0005"},
      {{32768, 7, 32768, 0}, u"-32769.07.-2147483648"},
  };
  for (const auto& [number, text] : cases) {
    VersionDescription version{.file = number, .product = {2, 0, 0, 7}};
    EXPECT_EQ(Get(*FileWith(version.Build()), u"Version"), text);
    std::swap(version.file, version.product);
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
  struct Case {
    std::vector<Text> translations;
    std::vector<std::pair<Text, VersionDescription::Strings>> strings;
    const char* texts;
  };
  const char* const every =
      " Description=dé CompanyName=c ProductName=p InternalName=i LegalCopyright=©"
      " LegalTrademarks=t OriginalFilename=o Comments=x";
  const Case cases[] = {
      {{u"040904B0"}, {{u"040904B0", all}}, every},
      {{u"04090CFE"}, {{u"00000000", one}, {u"04090cfe", all}}, every},
      {{u"040704B0", u"040904B0"},
       {{u"040904B0", all}, {u"040704B0", one}},
       " CompanyName=Other Comments=put before"},
      {{u"040704B0"}, {{u"040904B0", all}}, " Comments=put before"},
      {{u"040904B0"}, {}, " Comments=put before"},
      {{}, {{u"040904B0", all}}, " Comments=put before"},
  };
  for (const Case& c : cases) {
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
  for (int attempt = 0; attempt < 2; ++attempt) {
    Err().Clear();
    EXPECT_EQ(ErrorOf([&] { Get(*file, u"Comments"); }), runtime_error::kTypeMismatch);
    EXPECT_EQ(Err().Description(), StandardErrorText(runtime_error::kTypeMismatch));
  }
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
  local().AddFile(u"C:\\D\\module").Messages({});
  local().AddFile(u"C:\\D\\busy").Locked();
  const struct {
    const char16_t *path, *description;
    std::int32_t raised;
    Text text;
  } cases[] = {
      {u"C:\\D\\a", u"5", 1812, GetAPIErrorText(5)},
      {u"C:\\D\\module", u" 2 ", 1813, GetAPIErrorText(2)},
      {u"C:\\D\\none", u"&H5", 2, GetAPIErrorText(5)},
      {u"C:\\D\\busy", u"1E1", 32, GetAPIErrorText(10)},
      {u"C:\\D\\a", u"Access is denied.", 13, Text(StandardErrorText(13))},
      {u"C:\\D\\a", u"3000000000", 6, Text(StandardErrorText(6))},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(ToUtf8(c.path));
    const auto file = Make<CFile>();
    file->PutPath(c.path);
    Err().Set(AutomationError(1, u"Before", c.description));
    EXPECT_EQ(ErrorOf([&] { Get(*file, u"Version"); }), c.raised);
    EXPECT_EQ(Err().Description(), c.text);
    EXPECT_EQ(Err().Source(),
              c.text == StandardErrorText(c.raised) ? u"Veldmark2" : u"Veldmark2.CSupport");
  }
}

/// A resource with one text, and where some of its blocks begin.
struct Sample {
  Sample() {
    bytes = VersionDescription{.file = {1, 2, 3, 4},
                               .translations = {u"040904B0"},
                               .strings = {{u"040904B0", {{u"Comments", u"some text"}}}}}
                .Build();
    tables = At(u"StringFileInfo");
    text = At(u"Comments");
    list = At(u"Translation");
  }
  std::size_t At(TextView key) const {
    const auto* units = reinterpret_cast<const std::uint8_t*>(key.data());
    return static_cast<std::size_t>(
        std::search(bytes.begin(), bytes.end(), units, units + key.size() * 2) - bytes.begin() - 6);
  }
  Bytes With(std::size_t offset, std::uint16_t word) const {
    Bytes changed = bytes;
    std::memcpy(changed.data() + offset, &word, sizeof word);
    return changed;
  }
  Bytes WithoutFixedPart() const {
    Bytes changed = With(2, 0);
    changed.erase(changed.begin() + 40, changed.begin() + 40 + sizeof(VS_FIXEDFILEINFO));
    changed[0] = static_cast<std::uint8_t>(changed.size());
    changed[1] = static_cast<std::uint8_t>(changed.size() >> 8);
    return changed;
  }
  Bytes bytes;
  std::size_t tables, text, list;
};

TEST_F(Versions, AreReadAsFarAsTheirLengthsCanBeTrusted) {
  const Sample sample;
  constexpr std::size_t kValueLength = 2;
  constexpr std::uint16_t kTooLong = 0xFFFF;
  const struct {
    const char* what;
    Bytes bytes;
    std::int32_t raised;
    const char* texts;
  } cases[] = {
      {"sound", sample.bytes, 0, " Comments=some text"},
      {"the whole claims more than there is", sample.With(0, kTooLong), 0, " Comments=some text"},
      {"the whole claims nothing", sample.With(0, 0), 13, ""},
      {"the whole ends with its head", sample.With(0, 6), 0, ""},
      {"there is no fixed part", sample.WithoutFixedPart(), 0, " Comments=some text"},
      {"the fixed part is short", sample.With(kValueLength, 51), 0, " Comments=some text"},
      {"the fixed part is cut", Bytes(sample.bytes.begin(), sample.bytes.begin() + 91), 13, ""},
      {"the fixed part is all", Bytes(sample.bytes.begin(), sample.bytes.begin() + 92), 0, ""},
      {"the tables claim more", sample.With(sample.tables, kTooLong), 0, ""},
      {"the tables claim nothing", sample.With(sample.tables, 0), 0, ""},
      {"the tables claim an odd length", sample.With(sample.tables, 5), 0, ""},
      {"a text claims more", sample.With(sample.text, kTooLong), 0, " Comments=some text"},
      {"a text is counted in bytes", sample.With(sample.text + kValueLength, 20), 0,
       " Comments=some text"},
      {"a text is counted too short", sample.With(sample.text + kValueLength, 1), 0,
       " Comments=some text"},
      {"a text is said to be empty", sample.With(sample.text + kValueLength, 0), 0, ""},
      {"a translation is said to be short", sample.With(sample.list + kValueLength, 3), 0, ""},
      {"a translation is cut", Bytes(sample.bytes.begin(), sample.bytes.end() - 1), 13, ""},
      {"nothing but a head", {8, 0, 0, 0, 0, 0, 'V', 0}, 0, ""},
      {"less than a head", {8, 0, 0, 0, 0}, 13, ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const Ref<CFile> file = FileWith(c.bytes);
    Err().Clear();
    EXPECT_EQ(ErrorOf([&] { EXPECT_EQ(Texts(*file), c.texts); }), c.raised);
    EXPECT_EQ(Err().Description(), c.raised == 0 ? u"" : GetAPIErrorText(c.raised));
  }
  const Ref<CFile> numberless = FileWith(sample.With(kValueLength, 51));
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
  VS_FIXEDFILEINFO fixed{};
  fixed.dwFileVersionMS = 0x00030001;
  fixed.dwFileVersionLS = 0x00670000;
  Bytes children =
      block("StringFileInfo", "", block("040904E4", "", block("Comments", {"caf\xE9", 5}, {})));
  const Bytes list = block("VarFileInfo", "", block("Translation", {"\x09\x04\xE4\x04", 4}, {}));
  children.insert(children.end(), list.begin(), list.end());
  const Ref<CFile> file = FileWith(
      block("VS_VERSION_INFO", {reinterpret_cast<const char*>(&fixed), sizeof fixed}, children));
  EXPECT_EQ(Get(*file, u"Version"), u"03.01.103.00");
  EXPECT_EQ(Texts(*file), " Comments=café");
}

}  // namespace
}  // namespace veldmark
