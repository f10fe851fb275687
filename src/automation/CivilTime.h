#pragma once

#include <cstdint>
#include <optional>

#include "automation/Values.h"

namespace veldmark {

/// A moment of the calendar, as an automation date tells it: to the second, without a zone.
struct CivilTime {
  int year = 1899;
  int month = 12;
  int day = 30;
  int hour = 0;
  int minute = 0;
  int second = 0;

  bool operator==(const CivilTime&) const = default;
};

/// The moment that a date names, rounded to the second; nothing outside the years 100 to 9999.
std::optional<CivilTime> ToCivilTime(Date date);
/// The date of a moment; nothing if a field is out of its range or the year outside 100 to 9999.
std::optional<Date> FromCivilTime(const CivilTime& moment);

/// Moves a date by seconds along the calendar, also across 1899-12-30, below which the fraction of
/// a date runs backwards. The result is a whole second. Raises 5 when it leaves the years 100 to
/// 9999.
Date AddSeconds(Date date, std::int64_t seconds);

}  // namespace veldmark
