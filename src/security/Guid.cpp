#include "security/Guid.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

#include "apartment/Conversions.h"
#include "apartment/Errors.h"

namespace veldmark {
namespace {

constexpr std::int32_t kInvalidClassText = static_cast<std::int32_t>(0x800401F3u);
constexpr TextView kForm = u"{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}";

std::optional<std::uint32_t> DigitOf(char16_t unit) {
  if (unit >= u'0' && unit <= u'9') return unit - u'0';
  if (unit >= u'A' && unit <= u'F') return unit - u'A' + 10;
  if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10;
  return std::nullopt;
}

/// A hexadecimal number of at most `width` digits.
std::uint32_t HexNumber(TextView digits, std::size_t width) {
  if (digits.empty()) Raise(runtime_error::kTypeMismatch);
  std::uint32_t number = 0;
  for (const char16_t unit : digits) {
    const auto digit = DigitOf(unit);
    if (!digit) Raise(runtime_error::kTypeMismatch);
    number = number << 4 | *digit;
  }
  // Leading zeros make no number wider.
  const std::size_t first = std::min(digits.find_first_not_of(u'0'), digits.size());
  if (digits.size() - first > width) Raise(runtime_error::kOverflow);
  return number;
}

class Groups {
 public:
  explicit Groups(TextView text) {
    for (std::size_t start = 0; !text.empty() && start <= text.size();) {
      const std::size_t end = std::min(text.find(u'-', start), text.size());
      groups_.push_back(text.substr(start, end - start));
      start = end + 1;
    }
  }
  TextView operator[](std::size_t index) const {
    if (index >= groups_.size()) Raise(runtime_error::kSubscriptOutOfRange);
    return groups_[index];
  }

 private:
  std::vector<TextView> groups_;
};

BYTE ByteAt(TextView group, std::size_t position) {
  return static_cast<BYTE>(HexNumber(group.substr(std::min(position, group.size()), 2), 2));
}

void AppendHex(Text& text, std::uint32_t number, int digits) {
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
    text += u"0123456789ABCDEF"[number >> shift & 0xF];
  }
}

}  // namespace

Text ConvertGUIDToString(const GUID& guid) {
  Text text;
  text.reserve(kForm.size());
  text += u'{';
  AppendHex(text, guid.Data1, 8);
  text += u'-';
  AppendHex(text, guid.Data2, 4);
  text += u'-';
  AppendHex(text, guid.Data3, 4);
  for (std::size_t index = 0; index < std::size(guid.Data4); ++index) {
    if (index == 0 || index == 2) text += u'-';
    AppendHex(text, guid.Data4[index], 2);
  }
  text += u'}';
  return text;
}

GUID ConvertStringToGUID(TextView text) {
  return ReRaising([&] {
    if (text.starts_with(u'{')) {
      text.remove_prefix(1);
      if (text.empty()) Raise(runtime_error::kInvalidCall);
      text.remove_suffix(1);
    }
    const Groups groups(text);
    GUID guid{};
    guid.Data1 = HexNumber(groups[0], 8);
    guid.Data2 = static_cast<WORD>(HexNumber(groups[1], 4));
    guid.Data3 = static_cast<WORD>(HexNumber(groups[2], 4));
    for (std::size_t index = 0; index < std::size(guid.Data4); ++index) {
      const bool in_fourth = index < 2;
      guid.Data4[index] = ByteAt(groups[in_fourth ? 3 : 4], 2 * (in_fourth ? index : index - 2));
    }
    return guid;
  });
}

GUID ConvertStringToGUID2(TextView text) {
  return ReRaising([&] {
    text = text.substr(0, text.find(u'\0'));
    bool matches = text.size() == kForm.size();
    for (std::size_t index = 0; matches && index < kForm.size(); ++index) {
      matches =
          kForm[index] == u'x' ? DigitOf(text[index]).has_value() : text[index] == kForm[index];
    }
    if (!matches) RaisePlatformError(kInvalidClassText);
    return ConvertStringToGUID(text);
  });
}

}  // namespace veldmark
