#include "automation/Text.h"

#include <cstdint>
#include <cstring>

namespace veldmark {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

void AppendUtf8(std::string& out, char32_t point) {
  if (point < 0x80) {
    out += static_cast<char>(point);
    return;
  }
  const int continuation = point < 0x800 ? 1 : point < 0x10000 ? 2 : 3;
  constexpr unsigned char kLead[] = {0, 0xC0, 0xE0, 0xF0};
  out += static_cast<char>(kLead[continuation] | (point >> (6 * continuation)));
  for (int i = continuation - 1; i >= 0; --i) {
    out += static_cast<char>(0x80 | ((point >> (6 * i)) & 0x3F));
  }
}

void AppendUtf16(Text& out, char32_t point) {
  if (point < 0x10000) {
    out += static_cast<char16_t>(point);
    return;
  }
  out += static_cast<char16_t>(0xD7C0 + (point >> 10));
  out += static_cast<char16_t>(0xDC00 + (point & 0x3FF));
}

}  // namespace

Text ToText(std::int64_t number) {
  const std::string digits = std::to_string(number);
  return Text(digits.begin(), digits.end());
}

std::size_t FindUnit(TextView text, char16_t unit) noexcept {
  // Four at a time, where find() compares unit by unit: the borrow of a difference reaches the top
  // bit of a zero among them.
  constexpr std::uint64_t kOnes = 0x0001'0001'0001'0001;
  constexpr std::uint64_t kTopBits = 0x8000'8000'8000'8000;
  std::size_t position = 0;
  for (; text.size() - position >= 4; position += 4) {
    std::uint64_t four;
    std::memcpy(&four, text.data() + position, sizeof four);
    four ^= kOnes * unit;
    if (((four - kOnes) & ~four & kTopBits) != 0) break;
  }
  while (position < text.size() && text[position] != unit) ++position;
  return position;
}

Text LowerAscii(TextView name) {
  Text lower(name);
  for (char16_t& unit : lower) {
    if (unit >= u'A' && unit <= u'Z') unit = static_cast<char16_t>(unit + (u'a' - u'A'));
  }
  return lower;
}

std::string ToUtf8(TextView text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t point = text[i];
    if (IsHighSurrogate(point) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) {
      point = 0x10000 + ((point - 0xD800) << 10) + (text[++i] - 0xDC00u);
    } else if (IsHighSurrogate(point) || IsLowSurrogate(point)) {
      point = kReplacement;
    }
    AppendUtf8(out, point);
  }
  return out;
}

Text FromUtf8(std::string_view bytes) {
  Text out;
  out.reserve(bytes.size());
  for (std::size_t i = 0; i < bytes.size();) {
    const auto lead = static_cast<unsigned char>(bytes[i]);
    if (lead < 0x80) {
      out += static_cast<char16_t>(lead);
      ++i;
      continue;
    }
    const std::size_t length = lead >= 0xF0 && lead < 0xF5   ? 4
                               : lead >= 0xE0 && lead < 0xF0 ? 3
                               : lead >= 0xC2 && lead < 0xE0 ? 2
                                                             : 0;
    char32_t point = length == 0 ? 0 : lead & (0xFFu >> (length + 1));
    bool whole = length != 0 && i + length <= bytes.size();
    for (std::size_t k = 1; whole && k < length; ++k) {
      const auto next = static_cast<unsigned char>(bytes[i + k]);
      whole = (next & 0xC0) == 0x80;
      point = (point << 6) | (next & 0x3Fu);
    }
    constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    whole = whole && point >= kSmallest[length] && point <= 0x10FFFF && !IsHighSurrogate(point) &&
            !IsLowSurrogate(point);
    AppendUtf16(out, whole ? point : kReplacement);
    i += whole ? length : 1;
  }
  return out;
}

}  // namespace veldmark
