#pragma once

#include <cstdint>
#include <optional>

#include "platform/operations/System.h"

namespace veldmark::simulated {

// Times as the platform counts them: 100-nanosecond intervals since 1601-01-01.
using Ticks = std::uint64_t;
inline constexpr Ticks kTicksPerMillisecond = 10'000;
inline constexpr Ticks kTicksPerSecond = 10'000'000;
// 1970-01-01, from which others count seconds.
inline constexpr Ticks kUnixStart = 116'444'736'000'000'000;

inline DWORD UnixTimeOf(Ticks ticks) {
  return static_cast<DWORD>((ticks - kUnixStart) / kTicksPerSecond);
}

FILETIME ToFileTime(Ticks ticks);
Ticks ToTicks(const FILETIME& time);

// Nothing for 0x8000000000000000 or more.
std::optional<SYSTEMTIME> ToSystemTime(Ticks ticks);

// Nothing for a date or time that doesn't exist, or a year outside 1601 to 30827.
std::optional<Ticks> ToTicks(const SYSTEMTIME& time);

// An automation date, rounded to whole seconds; nothing outside the years 100 to 9999.
std::optional<SYSTEMTIME> DateToSystemTime(double date);

// Fields past their range carry over (day 30 of February, hour 24, month 0), as the automation
// runtime has it; nothing for a month over 12, a day over 31 or a year over 9999. Milliseconds are
// dropped.
std::optional<double> SystemTimeToDate(const SYSTEMTIME& time);

}  // namespace veldmark::simulated
