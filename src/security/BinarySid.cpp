#include "security/BinarySid.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <limits>

#include "apartment/BitsHelper.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "automation/Conversion.h"
#include "platform/operations/ErrorCodes.h"

namespace veldmark {
namespace {

constexpr std::size_t kHeadSize = 8;
constexpr std::size_t kCountOffset = 1;
constexpr std::size_t kAuthorityOffset = 2;
constexpr std::size_t kAuthoritySize = 6;

// "0x", a full authority, and 15 sub-authorities of ten digits with their "-".
constexpr std::size_t kUsualTextSize = 200;

std::int32_t WordAt(Bytes bytes, std::size_t offset) {
  std::int32_t word;
  std::memcpy(&word, bytes.data() + offset, sizeof word);
  return word;
}

template <class Number>
void AppendDecimal(Text& text, Number number) {
  std::array<char, 12> digits;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  text.append(digits.data(), end);
}

void AppendAuthority(Text& text, Bytes authority) {
  if (authority[0] == 0 && authority[1] == 0) {
    // The sum of the four lower bytes is a signed one, and nothing is written where it overflows.
    if (authority[2] >= 0x80) return;
    AppendDecimal(text, authority[2] << 24 | authority[3] << 16 | authority[4] << 8 | authority[5]);
    return;
  }
  text += u"0x";
  for (const std::uint8_t byte : authority) {
    if (byte < 10) text += u'0';
    AppendDecimal(text, unsigned{byte});
  }
}

/// A piece of a SID's text as a number.
double ToNumber(TextView piece) {
  // Nearly every piece is a few digits, which need no conversion of a value.
  constexpr std::size_t kSafeDigits = 15;
  if (!piece.empty() && piece.size() <= kSafeDigits) {
    std::int64_t number = 0;
    bool digits_only = true;
    for (const char16_t unit : piece) {
      digits_only = digits_only && unit >= u'0' && unit <= u'9';
      number = number * 10 + (unit - u'0');
    }
    if (digits_only) return static_cast<double>(number);
  }
  return ToDouble(Variant(piece));
}

std::uint8_t KnownAuthority(TextView piece) {
  const double number = ToNumber(piece);
  for (const std::uint8_t known : {1, 2, 3, 5}) {
    if (number == known) return known;
  }
  return 0;
}

/// Takes the text before the next "-" off the front.
TextView TakePiece(TextView& rest) {
  const std::size_t end = std::min(rest.find(u'-'), rest.size());
  const TextView piece = rest.substr(0, end);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  return piece;
}

}  // namespace

std::size_t GetLengthSid(Bytes sid) {
  if (sid.size() >= kHeadSize) {
    const std::size_t length = kHeadSize + sizeof(std::int32_t) * sid[kCountOffset];
    if (length <= sid.size()) return length;
  }
  RaisePlatformError(kErrorInvalidSid);
}

bool IsValidSid(Bytes sid) {
  return sid.size() >= kHeadSize && sid[0] == 1 && sid[kCountOffset] <= kMostSubAuthorities &&
         kHeadSize + sizeof(std::int32_t) * sid[kCountOffset] <= sid.size();
}

bool EqualSid(Bytes left, Bytes right) {
  return std::ranges::equal(left.first(GetLengthSid(left)), right.first(GetLengthSid(right)));
}

Bytes SidBytesAt(const void* sid) {
  if (!sid) return {};
  const auto* const bytes = static_cast<const std::uint8_t*>(sid);
  const std::size_t sub_authorities = bytes[kCountOffset];
  if (sub_authorities > kMostSubAuthorities) return {};
  return {bytes, kHeadSize + sub_authorities * sizeof(std::uint32_t)};
}

SidWords CopySid(Bytes sid) {
  const std::size_t length = GetLengthSid(sid);
  SidWords words(length / sizeof(std::int32_t));
  std::memcpy(words.data(), sid.data(), length);
  return words;
}

SidWords BuildSid(std::uint8_t authority, std::span<const std::int32_t> sub_authorities) {
  SidWords words(kHeadSize / sizeof(std::int32_t));
  const std::array<std::uint8_t, kHeadSize> head = {
      1, static_cast<std::uint8_t>(sub_authorities.size()), 0, 0, 0, 0, 0, authority};
  std::memcpy(words.data(), head.data(), head.size());
  words.insert(words.end(), sub_authorities.begin(), sub_authorities.end());
  return words;
}

Text SidToText(Bytes sid) {
  Text text;
  text.reserve(kUsualTextSize);
  text += u"S-1-";
  AppendAuthority(text, sid.subspan(kAuthorityOffset, kAuthoritySize));
  // The count is read as the word that begins with it: three bytes of the authority are in it, and
  // only the end of the SID bounds what such an authority makes of it.
  const std::int32_t count = WordAt(sid, kCountOffset);
  for (std::int32_t index = 0; index < count; ++index) {
    const std::size_t offset = kHeadSize + sizeof(std::int32_t) * static_cast<std::size_t>(index);
    if (offset >= sid.size()) break;
    text += u'-';
    AppendDecimal(text, static_cast<std::uint32_t>(WordAt(sid, offset)));
  }
  return text;
}

SidWords GetSidBufferFromText(TextView sid_text) {
  return ReRaising([&] {
    const auto pieces = sid_text.empty() ? 0 : std::ranges::count(sid_text, u'-') + 1;
    const auto count = pieces - 3;
    if (count < 0 || count > std::numeric_limits<std::uint8_t>::max()) {
      Raise(runtime_error::kOverflow);
    }
    if (count == 0) RaisePlatformError(kErrorInvalidParameter, Err().Source());
    TextView rest = sid_text;
    TakePiece(rest);
    TakePiece(rest);
    const std::uint8_t authority = KnownAuthority(TakePiece(rest));
    std::array<std::int32_t, kMostBuiltSubAuthorities> sub_authorities;
    for (std::size_t index = 0; index < static_cast<std::size_t>(count); ++index) {
      const std::int32_t value = DoubleToUnsignedLong(ToNumber(TakePiece(rest)));
      if (index >= sub_authorities.size()) Raise(runtime_error::kSubscriptOutOfRange);
      sub_authorities[index] = value;
    }
    return BuildSid(authority, std::span(sub_authorities).first(static_cast<std::size_t>(count)));
  });
}

}  // namespace veldmark
