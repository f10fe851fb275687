#include "platform/simulated/estate/Calendar.h"

#include <cmath>

namespace veldmark::simulated {
namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr Ticks kTicksPerDay = kSecondsPerDay * kTicksPerSecond;

struct CivilDate {
  std::int64_t year;
  int month;
  int day;
};

// Days since 1601-01-01 of a day in the proleptic Gregorian calendar. March begins the year of the
// count, so that the leap day is its last.
constexpr std::int64_t DayNumber(const CivilDate& date) {
  const std::int64_t year = date.month <= 2 ? date.year - 1 : date.year;
  const std::int64_t era = (year >= 0 ? year : year - 399) / 400;
  const std::int64_t year_of_era = year - era * 400;
  const std::int64_t month = (date.month + 9) % 12;
  const std::int64_t day_of_year = (153 * month + 2) / 5 + date.day - 1;
  const std::int64_t day_of_era =
      year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year;
  return era * 146097 + day_of_era - 584694;
}

CivilDate DateOfDay(std::int64_t day_number) {
  const std::int64_t shifted = day_number + 584694;
  const std::int64_t era = (shifted >= 0 ? shifted : shifted - 146096) / 146097;
  const std::int64_t day_of_era = shifted - era * 146097;
  const std::int64_t year_of_era =
      (day_of_era - day_of_era / 1460 + day_of_era / 36524 - day_of_era / 146096) / 365;
  const std::int64_t day_of_year =
      day_of_era - (365 * year_of_era + year_of_era / 4 - year_of_era / 100);
  const std::int64_t month = (5 * day_of_year + 2) / 153;
  const int civil_month = static_cast<int>(month < 10 ? month + 3 : month - 9);
  return {.year = year_of_era + era * 400 + (civil_month <= 2 ? 1 : 0),
          .month = civil_month,
          .day = static_cast<int>(day_of_year - (153 * month + 2) / 5 + 1)};
}

// 1601-01-01 was a Monday.
WORD DayOfWeek(std::int64_t day_number) {
  return static_cast<WORD>(((day_number + 1) % 7 + 7) % 7);
}

SYSTEMTIME Compose(std::int64_t day_number, std::int64_t second, WORD milliseconds) {
  const CivilDate date = DateOfDay(day_number);
  return {.wYear = static_cast<WORD>(date.year),
          .wMonth = static_cast<WORD>(date.month),
          .wDayOfWeek = DayOfWeek(day_number),
          .wDay = static_cast<WORD>(date.day),
          .wHour = static_cast<WORD>(second / 3600),
          .wMinute = static_cast<WORD>(second / 60 % 60),
          .wSecond = static_cast<WORD>(second % 60),
          .wMilliseconds = milliseconds};
}

// Day 0 of the automation calendar.
constexpr std::int64_t kAutomationEpoch = DayNumber({.year = 1899, .month = 12, .day = 30});
constexpr double kFirstDate = -657434;   // 100-01-01
constexpr double kEndOfDates = 2958466;  // 10000-01-01

}  // namespace

FILETIME ToFileTime(Ticks ticks) {
  return {.dwLowDateTime = static_cast<DWORD>(ticks),
          .dwHighDateTime = static_cast<DWORD>(ticks >> 32)};
}

Ticks ToTicks(const FILETIME& time) {
  return Ticks{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}

std::optional<SYSTEMTIME> ToSystemTime(Ticks ticks) {
  if (ticks >> 63 != 0) return std::nullopt;
  const Ticks rest = ticks % kTicksPerDay;
  return Compose(static_cast<std::int64_t>(ticks / kTicksPerDay),
                 static_cast<std::int64_t>(rest / kTicksPerSecond),
                 static_cast<WORD>(rest % kTicksPerSecond / kTicksPerMillisecond));
}

std::optional<Ticks> ToTicks(const SYSTEMTIME& time) {
  if (time.wYear < 1601 || time.wYear > 30827 || time.wMonth < 1 || time.wMonth > 12 ||
      time.wDay < 1 || time.wDay > 31 || time.wHour > 23 || time.wMinute > 59 ||
      time.wSecond > 59 || time.wMilliseconds > 999) {
    return std::nullopt;
  }
  const std::int64_t day = DayNumber({.year = time.wYear, .month = time.wMonth, .day = time.wDay});
  // A day past its month's end falls into the next month.
  if (DateOfDay(day).day != time.wDay) return std::nullopt;
  const Ticks seconds = time.wHour * 3600u + time.wMinute * 60u + time.wSecond;
  return static_cast<Ticks>(day) * kTicksPerDay + seconds * kTicksPerSecond +
         time.wMilliseconds * kTicksPerMillisecond;
}

std::optional<SYSTEMTIME> DateToSystemTime(double date) {
  if (!(date > kFirstDate - 1 && date < kEndOfDates)) return std::nullopt;
  // The fraction counts forward from midnight on both sides of zero.
  const double whole = std::trunc(date);
  auto day = static_cast<std::int64_t>(whole) + kAutomationEpoch;
  auto second = static_cast<std::int64_t>(std::fabs(date - whole) * kSecondsPerDay + 0.5);
  if (second == kSecondsPerDay) {
    ++day;
    second = 0;
  }
  return Compose(day, second, 0);
}

std::optional<double> SystemTimeToDate(const SYSTEMTIME& time) {
  if (time.wYear > 9999 || time.wMonth > 12 || time.wDay > 31) return std::nullopt;
  std::int64_t year = time.wYear;
  if (year < 30) {
    year += 2000;
  } else if (year < 100) {
    year += 1900;
  }
  const CivilDate first = time.wMonth == 0
                              ? CivilDate{.year = year - 1, .month = 12, .day = 1}
                              : CivilDate{.year = year, .month = time.wMonth, .day = 1};
  std::int64_t second = time.wHour * 3600 + time.wMinute * 60 + time.wSecond;
  const std::int64_t day = DayNumber(first) + time.wDay - 1 + second / kSecondsPerDay;
  second %= kSecondsPerDay;
  const auto whole = static_cast<double>(day - kAutomationEpoch);
  if (whole < kFirstDate || whole >= kEndOfDates) return std::nullopt;
  const double fraction = static_cast<double>(second) / kSecondsPerDay;
  return whole < 0 ? whole - fraction : whole + fraction;
}

}  // namespace veldmark::simulated
