#include "automation/CaseMapping.h"

#include <gtest/gtest.h>

namespace veldmark {
namespace {

TEST(CaseMapping, PairsMapOntoEachOther) {
  const char16_t pairs[][2] = {{u'A', u'a'},     {u'Z', u'z'},     {u'Ä', u'ä'},    {u'Þ', u'þ'},
                               {u'Ÿ', u'ÿ'},     {u'Ā', u'ā'},     {u'Ĺ', u'ĺ'},    {u'Ž', u'ž'},
                               {u'Σ', u'σ'},     {u'Ж', u'ж'},     {u'Ё', u'ё'},    {u'Ա', u'ա'},
                               {u'ᾈ', u'ᾀ'},     {u'Ⅷ', u'ⅷ'},     {u'Ⓐ', u'ⓐ'},    {u'Ａ', u'ａ'},
                               {0x10A0, 0x2D00}, {0x13A0, 0xAB70}, {0xA7AE, 0x026A}};
  for (const auto& [upper, lower] : pairs) {
    EXPECT_EQ(UpperCase(lower), upper);
    EXPECT_EQ(LowerCase(upper), lower);
    EXPECT_EQ(UpperCase(upper), upper);
    EXPECT_EQ(LowerCase(lower), lower);
    EXPECT_EQ(FoldCase(upper), FoldCase(lower));
  }
  for (const char16_t single : {u'@', u'[', u'`', u'{', u'1', u'ß', u'×', u'÷', u'ĸ', u'ı', u'İ',
                                u'ſ', u'\u212A', u'中', u'\xD801', u'\xFFFF'}) {
    EXPECT_EQ(UpperCase(single), single);
    EXPECT_EQ(LowerCase(single), single);
  }
}

TEST(CaseMapping, FoldingIsOneFormForEveryCaseOfAUnitAndKeepsAsciiToItself) {
  for (unsigned point = 0; point <= 0xFFFF; ++point) {
    const auto unit = static_cast<char16_t>(point);
    const char16_t folded = FoldCase(unit);
    ASSERT_EQ(FoldCase(UpperCase(unit)), folded) << point;
    ASSERT_EQ(FoldCase(LowerCase(unit)), folded) << point;
    ASSERT_EQ(FoldCase(folded), folded) << point;
    ASSERT_EQ(folded < 0x80, point < 0x80) << point;
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

}  // namespace
}  // namespace veldmark
