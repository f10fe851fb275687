#include "apartment/BitsHelper.h"

#include <cmath>
#include <limits>

#include "automation/Conversion.h"
#include "automation/Error.h"

namespace veldmark {
namespace {

constexpr double kTwoToThe32 = 4294967296.0;
constexpr std::int16_t kSignBit = 31;

double PowerOfTwo(std::int32_t exponent) {
  const double power = std::ldexp(1.0, exponent);
  if (std::isinf(power)) Raise(runtime_error::kOverflow);
  return power;
}

}  // namespace

std::int16_t GetHiWord(std::int32_t value) { return static_cast<std::int16_t>(value >> 16); }

std::int16_t GetLoWord(std::int32_t value) { return static_cast<std::int16_t>(value); }

bool TestBit(std::int32_t value, std::int16_t bit) {
  if (bit == kSignBit) return value < 0;
  return (value & ToLong(PowerOfTwo(bit))) != 0;
}

void ClearBit(std::int32_t& value, std::int16_t bit) {
  if (!TestBit(value, bit)) return;
  if (bit != kSignBit) {
    value -= std::int32_t{1} << bit;
    return;
  }
  if (value == std::numeric_limits<std::int32_t>::min()) Raise(runtime_error::kOverflow);
  value = -value;
}

Text UnsignedLongToText(std::int32_t value) {
  return ToText(std::int64_t{static_cast<std::uint32_t>(value)});
}

std::int32_t ShiftLeft(std::int32_t value, std::int32_t bit) {
  return ToLong(value * PowerOfTwo(bit));
}

std::int32_t DoubleToUnsignedLong(double value) {
  if (!(value >= 0 && value < kTwoToThe32)) Raise(runtime_error::kOverflow);
  return ToLong(value > std::numeric_limits<std::int32_t>::max() ? value - kTwoToThe32 : value);
}

double UnsignedLongToDouble(std::int32_t value) { return static_cast<std::uint32_t>(value); }

}  // namespace veldmark
