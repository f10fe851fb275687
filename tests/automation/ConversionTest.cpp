#include "automation/Conversion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <concepts>
#include <cstdlib>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "automation/CivilTime.h"
#include "support/ErrorOf.h"

namespace veldmark {
namespace {

constexpr std::int64_t kMost64 = std::numeric_limits<std::int64_t>::max();

/// An object that another value stands for.
class Standing : public Object {
 public:
  explicit Standing(std::optional<Variant> value) : value(std::move(value)) {}
  const Interface& GetInterface() const override { std::abort(); }
  bool DefaultValue(Variant& result) override {
    if (value) result = *value;
    return value.has_value();
  }
  std::optional<Variant> value;
};

/// What a value becomes as the type of `expected`; or the error on the way to that type.
struct Case {
  Variant value;
  Variant expected;
  std::int32_t error = 0;
};

std::string Show(const Variant& value) {
  std::string text = "alternative " + std::to_string(static_cast<int>(value.Type())) + " ";
  ErrorOf([&] { text += ToUtf8(ToText(value)); });
  return text;
}

template <std::same_as<Case>... Cases>
void Check(const Cases&... cases) {
  for (const Case& c : {cases...}) {
    SCOPED_TRACE(Show(c.value));
    const auto convert = [&] {
      const Variant converted = ConvertTo(c.value, c.expected.Type());
      EXPECT_TRUE(converted == c.expected) << Show(converted) << " for " << Show(c.expected);
    };
    EXPECT_EQ(ErrorOf(convert), c.error);
  }
}

template <class... Values>
std::vector<TextView> Texts(const Values&... values) {
  return {values...};
}

std::int32_t operator""_l(unsigned long long value) { return static_cast<std::int32_t>(value); }

TEST(Conversion, WholeNumbersRoundHalfToEvenAndStayInTheirRange) {
  Check(Case{0.5, 0_l}, Case{1.5, 2_l}, Case{2.5, 2_l}, Case{-2.5, -2},
        Case{2147483647.4, 2147483647_l}, Case{2147483647.5, 0_l, 6},
        Case{-2147483648.5, std::numeric_limits<std::int32_t>::min()}, Case{-2147483649.0, 0_l, 6},
        Case{std::nan(""), 0_l, 6}, Case{-0.5, std::uint8_t{0}}, Case{255.5, std::uint8_t{0}, 6},
        Case{-1, std::uint8_t{0}, 6}, Case{32768, std::int16_t{0}, 6},
        Case{true, std::uint8_t{255}}, Case{true, std::int16_t{-1}}, Case{true, -1.0},
        Case{9223372036854775807.0, std::int64_t{0}, 6},
        Case{-9223372036854775808.0, std::numeric_limits<std::int64_t>::min()},
        Case{Currency{25000}, 2_l}, Case{Currency{35000}, 4_l}, Case{Currency{25001}, 3_l},
        Case{Currency{-25000}, -2}, Case{Currency{-35000}, -4}, Case{Currency{-35001}, -4},
        Case{Date{46348.5}, 46348_l}, Case{Variant(), 0_l}, Case{Null{}, 0_l, 94},
        Case{Status{5}, 0_l, 13}, Case{Variant::Missing(), u"", 13}, Case{ByteArray(), u"", 13});
}

TEST(Conversion, TextsReadAsNumbersTheWayTheyAreWritten) {
  Check(Case{u"15", 15_l}, Case{u" +1.5e3 ", 1500_l}, Case{u"1e+3", 1000.0},
        Case{u"\t\u00A0-7\r", -7}, Case{u"- 5", -5}, Case{u"5-", -5}, Case{u"(5)", -5},
        Case{u"$5", 5_l}, Case{u"1,234", 1234_l}, Case{u"1,2,3.5", 123.5}, Case{u".5", 0.5},
        Case{u"5.", 5.0}, Case{u"-0", 0.0}, Case{u"1e-400", 0.0},
        Case{u"0.0000e9999999999999999999", 0.0}, Case{u"1e400", 0.0, 6},
        Case{Text(u"5\0x", 3), 5_l}, Case{u"2.5", 2_l}, Case{u"3.5", 4_l},
        Case{u"2.50000000000000000000001", 3_l}, Case{u"9223372036854775807", kMost64},
        Case{u"9223372036854775807.4", kMost64}, Case{u"9223372036854775807.5", std::int64_t{0}, 6},
        Case{u"-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
        Case{u"-9223372036854775809", std::int64_t{0}, 6}, Case{u"1e5", std::int16_t{0}, 6},
        Case{u"2147483648", 0_l, 6}, Case{Text(40000, u'9'), 0.0, 6},
        Case{u"0." + Text(40000, u'3'), 1.0 / 3}, Case{u"&HFF", 255_l},
        Case{u"&hffff", std::int16_t{-1}}, Case{u"&HFFFF", 65535_l}, Case{u"&HFFFFFFFF", -1},
        Case{u"&HFFFFFFFF", 4294967295.0}, Case{u"&HFFFFFFFFFFFFFFFF", std::int64_t{-1}},
        Case{u"&H10000000000000000", std::int64_t{0}, 6}, Case{u"&H10000", std::int16_t{0}, 6},
        Case{u"&O17", 15_l}, Case{u"&O18", 0_l, 13}, Case{u"&H", 0_l, 13});
  for (const char16_t* text :
       {u"", u" ", u".", u",5", u"1e", u"1e+", u"1e$", u"--5", u"(5", u"5)", u"0x10", u"1 2",
        u"1.2.3", u"$$5", u"-5-", u"five", u"\u0665", u"1d3"}) {
    Check(Case{text, 0.0, 13}, Case{text, 0_l, 13});
  }
}

TEST(Conversion, CurrencyKeepsFourExactDecimals) {
  Check(Case{u"1.00005", Currency{10000}}, Case{u"1.00015", Currency{10002}},
        Case{u"1.000050000000000000001", Currency{10001}},
        Case{u"922337203685477.5807", Currency{kMost64}},
        Case{u"-922337203685477.5808", Currency{std::numeric_limits<std::int64_t>::min()}},
        Case{u"922337203685477.58075", Currency{}, 6}, Case{u"&H10", Currency{160000}},
        // The nearest double lies above the half in one, and below in the other.
        Case{1.00005, Currency{10001}}, Case{0.00015, Currency{1}}, Case{0.5 / 10000, Currency{1}},
        Case{0.03125, Currency{312}}, Case{1e15, Currency{}, 6}, Case{kMost64, Currency{}, 6},
        Case{true, Currency{-10000}}, Case{Currency{123400}, u"12.34"},
        Case{Currency{-1}, u"-0.0001"}, Case{Currency{120000}, u"12"},
        Case{Currency{std::numeric_limits<std::int64_t>::min()}, u"-922337203685477.5808"},
        Case{Currency{5000}, 0.5});
}

TEST(Conversion, NumbersReadAsTextsOfFifteenDigits) {
  Check(Case{0.1 + 0.2, u"0.3"}, Case{1.0 / 3, u"0.333333333333333"},
        Case{2.0 / 3, u"0.666666666666667"}, Case{1e14, u"100000000000000"}, Case{1e15, u"1E+15"},
        Case{999999999999999.0, u"999999999999999"},
        Case{123456789012345678.0, u"1.23456789012346E+17"}, Case{0.0001, u"0.0001"},
        Case{0.00001, u"1E-05"}, Case{-0.00000015, u"-1.5E-07"}, Case{1e300, u"1E+300"},
        Case{1234567.891, u"1234567.891"}, Case{-0.0, u"0"}, Case{HUGE_VAL, u"1.#INF"},
        Case{-HUGE_VAL, u"-1.#INF"}, Case{std::nan(""), u"-1.#IND"},
        Case{std::uint8_t{200}, u"200"},
        Case{std::numeric_limits<std::int64_t>::min(), u"-9223372036854775808"},
        Case{true, u"True"}, Case{Variant(), u""}, Case{Null{}, u"", 94});
}

TEST(Conversion, BooleansAreWordsOrNumbers) {
  Check(Case{u"tRUE", true}, Case{u"FALSE", false}, Case{u"#true#", true}, Case{u"0.1", true},
        Case{u"0", false}, Case{u"&H0", false}, Case{u" True", false, 13}, Case{u"yes", false, 13},
        Case{u"", false, 13}, Case{0.4, true}, Case{Currency{1}, true}, Case{Date{0}, false},
        Case{Variant(), false});
}

TEST(Conversion, DatesReadAsTextsAndBack) {
  const Date both = MakeDate(2026, 11, 22, 21, 17, 5);
  const Date day = MakeDate(2026, 11, 22);
  Check(Case{both, u"11/22/2026 9:17:05 PM"}, Case{day, u"11/22/2026"},
        Case{MakeDate(2026, 12, 30), u"12/30/2026"},
        Case{MakeDate(2026, 11, 22, 0, 5), u"11/22/2026 12:05:00 AM"},
        Case{MakeDate(2026, 11, 22, 0, 0, 5), u"11/22/2026 12:00:05 AM"},
        Case{Date{0}, u"12:00:00 AM"}, Case{Date{0.5}, u"12:00:00 PM"},
        Case{Date{-1.25}, u"12/29/1899 6:00:00 AM"}, Case{Date{46347.999999}, u"11/22/2026"},
        Case{Date{2958465.999999}, u"", 6}, Case{u"2026-11-22", day},
        Case{u"2026-11-22 21:17:05", both}, Case{u"21:17:05 2026-11-22", both},
        Case{u"11/22/2026 9:17:05 PM", both}, Case{u"22/11/2026", day}, Case{u"2026/22/11", day},
        Case{u"2026 Nov 22", day}, Case{u"2026/11", MakeDate(2026, 11, 1)}, Case{u"11-22-26", day},
        Case{u"Nov 22, 2026", day}, Case{u"22 november 2026", day},
        Case{u"Sunday, November 22, 2026", day}, Case{u"11/2026", MakeDate(2026, 11, 1)},
        Case{u"Nov 2026", MakeDate(2026, 11, 1)}, Case{u"1/2/29", MakeDate(2029, 1, 2)},
        Case{u"1/2/30", MakeDate(1930, 1, 2)}, Case{u"1/1/100", Date{-657434}},
        Case{u"9 PM", Date{0.875}}, Case{u"9:17 pm", MakeDate(1899, 12, 30, 21, 17)},
        Case{u"12:30 AM", MakeDate(1899, 12, 30, 0, 30)}, Case{u"12 p", Date{0.5}},
        Case{u"36526.5", Date{36526.5}}, Case{-657434.5, Date{-657434.5}},
        Case{-657435.0, Date{}, 6}, Case{2958466, Date{}, 6}, Case{true, Date{-1}});
  for (const TextView text :
       Texts(u"", u"2/29/2023", u"2026-13-32", u"24:00", u"9:60", u"1:2:3:4", u"9:17 PM AM",
             u"9:17 10:18", u"11/22/9:17 2026", u"2026-11-", u"-2026-11-22", u"2026--11-22",
             u"11 Nov 22 2026", u"Nov Dec 2026", u"Nov", u"/", u":", u"1/2/3/4", u"11/22",
             u"2026-11-22T21:17:05", u"12345/1/1", u"0/1/2026", u"noon", u"No 22 2026",
             u"Su 11/22/2026", u"11, 22, 2026", u",Nov 22 2026", u"Nov 22", u"2026/2027")) {
    Check(Case{text, Date{}, 13});
  }
}

TEST(Conversion, MomentsOutsideTheCalendarAreRefused) {
  EXPECT_EQ(MakeDate(1899, 12, 29, 6).days, -1.25);
  EXPECT_EQ(MakeDate(9999, 12, 31).days, 2958465);
  const int wrong[][6] = {{99, 1, 1, 0, 0, 0},    {10000, 1, 1, 0, 0, 0}, {2023, 2, 29, 0, 0, 0},
                          {2023, 0, 1, 0, 0, 0},  {2023, 1, 1, 24, 0, 0}, {2023, 1, 1, -1, 0, 0},
                          {2023, 1, 1, 0, 0, 60}, {2023, 1, 1, 0, 0, -1}, {2023, 1, 1, 0, -1, 0}};
  for (const auto& w : wrong) {
    EXPECT_THROW(MakeDate(w[0], w[1], w[2], w[3], w[4], w[5]), AutomationError) << w[0];
  }
  EXPECT_EQ(AddSeconds({-1.75}, 43200).days, 0.25);  // from 18:00 on the day before day zero
  EXPECT_THROW(AddSeconds({2958465}, 86400), AutomationError);
  for (const std::int64_t far : {kMost64, -kMost64}) {
    EXPECT_THROW(AddSeconds({0}, far), AutomationError);
  }
}

TEST(Conversion, ReferencesAndObjectsGiveWhatStandsBehindThem) {
  std::int32_t number = 7;
  Variant holder = Variant::ByReference(number);
  const Ref<Object> plain = Make<Standing>(Variant(u"12"));
  const Ref<Object> nested = Make<Standing>(Variant(plain));
  const Ref<Object> mute = Make<Standing>(std::nullopt);
  const auto endless = Make<Standing>(Variant());
  endless->value = Variant(Ref<Object>(endless));
  Check(Case{Variant::ByReference(holder), u"7"}, Case{plain, 12_l}, Case{nested, u"12"},
        Case{plain, Variant(plain)}, Case{mute, u"", 13}, Case{Ref<Object>(endless), 0_l, 13},
        Case{Ref<Object>(), 0_l, 13}, Case{5, Ref<Object>(), 13},
        Case{Variant(), Ref<Object>(), 13}, Case{TextArray({u"a"}), Variant(TextArray({u"a"}))},
        Case{TextArray({u"a"}), ByteArray(), 13}, Case{5, Variant(), 13});
  endless->value.reset();

  holder.Assign(u"41");
  EXPECT_EQ(number, 41);
  EXPECT_THROW(holder.Assign(u"forty"), AutomationError);
  EXPECT_EQ(number, 41);
}

}  // namespace
}  // namespace veldmark
