#include "platform/simulated/estate/FileNames.h"

#include <cstdint>
#include <vector>

#include "automation/CaseMapping.h"

namespace veldmark::simulated {
namespace {

constexpr std::size_t kMaxNameLength = 255;

// The wildcards that only the platform writes; they can't stand in names either.
constexpr char16_t kDosStar = u'<';
constexpr char16_t kDosQuestion = u'>';
constexpr char16_t kDosDot = u'"';

bool HasOnly(TextView name, TextView forbidden) {
  for (const char16_t unit : name) {
    if (unit < 0x20 || forbidden.find(unit) != TextView::npos) return false;
  }
  return true;
}

bool IsShortNameCharacter(char16_t unit) {
  return unit > 0x20 && unit < 0x7F && TextView(u".\"*+,/:;<=>?[\\]|").find(unit) == TextView::npos;
}

bool IsShortName(TextView name) {
  const std::size_t dot = name.find(u'.');
  const TextView base = name.substr(0, dot);
  const TextView extension = dot == TextView::npos ? TextView() : name.substr(dot + 1);
  if (base.empty() || base.size() > 8 || extension.size() > 3) return false;
  if (dot != TextView::npos && extension.empty()) return false;
  for (const TextView part : {base, extension}) {
    for (const char16_t unit : part) {
      if (!IsShortNameCharacter(unit)) return false;
    }
  }
  return true;
}

Text Simplified(TextView part, std::size_t limit) {
  Text result;
  for (const char16_t unit : part) {
    if (result.size() == limit) break;
    if (unit == u' ' || unit == u'.') continue;
    result += IsShortNameCharacter(unit) ? UpperCase(unit) : u'_';
  }
  return result;
}

Text Checksum(TextView name) {
  std::uint16_t sum = 0;
  for (const char16_t unit : name) sum = static_cast<std::uint16_t>(sum * 37 + unit);
  std::int64_t mixed = static_cast<std::int32_t>(static_cast<std::uint32_t>(sum) * 314159269u);
  if (mixed < 0) mixed = -mixed;
  mixed -=
      static_cast<std::int64_t>(static_cast<std::uint64_t>(mixed * 1152921497) >> 60) * 1000000007;
  Text digits;
  for (int index = 0; index < 4; ++index, mixed >>= 4) digits += u"0123456789ABCDEF"[mixed & 15];
  return digits;
}

}  // namespace

bool IsValidName(TextView name) {
  return !name.empty() && name.size() <= kMaxNameLength && name != u"." && name != u".." &&
         HasOnly(name, u"<>:\"/\\|?*");
}

bool IsValidPattern(TextView pattern) {
  return !pattern.empty() && pattern.size() <= kMaxNameLength && HasOnly(pattern, u":/\\|");
}

Text MakeShortName(TextView name, const std::function<bool(TextView)>& taken) {
  if (IsShortName(name)) return {};
  const std::size_t start = name.find_first_not_of(u". ");
  const TextView rest = start == TextView::npos ? name : name.substr(start);
  const std::size_t dot = rest.rfind(u'.');
  const bool has_extension = dot != TextView::npos && dot + 1 < rest.size();
  Text base = Simplified(rest.substr(0, dot), 6);
  const Text extension = has_extension ? u"." + Simplified(rest.substr(dot + 1), 3) : Text();

  const auto numbered = [&](int number) { return base + u"~" + ToText(number) + extension; };
  // Names that leave next to nothing of the base go to the checksum at once.
  if (base.size() > 2) {
    for (int number = 1; number <= 4; ++number) {
      if (Text candidate = numbered(number); !taken(candidate)) return candidate;
    }
  }
  base = base.substr(0, 2) + Checksum(name);
  for (int number = 1;; ++number) {
    // Eight characters hold the number only by taking them from the base.
    if (base.size() + 1 + ToText(number).size() > 8) base.pop_back();
    if (Text candidate = numbered(number); !taken(candidate)) return candidate;
  }
}

Text TranslatePattern(TextView pattern, bool ends_in_dot) {
  if (pattern == u"*.*") return u"*";
  Text translated = ToUpper(pattern);
  for (std::size_t index = 0; index < translated.size(); ++index) {
    const bool wild = translated[index] == u'?' || translated[index] == u'*';
    if (index > 0 && translated[index] == u'.' && translated[index - 1] == u'*') {
      translated[index - 1] = kDosStar;
    }
    if (wild && index > 0 && translated[index - 1] == u'.') translated[index - 1] = kDosDot;
    if (translated[index] == u'?') translated[index] = kDosQuestion;
  }
  if (ends_in_dot && !translated.empty() && translated.back() == u'*') translated.back() = kDosStar;
  return translated;
}

bool MatchesPattern(TextView translated, TextView upper_name) {
  // "." and ".." count as names without an extension.
  if (translated == u"<" && (upper_name == u"." || upper_name == u"..")) return true;
  const std::size_t last_dot = upper_name.rfind(u'.');
  const std::size_t states = translated.size() + 1;
  std::vector<char> current(states, 0);
  std::vector<char> next(states, 0);

  // Follows what may match nothing: stars anywhere; "?" before a dot or at the end; a dot at the
  // end.
  const auto close = [&](std::vector<char>& set, std::size_t position) {
    const bool at_end = position == upper_name.size();
    for (std::size_t state = 0; state + 1 < states; ++state) {
      if (set[state] == 0) continue;
      const char16_t symbol = translated[state];
      const bool skips = symbol == u'*' || symbol == kDosStar ||
                         (symbol == kDosQuestion && (at_end || upper_name[position] == u'.')) ||
                         (symbol == kDosDot && at_end);
      if (skips) set[state + 1] = 1;
    }
  };

  current[0] = 1;
  close(current, 0);
  for (std::size_t position = 0; position < upper_name.size(); ++position) {
    const char16_t unit = upper_name[position];
    std::fill(next.begin(), next.end(), 0);
    for (std::size_t state = 0; state + 1 < states; ++state) {
      if (current[state] == 0) continue;
      switch (translated[state]) {
        case u'*':
          next[state] = 1;
          break;
        case kDosStar:
          if (position != last_dot) next[state] = 1;
          break;
        case kDosQuestion:
          if (unit != u'.') next[state + 1] = 1;
          break;
        case u'?':
          next[state + 1] = 1;
          break;
        case kDosDot:
          if (unit == u'.') next[state + 1] = 1;
          break;
        default:
          if (unit == translated[state]) next[state + 1] = 1;
      }
    }
    close(next, position + 1);
    current.swap(next);
  }
  return current[states - 1] != 0;
}

}  // namespace veldmark::simulated
