#include "automation/Text.h"

#include <gtest/gtest.h>

#include <utility>

namespace veldmark {
namespace {

TEST(Texts, KeepSoundUtf8AndReplaceEachByteOfWhatIsNone) {
  const Text bad = u"\uFFFD";
  const std::pair<std::string, Text> table[] = {
      {"\xDF\xBF\xEF\xBF\xBF\xF4\x8F\xBF\xBF", u"\u07FF\uFFFF\U0010FFFF"},
      {"\xC2\x80\xE0\xA0\x80\xF0\x90\x80\x80", u"\x80\u0800\U00010000"},
      {"\xC3(", bad + u"("},
      {"\xE2\x82(", bad + bad + u"("},
      {"\xE2(\xA1", bad + u"(" + bad},
      {"a\xC3", u"a" + bad},
      {"\xC3\xC3\xA9", bad + u"\u00E9"},
      {"\x80", bad},
      {"\xC1\xBF", bad + bad},
      {"\xE0\x9F\xBF", bad + bad + bad},
      {"\xED\xA0\x80", bad + bad + bad},
      {"\xED\xBF\xBF", bad + bad + bad},
      {"\xF0\x8F\xBF\xBF", bad + bad + bad + bad},
      {"\xF4\x90\x80\x80", bad + bad + bad + bad},
      {"\xF5\x80", bad + bad}};
  for (const auto& [bytes, text] : table) EXPECT_EQ(FromUtf8(bytes), text) << bytes;
  const std::pair<Text, std::string> others[] = {{u"\xD800", "\xEF\xBF\xBD"},
                                                 {u"\xD800z", "\xEF\xBF\xBDz"},
                                                 {u"\xDFFF\xD800", "\xEF\xBF\xBD\xEF\xBF\xBD"},
                                                 {u"\xDBFF\xDFFF", "\xF4\x8F\xBF\xBF"}};
  for (const auto& [text, bytes] : others) EXPECT_EQ(ToUtf8(text), bytes);
}

}  // namespace
}  // namespace veldmark
