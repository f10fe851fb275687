#pragma once

#include "automation/Variant.h"

namespace veldmark {

/// The automation conversions between values. A by-reference value is read through, an object gives
/// its default value, an empty variant is zero or an empty text. Each raises 13 where the value has
/// no such form, 6 where it is out of range, 94 for Null.

/// Zero is False. A text is "True" or "False" in any case, or a number.
bool ToBoolean(const Variant& value);
/// Whole numbers round half to even.
std::uint8_t ToByte(const Variant& value);
std::int16_t ToInteger(const Variant& value);
std::int32_t ToLong(const Variant& value);
std::int64_t ToLongLong(const Variant& value);
/// A text is a decimal number, with blanks around it, a sign and an exponent, or "&H" and "&O"
/// digits.
double ToDouble(const Variant& value);
/// Rounds to four decimals, half to even.
Currency ToCurrency(const Variant& value);
/// A text is a date ("2026-11-22", "11/22/2026"), a time ("21:17:05", "9:17 PM") or both.
Date ToDate(const Variant& value);
/// A number has up to 15 significant digits; a date reads "11/22/2026 9:17:05 PM", a Boolean "True"
/// or "False".
Text ToText(const Variant& value);
/// Nothing for an object variant that is Nothing; anything but an object raises 13.
Ref<Object> ToObject(const Variant& value);

/// The value as another type, by the conversions above. Arrays convert only to their own type.
Variant ConvertTo(const Variant& value, VariantType type);

/// `Date` of a civil moment; month and day outside their range raise 5, a year outside 100 to 9999
/// too.
Date MakeDate(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);

}  // namespace veldmark
