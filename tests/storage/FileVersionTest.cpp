#include <algorithm>
#include <cstring>
#include <string_view>

#include "platform/simulated/estate/VersionDescription.h"
#include "storage/StorageFixture.h"

namespace veldmark {
namespace {

using simulated::VersionDescription;
using Bytes = std::vector<std::uint8_t>;

class Versions : public StorageTest {
 protected:
  static std::string Numbers(CFile& file) {
    return ValuesOf(file, {u"Version", u"ProductVersion"});
  }
  static std::string Texts(CFile& file) {
    return ValuesOf(file,
                    {u"Comments", u"CompanyName", u"Description", u"ProductName", u"InternalName",
                     u"LegalCopyright", u"LegalTrademarks", u"OriginalFilename"});
  }
  Ref<CFile> FileWith(Bytes resource) {
    local().Find(u"C:\\D\\a")->Version(std::move(resource));
    return Engine().GetFile(u"C:\\D\\a");
  }
};

TEST_F(Versions, HaveAFormatOfTheirOwn) {
  const std::pair<VersionDescription::Number, std::string> cases[] = {
      {{5, 1, 2600, 0}, "05.01.2600.00"},
      {{1, 2, 0, 1}, "01.02.00.01"},
      {{1, 65535, 3, 65535}, "02.-01.04.-01"},
      {{5, 32768, 1, 2}, "05.-32768.01.02"},
      {{65535, 65535, 65535, 65531}, "-01.-01.-0005"},
      {{32768, 7, 32768, 0}, "-32769.07.-2147483648"}};
  for (const auto& [number, text] : cases) {
    const VersionDescription version{.file = {2, 0, 0, 7}, .product = number};
    EXPECT_EQ(Numbers(*FileWith(version.Build())), "02.00.00.07|" + text);
  }
}

TEST_F(Versions, BringTheTextsOfTheFirstTranslationOnly) {
  const VersionDescription::Strings all = {
      {u"FileDescription", u"d\x00E9"}, {u"CompanyName", u"c"},    {u"productname", u"p"},
      {u"InternalName", u"i"},          {u"LegalCopyright", u"©"}, {u"LegalTrademarks", u"t"},
      {u"OriginalFilename", u"o"},      {u"Comments", u"x\0y"}};
  const VersionDescription::Strings one = {{u"Comments", u""}, {u"CompanyName", u"Other"}};
  const char* const every = "x|c|dé|p|i|©|t|o";
  const std::tuple<std::vector<Text>, std::vector<std::pair<Text, VersionDescription::Strings>>,
                   const char*>
      cases[] = {{{u"040904B0"}, {{u"040904B0", all}}, every},
                 {{u"04090CFE"}, {{u"00000000", one}, {u"04090cfe", all}}, every},
                 {{u"040704B0", u"040904B0"},
                  {{u"040904B0", all}, {u"040704B0", one}},
                  "put before|Other||||||"},
                 {{u"040704B0"}, {{u"040904B0", all}}, "put before|||||||"},
                 {{u"040904B0"}, {}, "put before|||||||"},
                 {{}, {{u"040904B0", all}}, "put before|||||||"}};
  for (const auto& [translations, strings, texts] : cases) {
    const VersionDescription version{
        .file = {1, 2, 3, 4}, .translations = translations, .strings = strings};
    const Ref<CFile> file = FileWith(version.Build());
    Call(*file, u"Comments", MemberKind::kPut, {Variant(u"put before")});
    EXPECT_EQ(Texts(*file), texts);
    EXPECT_EQ(Numbers(*file), "01.02.03.04|00.00.0000");
  }
}

TEST_F(Versions, AreReadOnceAndTriedAgainAfterAFailure) {
  const Ref<CFile> file = Engine().GetFile(u"C:\\D\\a");
  EXPECT_EQ(ErrorOf([&] { Texts(*file); }), runtime_error::kTypeMismatch);
  const VersionDescription version{
      .translations = {u"040904B0"},
      .strings = {{u"040904B0", {{u"CompanyName", u"c"}, {u"Comments", u"x"}}}}};
  local().Find(u"C:\\D\\a")->Version(version.Build());
  faults().FailNthOf("GetFileVersionInfoW", 1, 1117);
  EXPECT_EQ(ErrorOf([&] { Texts(*file); }), 1117);
  Call(*file, u"CompanyName", MemberKind::kPut, {Variant(u"put before")});
  EXPECT_EQ(Texts(*file), "x|c||||||");
  Call(*file, u"CompanyName", MemberKind::kPut, {Variant(u"put after")});
  journal().Clear();
  file->PutPath(u"C:\\D\\none");
  EXPECT_EQ(Texts(*file), "x|put after||||||");

  const auto pathless = Make<CFile>();
  EXPECT_EQ(Texts(*pathless), "|||||||");
  pathless->PutPath(u"C:\\D\\a");
  EXPECT_EQ(Texts(*pathless), "|||||||") << "an object without a path counts as loaded";
  EXPECT_TRUE(journal().entries().empty());
}

TEST_F(Versions, RaiseThePlatformsErrorOnlyWhereANumberStandsInTheErrorObject) {
  const std::tuple<const char16_t*, const char16_t*, Text> cases[] = {
      {u"C:\\D\\a", u"5", u"1812|Veldmark2.CSupport|" + GetAPIErrorText(5)},
      {u"C:\\D\\none", u"&H5", u"2|Veldmark2.CSupport|" + GetAPIErrorText(5)},
      {u"C:\\D\\a", u"Access is denied.", u"13|Veldmark2|Type mismatch"},
      {u"C:\\D\\a", u"3000000000", u"6|Veldmark2|Overflow"}};
  for (const auto& [path, description, failure] : cases) {
    const Ref<CFile> file = At<CFile>(path);
    Err().Set(AutomationError(1, u"Before", description));
    EXPECT_EQ(FailureOf([&] { Numbers(*file); }), failure);
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
  const std::tuple<const char*, Bytes, std::int32_t, bool> cases[] = {
      {"the whole claims more than there is", with(0, kTooLong), 0, true},
      {"the whole claims nothing", with(0, 0), 13, false},
      {"the whole ends with its head", with(0, 6), 0, false},
      {"the fixed part is short", with(kValueLength, 51), 0, true},
      {"the fixed part is cut", Bytes(sound.begin(), sound.begin() + 91), 13, false},
      {"the fixed part is all", Bytes(sound.begin(), sound.begin() + 92), 0, false},
      {"the tables claim more", with(tables, kTooLong), 0, false},
      {"the tables claim less than a head", with(tables, 5), 0, false},
      {"a text claims more", with(text, kTooLong), 0, true},
      {"a text is counted in bytes", with(text + kValueLength, 20), 0, true},
      {"a text is counted too short", with(text + kValueLength, 1), 0, true},
      {"a text is said to be empty", with(text + kValueLength, 0), 0, false},
      {"a translation is said to be short", with(at(u"Translation") + kValueLength, 3), 0, false},
      {"a translation is cut", Bytes(sound.begin(), sound.end() - 1), 13, false},
      {"nothing but a head", {8, 0, 0, 0, 0, 0, 'V', 0}, 0, false},
      {"less than a head", {8, 0, 0, 0, 0}, 13, false}};
  for (const auto& [what, bytes, raised, has_text] : cases) {
    SCOPED_TRACE(what);
    const Ref<CFile> file = FileWith(bytes);
    std::string texts;
    EXPECT_EQ(ErrorOf([&] { texts = Texts(*file); }), raised);
    EXPECT_EQ(texts, raised ? "" : has_text ? "some text|||||||" : "|||||||");
  }
  EXPECT_EQ(Numbers(*FileWith(with(kValueLength, 51))), "|");
}

TEST_F(Versions, Of16BitModulesHaveTheirTextsInTheCodePage) {
  // Length, length of the value, key, and the value at a multiple of four.
  const auto block = [](std::string_view key, std::string_view value, const std::string& children) {
    std::string bytes(4, '\0');
    for (const auto& part : {std::string(key) + '\0', std::string(value), children}) {
      bytes += part;
      bytes.resize((bytes.size() + 3) & ~std::size_t{3});
    }
    bytes[0] = static_cast<char>(bytes.size());
    bytes[1] = static_cast<char>(bytes.size() >> 8);
    bytes[2] = static_cast<char>(value.size());
    return bytes;
  };
  const std::string table = block("040904E4", "", block("Comments", {"caf\xE9", 5}, ""));
  const std::string list = block("Translation", {"\x09\x04\xE4\x04", 4}, "");
  const std::string whole =
      block("VS_VERSION_INFO", "some",
            block("StringFileInfo", "", table) + block("VarFileInfo", "", list));
  EXPECT_EQ(Texts(*FileWith({whole.begin(), whole.end()})), "café|||||||");
}

}  // namespace
}  // namespace veldmark
