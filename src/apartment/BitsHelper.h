#pragma once

#include <cstdint>

#include "automation/Text.h"

namespace veldmark {

/// Unsigned arithmetic on the automation model's signed integers. What looks like a flaw here is
/// what callers have always received.

/// The upper and the lower two bytes, signed.
std::int16_t GetHiWord(std::int32_t value);
std::int16_t GetLoWord(std::int32_t value);

/// True if bit `bit` (0 to 31) of `value` is set. A greater bit raises 6, one below 0 is never set.
bool TestBit(std::int32_t value, std::int16_t bit);
/// Clears a bit that is set. Bit 31 is not cleared: the value becomes its absolute value, which for
/// 0x80000000 raises 6.
void ClearBit(std::int32_t& value, std::int16_t bit);

/// The decimal digits of the 32 bits taken as unsigned.
Text UnsignedLongToText(std::int32_t value);
/// `value` times 2 to the power `bit`, rounded half to even; raises 6 beyond 32 bits.
std::int32_t ShiftLeft(std::int32_t value, std::int32_t bit);
/// The 32 bits of an unsigned number. Raises 6 below 0, from 2 to the power 32 on and for what is
/// no number. Fractions round half to even after the reduction to a signed value.
std::int32_t DoubleToUnsignedLong(double value);
/// The number that the 32 bits mean, taken as unsigned.
double UnsignedLongToDouble(std::int32_t value);

}  // namespace veldmark
