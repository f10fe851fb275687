#include "platform/simulated/estate/SortKey.h"

#include "automation/CaseMapping.h"

namespace veldmark::simulated {
namespace {

constexpr TextView kIgnorable(u"\0\u00AD\u200C\u200D\u200E\u200F\uFEFF", 7);

// Letters with a mark, in the order of the letters without it.
struct MarkedLetters {
  char16_t mark;
  TextView plain, marked;
};
constexpr MarkedLetters kMarkedLetters[] = {
    {0x0300, u"AEIOU", u"ÀÈÌÒÙ"},
    {0x0301, u"AEIOUYCLNRSZ", u"ÁÉÍÓÚÝĆĹŃŔŚŹ"},
    {0x0302, u"AEIOUCGHJSWY", u"ÂÊÎÔÛĈĜĤĴŜŴŶ"},
    {0x0303, u"ANOIU", u"ÃÑÕĨŨ"},
    {0x0304, u"AEIOU", u"ĀĒĪŌŪ"},
    {0x0306, u"AEGIOUИ", u"ĂĔĞĬŎŬЙ"},
    {0x0307, u"CEGIZ", u"ĊĖĠİŻ"},
    {0x0308, u"AEIOUYЕ", u"ÄËÏÖÜŸЁ"},
    {0x030A, u"AUA", u"ÅŮ\u212B"},
    {0x030B, u"OU", u"ŐŰ"},
    {0x030C, u"CDELNRSTZ", u"ČĎĚĽŇŘŠŤŽ"},
    {0x0327, u"CGKLNRST", u"ÇĢĶĻŅŖŞŢ"},
    {0x0328, u"AEIU", u"ĄĘĮŲ"},
};

struct Expansion {
  char16_t unit;
  TextView text;
};
constexpr Expansion kExpansions[] = {{u'ß', u"SS"},      {u'ẞ', u"SS"},      {u'Æ', u"AE"},
                                     {u'Œ', u"OE"},      {u'Þ', u"TH"},      {u'Ĳ', u"IJ"},
                                     {u'\uFB01', u"FI"}, {u'\uFB02', u"FL"}, {u'\u212A', u"K"}};

void Expand(Text& out, char16_t unit) {
  if (kIgnorable.find(unit) != TextView::npos) return;
  // The micro sign is no letter, though its capital is one.
  const char16_t folded = unit == u'\u00B5' ? unit : FoldCase(unit);
  for (const Expansion& expansion : kExpansions) {
    if (expansion.unit == folded) {
      out += expansion.text;
      return;
    }
  }
  for (const auto& [mark, plain, marked] : kMarkedLetters) {
    if (const std::size_t at = marked.find(folded); at != TextView::npos) {
      (out += plain[at]) += mark;
      return;
    }
  }
  out += folded;
}

}  // namespace

std::vector<std::uint8_t> SortKey(TextView text) {
  Text expanded;
  for (const char16_t unit : text) Expand(expanded, unit);
  std::vector<std::uint8_t> key;
  for (const char16_t unit : expanded) {
    key.push_back(static_cast<std::uint8_t>(unit >> 8));
    key.push_back(static_cast<std::uint8_t>(unit));
  }
  key.push_back(0);
  return key;
}

}  // namespace veldmark::simulated
