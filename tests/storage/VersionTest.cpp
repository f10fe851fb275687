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
