#include "automation/Conversion.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <string>

#include "automation/CaseMapping.h"
#include "automation/CivilTime.h"
#include "automation/Error.h"

namespace veldmark {
namespace {

[[noreturn]] void RaiseMismatch() { Raise(runtime_error::kTypeMismatch); }
[[noreturn]] void RaiseOverflow() { Raise(runtime_error::kOverflow); }

bool IsBlank(char16_t unit) { return unit == u' ' || (unit >= 9 && unit <= 13) || unit == 0xA0; }
bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }
bool IsAsciiLetter(char16_t unit) { return UpperCase(unit) >= u'A' && UpperCase(unit) <= u'Z'; }

int HexDigit(char16_t unit) {
  if (IsDigit(unit)) return unit - u'0';
  const char16_t upper = UpperCase(unit);
  return upper >= u'A' && upper <= u'F' ? upper - u'A' + 10 : 16;
}

// What the platform reads of a text: all before its first NUL, without blanks around.
TextView Readable(TextView text) {
  text = text.substr(0, text.find(u'\0'));
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

// Numbers

// A number as its text tells it, before it is known what it has to fit into.
struct ReadNumber {
  bool is_bits = false;
  std::uint64_t bits = 0;  // the digits after "&H" or "&O"

  bool negative = false;
  std::string digits;         // without zeros in front; empty is zero
  std::int64_t exponent = 0;  // of ten, for the last digit
};

// "&H" and "&O" digits, up to 64 bits of them.
std::optional<ReadNumber> ReadBits(TextView text) {
  if (text.size() < 3) return {};
  const char16_t mark = UpperCase(text[1]);
  if (mark != u'H' && mark != u'O') return {};
  const int shift = mark == u'H' ? 4 : 3;
  ReadNumber number;
  number.is_bits = true;
  for (const char16_t unit : text.substr(2)) {
    const int digit = HexDigit(unit);
    if (digit >= 1 << shift) return {};
    if (number.bits >> (64 - shift) != 0) RaiseOverflow();
    number.bits = number.bits << shift | static_cast<std::uint64_t>(digit);
  }
  return number;
}

// Reads the marks that stand before and behind a number: one sign, one currency sign, one pair of
// brackets, which makes it negative, each once and on either side.
class NumberMarks {
 public:
  bool Take(char16_t unit, bool leading) {
    if (unit == u'+' || unit == u'-') {
      negative_ = negative_ || unit == u'-';
      return !std::exchange(sign_, true);
    }
    if (unit == u'$') return !std::exchange(currency_, true);
    if (unit == u'(' && leading) {
      negative_ = open_ = true;
      return !std::exchange(sign_, true);
    }
    return unit == u')' && !leading && std::exchange(open_, false);
  }
  bool IsWhole() const { return !open_; }
  bool IsNegative() const { return negative_; }

 private:
  bool sign_ = false;
  bool currency_ = false;
  bool open_ = false;
  bool negative_ = false;
};

// Digits with one decimal point and any separators of thousands behind the first digit.
bool ReadDigits(TextView text, std::size_t& at, ReadNumber& number) {
  bool any = false;
  bool fraction = false;
  for (; at < text.size(); ++at) {
    if (IsDigit(text[at])) {
      any = true;
      if (!number.digits.empty() || text[at] != u'0') {
        number.digits += static_cast<char>(text[at]);
      }
      if (fraction) --number.exponent;
    } else if (text[at] == u'.' && !fraction) {
      fraction = true;
    } else if (text[at] != u',' || !any) {
      break;
    }
  }
  return any;
}

// An exponent where there is one. Its digits count only as far as they could still matter.
bool ReadExponent(TextView text, std::size_t& at, ReadNumber& number) {
  if (at == text.size() || UpperCase(text[at]) != u'E') return true;
  ++at;
  const bool negative = at < text.size() && text[at] == u'-';
  if (at < text.size() && (text[at] == u'+' || text[at] == u'-')) ++at;
  if (at == text.size() || !IsDigit(text[at])) return false;
  constexpr std::int64_t kBeyondAll = 1'000'000'000'000;
  std::int64_t exponent = 0;
  for (; at < text.size() && IsDigit(text[at]); ++at) {
    exponent = std::min(exponent * 10 + (text[at] - u'0'), kBeyondAll);
  }
  number.exponent += negative ? -exponent : exponent;
  return true;
}

std::optional<ReadNumber> ReadDecimal(TextView text) {
  ReadNumber number;
  NumberMarks marks;
  std::size_t at = 0;
  const auto read_marks = [&](bool leading) {
    for (; at < text.size(); ++at) {
      if (!IsBlank(text[at]) && !marks.Take(text[at], leading)) break;
    }
  };
  read_marks(true);
  if (!ReadDigits(text, at, number) || !ReadExponent(text, at, number)) return {};
  read_marks(false);
  if (at != text.size() || !marks.IsWhole()) return {};
  number.negative = marks.IsNegative();
  return number;
}

ReadNumber ParseNumber(TextView text) {
  text = Readable(text);
  std::optional<ReadNumber> number =
      !text.empty() && text[0] == u'&' ? ReadBits(text) : ReadDecimal(text);
  if (!number) RaiseMismatch();
  return *std::move(number);
}

double AsDouble(const ReadNumber& number) {
  if (number.is_bits) return static_cast<double>(number.bits);
  if (number.digits.empty()) return 0;
  const std::string canonical = number.digits + "e" + std::to_string(number.exponent);
  double value = 0;
  const auto result = std::from_chars(canonical.data(), canonical.data() + canonical.size(), value);
  if (result.ec != std::errc()) {
    if (static_cast<std::int64_t>(number.digits.size()) + number.exponent > 0) RaiseOverflow();
    value = 0;
  }
  return number.negative ? -value : value;
}

std::int64_t Signed(std::uint64_t magnitude, bool negative) {
  constexpr auto kMost = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  if (magnitude > kMost + (negative ? 1 : 0)) RaiseOverflow();
  return static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude);
}

// The number times 10 to the power `scale`, rounded half to even, without a detour through a
// double.
std::int64_t AsScaled(const ReadNumber& number, int scale) {
  const std::string& digits = number.digits;
  const std::int64_t whole_digits =
      static_cast<std::int64_t>(digits.size()) + number.exponent + scale;
  constexpr std::int64_t kMostDigits = std::numeric_limits<std::uint64_t>::digits10;
  if (digits.empty() || whole_digits < 0) return 0;
  if (whole_digits > kMostDigits) RaiseOverflow();
  const auto count = static_cast<std::size_t>(whole_digits);
  std::uint64_t magnitude = 0;
  for (std::size_t i = 0; i < count; ++i) {
    magnitude = magnitude * 10 + (i < digits.size() ? static_cast<unsigned>(digits[i] - '0') : 0u);
  }
  if (count < digits.size()) {
    const bool beyond_half =
        digits[count] > '5' ||
        (digits[count] == '5' && digits.find_first_not_of('0', count + 1) != std::string::npos);
    const bool half = digits[count] == '5' && !beyond_half;
    if (beyond_half || (half && magnitude % 2 != 0)) ++magnitude;
  }
  return Signed(magnitude, number.negative);
}

std::int64_t WholePart(Currency value) {
  const std::int64_t whole = value.scaled / Currency::kScale;
  const std::int64_t twice = 2 * (value.scaled % Currency::kScale);
  if (twice > Currency::kScale || (twice == Currency::kScale && whole % 2 != 0)) return whole + 1;
  if (twice < -Currency::kScale || (twice == -Currency::kScale && whole % 2 != 0)) return whole - 1;
  return whole;
}

// A number that is a whole one already, as 64 bits or less.
template <class T>
requires std::integral<T>
constexpr std::int64_t WholeOf(T value) {
  return std::is_same_v<T, bool> ? (value ? -1 : 0) : static_cast<std::int64_t>(value);
}

// Dates

TextView MonthName(int month) {
  constexpr TextView kNames[] = {u"january",   u"february", u"march",    u"april",
                                 u"may",       u"june",     u"july",     u"august",
                                 u"september", u"october",  u"november", u"december"};
  return kNames[month - 1];
}

bool IsWeekday(TextView word) {
  constexpr TextView kNames[] = {u"sunday",   u"monday", u"tuesday", u"wednesday",
                                 u"thursday", u"friday", u"saturday"};
  return word.size() >= 3 &&
         std::ranges::any_of(kNames, [word](TextView name) { return name.starts_with(word); });
}

// 1 to 12, or 0 for another word.
int MonthOf(TextView word) {
  if (word.size() < 3) return 0;
  for (int month = 1; month <= 12; ++month) {
    if (MonthName(month).starts_with(word)) return month;
  }
  return 0;
}

// Reads dates and times the way they are written in the United States, and years first.
class DateReader {
 public:
  explicit DateReader(TextView text) : text_(text) {}

  std::optional<Date> Read() {
    while (SkipBlanks()) {
      if (!ReadPart()) return {};
    }
    if (separator_open_ || (!has_time_ && !HasDate())) return {};
    if (HasDate() && !AssignDate()) return {};
    return FromCivilTime(moment_);
  }

 private:
  struct Number {
    int value = 0;
    int digits = 0;
    bool CanOnlyBeYear() const { return digits > 2 || value > 31; }
  };

  bool HasDate() const { return count_ > 0 || month_ != 0; }
  bool SkipBlanks() {
    while (at_ < text_.size() && IsBlank(text_[at_])) ++at_;
    return at_ < text_.size();
  }
  bool TakeUnit(char16_t unit) {
    if (!SkipBlanks() || text_[at_] != unit) return false;
    ++at_;
    return true;
  }

  bool ReadPart() {
    const char16_t unit = text_[at_];
    if (IsDigit(unit)) return ReadNumberPart();
    if (IsAsciiLetter(unit)) return ReadWordPart();
    ++at_;
    if (unit == u'/' || unit == u'-') {
      if (!after_component_) return false;
      after_component_ = false;
      separator_open_ = true;
      return true;
    }
    if (unit == u',' && after_component_) {
      after_component_ = false;
      has_comma_ = true;
      return true;
    }
    return false;
  }

  bool ReadNumberPart() {
    Number number;
    if (!TakeNumber(number)) return false;
    if (TakeUnit(u':')) return ReadTime(number.value);
    const std::size_t behind = at_;
    if (ReadHalf()) return SetTime(number.value, 0, 0);
    at_ = behind;
    if (count_ == 3) return false;
    numbers_[count_++] = number;
    CloseComponent();
    return true;
  }

  bool ReadWordPart() {
    const Text word = ReadWord();
    if (const int month = MonthOf(word)) {
      if (month_ != 0) return false;
      month_ = month;
      CloseComponent();
      return true;
    }
    if (!IsWeekday(word)) return false;
    after_component_ = true;
    return true;
  }

  bool TakeNumber(Number& number) {
    for (; at_ < text_.size() && IsDigit(text_[at_]); ++at_) {
      if (++number.digits > 4) return false;
      number.value = number.value * 10 + (text_[at_] - u'0');
    }
    return number.digits > 0;
  }

  Text ReadWord() {
    const std::size_t start = at_;
    while (at_ < text_.size() && IsAsciiLetter(text_[at_])) ++at_;
    return ToLower(text_.substr(start, at_ - start));
  }

  bool ReadTime(int hour) {
    Number minute;
    Number second;
    if (!SkipBlanks() || !TakeNumber(minute)) return false;
    if (TakeUnit(u':') && (!SkipBlanks() || !TakeNumber(second))) return false;
    const std::size_t behind = at_;
    if (!ReadHalf()) at_ = behind;
    return SetTime(hour, minute.value, second.value);
  }

  // The half of the day; false where none stands here.
  bool ReadHalf() {
    if (!SkipBlanks()) return false;
    const Text word = ReadWord();
    if (word == u"am" || word == u"a") {
      half_ = Half::kMorning;
    } else if (word == u"pm" || word == u"p") {
      half_ = Half::kAfternoon;
    } else {
      return false;
    }
    return true;
  }

  bool SetTime(int hour, int minute, int second) {
    if (has_time_ || separator_open_) return false;
    has_time_ = true;
    if (half_ == Half::kMorning && hour == 12) hour = 0;
    if (half_ == Half::kAfternoon && hour < 12) hour += 12;
    moment_.hour = hour;
    moment_.minute = minute;
    moment_.second = second;
    after_component_ = false;
    return true;
  }

  void CloseComponent() {
    after_component_ = true;
    separator_open_ = false;
  }

  bool AssignDate() { return month_ != 0 ? AssignWithMonthName() : !has_comma_ && AssignNumbers(); }

  bool AssignWithMonthName() {
    if (count_ == 0 || count_ > 2) return false;
    const bool year_first = numbers_[0].CanOnlyBeYear();
    if (count_ == 1 && !year_first) return false;  // a day of which year?
    moment_.month = month_;
    moment_.day = count_ == 1 ? 1 : numbers_[year_first ? 1 : 0].value;
    SetYear(numbers_[count_ == 1 || year_first ? 0 : 1]);
    return true;
  }

  bool AssignNumbers() {
    const bool year_first = numbers_[0].CanOnlyBeYear();
    if (count_ == 2) {
      if (year_first == numbers_[1].CanOnlyBeYear()) return false;
      moment_.month = numbers_[year_first ? 1 : 0].value;
      moment_.day = 1;
      SetYear(numbers_[year_first ? 0 : 1]);
      return true;
    }
    if (count_ != 3) return false;
    moment_.month = numbers_[year_first ? 1 : 0].value;
    moment_.day = numbers_[year_first ? 2 : 1].value;
    if (moment_.month > 12) std::swap(moment_.month, moment_.day);
    SetYear(numbers_[year_first ? 0 : 2]);
    return true;
  }

  // Two digits mean 1930 to 2029.
  void SetYear(Number number) {
    moment_.year = number.digits > 2    ? number.value
                   : number.value >= 30 ? 1900 + number.value
                                        : 2000 + number.value;
  }

  enum class Half { kNone, kMorning, kAfternoon };

  TextView text_;
  std::size_t at_ = 0;
  Number numbers_[3];
  std::size_t count_ = 0;
  int month_ = 0;
  Half half_ = Half::kNone;
  bool has_time_ = false;
  bool has_comma_ = false;
  bool after_component_ = false;
  bool separator_open_ = false;
  CivilTime moment_;
};

Date DateOfNumber(double days) {
  constexpr double kBelowFirst = -657435;
  constexpr double kBehindLast = 2958466;
  if (!(days > kBelowFirst && days < kBehindLast)) RaiseOverflow();
  return {days};
}

void AppendNumber(Text& text, int number, int least_digits = 1) {
  const Text digits = ToText(std::int64_t{number});
  for (auto i = static_cast<int>(digits.size()); i < least_digits; ++i) text += u'0';
  text += digits;
}

// One converter a target: `From` has an overload for every type of value that converts.

template <class Int>
struct ToWhole {
  using Result = Int;

  static Int Checked(std::int64_t value) {
    if (!std::in_range<Int>(value)) RaiseOverflow();
    return static_cast<Int>(value);
  }
  static Int From(bool value) { return static_cast<Int>(WholeOf(value)); }
  template <std::integral T>
  static Int From(T value) {
    return Checked(value);
  }
  static Int From(double value) {
    const double rounded = std::nearbyint(value);
    const double end = std::ldexp(1.0, std::numeric_limits<Int>::digits);
    if (!(rounded >= static_cast<double>(std::numeric_limits<Int>::min()) && rounded < end)) {
      RaiseOverflow();
    }
    return static_cast<Int>(rounded);
  }
  static Int From(Currency value) { return Checked(WholePart(value)); }
  static Int From(Date value) { return From(value.days); }
  static Int From(const Text& text) {
    const ReadNumber number = ParseNumber(text);
    if (!number.is_bits) return Checked(AsScaled(number, 0));
    if (number.bits > std::numeric_limits<std::make_unsigned_t<Int>>::max()) RaiseOverflow();
    return static_cast<Int>(number.bits);
  }
};

struct ToBooleanValue {
  using Result = bool;

  template <std::integral T>
  static bool From(T value) {
    return value != 0;
  }
  static bool From(double value) { return value != 0; }
  static bool From(Currency value) { return value.scaled != 0; }
  static bool From(Date value) { return value.days != 0; }
  static bool From(const Text& text) {
    const TextView word = TextView(text).substr(0, text.find(u'\0'));
    if (EqualNoCase(word, u"True") || EqualNoCase(word, u"#TRUE#")) return true;
    if (EqualNoCase(word, u"False") || EqualNoCase(word, u"#FALSE#")) return false;
    return AsDouble(ParseNumber(word)) != 0;
  }
};

struct ToDoubleValue {
  using Result = double;

  template <std::integral T>
  static double From(T value) {
    return static_cast<double>(WholeOf(value));
  }
  static double From(double value) { return value; }
  static double From(Currency value) {
    return static_cast<double>(value.scaled) / Currency::kScale;
  }
  static double From(Date value) { return value.days; }
  static double From(const Text& text) { return AsDouble(ParseNumber(text)); }
};

struct ToCurrencyValue {
  using Result = Currency;

  template <std::integral T>
  static Currency From(T value) {
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max() / Currency::kScale;
    const std::int64_t whole = WholeOf(value);
    if (whole > kMost || whole < -kMost) RaiseOverflow();
    return {whole * Currency::kScale};
  }
  static Currency From(double value) {
    // Stored as a double here and now: the registers of 32-bit programs would keep more of it.
    const volatile double stored = value * Currency::kScale;
    const double product = stored;
    double rounded = std::nearbyint(product);
    // What looks like a half may lie beside it: the product is short of its last bits.
    const double lost = std::fma(value, Currency::kScale, -product);
    if (std::abs(product - std::trunc(product)) == 0.5 && lost != 0) {
      rounded = lost > 0 ? std::ceil(product) : std::floor(product);
    }
    return {ToWhole<std::int64_t>::From(rounded)};
  }
  static Currency From(Currency value) { return value; }
  static Currency From(Date value) { return From(value.days); }
  static Currency From(const Text& text) {
    constexpr int kDecimals = 4;
    const ReadNumber number = ParseNumber(text);
    if (number.is_bits) return From(Signed(number.bits, false));
    return {AsScaled(number, kDecimals)};
  }
};

struct ToDateValue {
  using Result = Date;

  template <std::integral T>
  static Date From(T value) {
    return DateOfNumber(static_cast<double>(WholeOf(value)));
  }
  static Date From(double value) { return DateOfNumber(value); }
  static Date From(Currency value) { return DateOfNumber(ToDoubleValue::From(value)); }
  static Date From(Date value) { return value; }
  static Date From(const Text& text) {
    if (const std::optional<Date> date = DateReader(Readable(text)).Read()) return *date;
    return DateOfNumber(AsDouble(ParseNumber(text)));
  }
};

struct ToTextValue {
  using Result = Text;

  static Text From(bool value) { return value ? u"True" : u"False"; }
  template <std::integral T>
  static Text From(T value) {
    return ToText(static_cast<std::int64_t>(value));
  }
  static Text From(double value) {
    if (value == 0) return u"0";  // of either sign
    if (std::isnan(value)) return u"-1.#IND";
    if (std::isinf(value)) return value < 0 ? u"-1.#INF" : u"1.#INF";
    constexpr int kSignificantDigits = 15;
    char digits[32];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), value,
                                   std::chars_format::general, kSignificantDigits);
    Text text(digits, end.ptr);
    std::ranges::replace(text, u'e', u'E');
    return text;
  }
  static Text From(Currency value) {
    const bool negative = value.scaled < 0;
    const auto pattern = static_cast<std::uint64_t>(value.scaled);
    std::string digits = std::to_string(negative ? 0 - pattern : pattern);
    digits.insert(0, std::string(digits.size() < 5 ? 5 - digits.size() : 0, '0'));
    digits.insert(digits.size() - 4, 1, '.');
    digits.erase(digits.find_last_not_of('0') + 1);
    if (digits.back() == '.') digits.pop_back();
    return (negative ? u"-" : u"") + Text(digits.begin(), digits.end());
  }
  static Text From(Date value) {
    const std::optional<CivilTime> moment = ToCivilTime(value);
    if (!moment) RaiseOverflow();
    const bool on_day_zero = moment->year == 1899 && moment->month == 12 && moment->day == 30;
    const bool at_midnight = moment->hour == 0 && moment->minute == 0 && moment->second == 0;
    Text text;
    if (!on_day_zero) {
      AppendNumber(text, moment->month);
      text += u'/';
      AppendNumber(text, moment->day);
      text += u'/';
      AppendNumber(text, moment->year);
    }
    if (at_midnight && !on_day_zero) return text;
    if (!on_day_zero) text += u' ';
    AppendNumber(text, moment->hour % 12 == 0 ? 12 : moment->hour % 12);
    text += u':';
    AppendNumber(text, moment->minute, 2);
    text += u':';
    AppendNumber(text, moment->second, 2);
    return text += moment->hour < 12 ? u" AM" : u" PM";
  }
  static Text From(const Text& text) { return text; }
};

// The value that stands for an object, its own objects followed some way.
Variant PlainValueOf(Ref<Object> object) {
  constexpr int kMostSteps = 16;
  for (int step = 0; object && step < kMostSteps; ++step) {
    Variant value;
    if (!object->DefaultValue(value)) break;
    value = value.Dereferenced();
    const Ref<Object>* next = value.If<Ref<Object>>();
    if (!next) return value;
    object = *next;
  }
  RaiseMismatch();
}

template <class Converter>
typename Converter::Result Convert(const Variant& value);

template <class Converter, class T>
typename Converter::Result ConvertAlternative(const T& value) {
  if constexpr (std::is_same_v<T, std::monostate>) {
    return {};
  } else if constexpr (std::is_same_v<T, Null>) {
    Raise(runtime_error::kInvalidUseOfNull);
  } else if constexpr (std::is_same_v<T, Ref<Object>>) {
    return Convert<Converter>(PlainValueOf(value));
  } else if constexpr (std::is_same_v<T, Reference>) {
    return std::visit(
        []<class V>(const V* variable) {
          if constexpr (std::is_same_v<V, Variant>) {
            return Convert<Converter>(*variable);
          } else {
            return ConvertAlternative<Converter>(*variable);
          }
        },
        value);
  } else if constexpr (requires { Converter::From(value); }) {
    return Converter::From(value);
  } else {
    RaiseMismatch();
  }
}

template <class Converter>
typename Converter::Result Convert(const Variant& value) {
  return std::visit([](const auto& held) { return ConvertAlternative<Converter>(held); },
                    value.Get());
}

}  // namespace

bool ToBoolean(const Variant& value) { return Convert<ToBooleanValue>(value); }
std::uint8_t ToByte(const Variant& value) { return Convert<ToWhole<std::uint8_t>>(value); }
std::int16_t ToInteger(const Variant& value) { return Convert<ToWhole<std::int16_t>>(value); }
std::int32_t ToLong(const Variant& value) { return Convert<ToWhole<std::int32_t>>(value); }
std::int64_t ToLongLong(const Variant& value) { return Convert<ToWhole<std::int64_t>>(value); }
double ToDouble(const Variant& value) { return Convert<ToDoubleValue>(value); }
Currency ToCurrency(const Variant& value) { return Convert<ToCurrencyValue>(value); }
Date ToDate(const Variant& value) { return Convert<ToDateValue>(value); }
Text ToText(const Variant& value) { return Convert<ToTextValue>(value); }

Ref<Object> ToObject(const Variant& value) {
  const Variant plain = value.Dereferenced();
  const Ref<Object>* object = plain.If<Ref<Object>>();
  if (!object) RaiseMismatch();
  return *object;
}

Variant ConvertTo(const Variant& value, VariantType type) {
  switch (type) {
    case VariantType::kBoolean:
      return ToBoolean(value);
    case VariantType::kByte:
      return ToByte(value);
    case VariantType::kInteger:
      return ToInteger(value);
    case VariantType::kLong:
      return ToLong(value);
    case VariantType::kLongLong:
      return ToLongLong(value);
    case VariantType::kDouble:
      return ToDouble(value);
    case VariantType::kCurrency:
      return ToCurrency(value);
    case VariantType::kDate:
      return ToDate(value);
    case VariantType::kText:
      return ToText(value);
    case VariantType::kObject:
      return ToObject(value);
    case VariantType::kEmpty:
    case VariantType::kNull:
    case VariantType::kStatus:
    case VariantType::kReference:
    case VariantType::kByteArray:
    case VariantType::kLongArray:
    case VariantType::kTextArray:
    case VariantType::kVariantArray:
      break;
  }
  Variant plain = value.Dereferenced();
  if (plain.Type() != type) RaiseMismatch();
  return plain;
}

}  // namespace veldmark
