#include "automation/CaseMapping.h"

#include <gtest/gtest.h>

namespace veldmark {
namespace {

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
  for (const char16_t single : {u'[', u'ß', u'÷', u'ı', u'İ', u'ſ', u'\u212A', u'\xD801'}) {
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
