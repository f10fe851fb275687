// Texts into numbers, dates and Booleans. Whatever converts must come back from its own text, and
// nothing but the conversions' own errors may be raised.

#include <cmath>

#include "FuzzTarget.h"
#include "apartment/Conversions.h"
#include "automation/Conversion.h"

namespace {

using namespace veldmark;

template <class Conversion>
void Try(Conversion&& conversion) {
  veldmark::Try({runtime_error::kTypeMismatch, runtime_error::kOverflow}, conversion);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  for (const Text& input : {ByteArrayToString({data, size}), Text(data, data + size)}) {
    const Variant value(input);
    Try([&] { ToBoolean(value); });
    Try([&] { ToByte(value); });
    Try([&] { ToInteger(value); });
    Try([&] { Require(ToLong(Variant(ToText(Variant(ToLong(value))))) == ToLong(value)); });
    Try([&] {
      Require(ToLongLong(Variant(ToText(Variant(ToLongLong(value))))) == ToLongLong(value));
    });
    Try([&] {
      Require(ToCurrency(Variant(ToText(Variant(ToCurrency(value))))) == ToCurrency(value));
    });
    double number = 0;
    Try([&] {
      number = ToDouble(value);
      Require(std::isfinite(number));
    });
    constexpr double kNearlyAll = 1.7976931348623e308;  // rounding to 15 digits leads no further
    if (std::abs(number) < kNearlyAll) {
      const double again = ToDouble(Variant(ToText(Variant(number))));
      Require(std::abs(again - number) <= std::abs(number) * 1e-14 + 1e-320);
    }
    Try([&] {
      const Date date = ToDate(value);
      constexpr double kSecond = 1.0 / 86400;
      constexpr double kLastSecond = 2958466 - kSecond;
      if (date.days < kLastSecond && date.days > -657434) {
        const Date again = ToDate(Variant(ToText(Variant(date))));
        // Below day zero a fraction that rounds up to a day counts the other way.
        Require(std::abs(again.days - date.days) <= (date.days < 0 ? 2 : kSecond));
      }
    });
  }
  return 0;
}
