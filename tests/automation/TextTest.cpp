#include "automation/Text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>

#include "automation/CaseMapping.h"

namespace veldmark {
namespace {

TEST(Texts, KeepSoundUtf8AndReplaceEachByteOfWhatIsNone) {
  const Text bad = u"\uFFFD";
  const std::pair<std::string, Text> table[] = {
      {"\xDF\xBF\xEF\xBF\xBF\xF4\x8F\xBF\xBF", u"\u07FF\uFFFF\U0010FFFF"},
      {"\xC2\x80\xE0\xA0\x80\xF0\x90\x80\x80", u"\x80\u0800\U00010000"},
      {"\xE2\x82(", bad + bad + u"("},
      {"\xE2(\xA1", bad + u"(" + bad},
      {"a\xC3", u"a" + bad}};
  for (const auto& [bytes, text] : table) EXPECT_EQ(FromUtf8(bytes), text) << bytes;
  for (const std::string bytes : {"\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xED\xBF\xBF",
                                  "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80"}) {
    EXPECT_EQ(FromUtf8(bytes), Text(bytes.size(), u'\uFFFD')) << bytes;
  }
  const std::pair<Text, std::string> others[] = {{u"\xD800", "\xEF\xBF\xBD"},
                                                 {u"\xD800z", "\xEF\xBF\xBDz"},
                                                 {u"\xDFFF\xD800", "\xEF\xBF\xBD\xEF\xBF\xBD"},
                                                 {u"\xDBFF\xDFFF", "\xF4\x8F\xBF\xBF"}};
  for (const auto& [text, bytes] : others) EXPECT_EQ(ToUtf8(text), bytes);
}

TEST(CaseMapping, IsThePublishedTableUnitByUnit) {
  // The sum of all units' forms; it tells any change, and the letters here where to look.
  std::uint64_t sum = 14695981039346656037u;
  for (unsigned point = 0; point <= 0xFFFF; ++point) {
    const auto unit = static_cast<char16_t>(point);
    for (const char16_t form : {UpperCase(unit), LowerCase(unit), FoldCase(unit)}) {
      sum = (sum ^ form) * 1099511628211u;
    }
  }
  EXPECT_EQ(sum, 17725115726951846084u);
  const char16_t pairs[][2] = {{u'Z', u'z'}, {u'Ÿ', u'ÿ'}, {u'Σ', u'σ'}, {u'Ё', u'ё'},
                               {u'Ա', u'ա'}, {u'ᾈ', u'ᾀ'}, {u'Ⅷ', u'ⅷ'}, {0x13A0, 0xAB70}};
  for (const auto& [upper, lower] : pairs) {
    EXPECT_EQ(UpperCase(lower), upper);
    EXPECT_EQ(LowerCase(upper), lower);
  }
}

TEST(CaseMapping, TextsCompareAndReplaceInAnyCase) {
  EXPECT_TRUE(EqualNoCase(u"ΜΆΪΟΣ", u"μάϊος"));
  EXPECT_FALSE(EqualNoCase(u"Admin", u"Admin$"));
  EXPECT_TRUE(StartsWithNoCase(u"C:\\Größe", u"c:\\GRÖ"));
  EXPECT_FALSE(StartsWithNoCase(u"C", u"C:"));
  EXPECT_EQ(FindNoCase(u"abcABC", u"CA"), 2u);
  EXPECT_EQ(FindNoCase(u"abcABC", u"B", 2), 4u);
  EXPECT_EQ(FindNoCase(u"abc", u"", 3), 3u);
  EXPECT_EQ(FindNoCase(u"abc", u"a", 4), TextView::npos);
  EXPECT_EQ(ReplaceAll(u"aXaxa", u"x", u"xx"), u"aXaxxa");
  EXPECT_EQ(ReplaceAllNoCase(u"aXaxa", u"x", u"xx"), u"axxaxxa");
  EXPECT_EQ(ReplaceAll(u"aaa", u"aa", u"b"), u"ba");
  EXPECT_EQ(ReplaceAll(u"abc", u"", u"-"), u"abc");
  EXPECT_EQ(ToProperCase(u"the OLD\tman\r\nand o'neill-é ÉCOLE"),
            u"The Old\tMan\r\nAnd O'neill-é École");
  EXPECT_EQ(ToFolded(u"Straße Ω"), ToFolded(u"sTRAßE \u2126"));
}

TEST(Texts, AreSearchedForAUnitWhereverItStands) {
  for (std::size_t at = 0; at < 12; ++at) {
    Text text(12, u'\x8000');
    text[at] = u'\0';
    EXPECT_EQ(FindUnit(text, u'\0'), at);
  }
  EXPECT_EQ(FindUnit(u"\x0100\x8000\x0001\xFFFF!", u'\0'), 5u);
}

}  // namespace
}  // namespace veldmark
