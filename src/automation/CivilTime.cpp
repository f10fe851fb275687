#include "automation/CivilTime.h"

#include <chrono>
#include <cmath>

#include "automation/Conversion.h"
#include "automation/Error.h"

namespace veldmark {
namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::int64_t kFirstDay = -657434;  // 0100-01-01
constexpr std::int64_t kLastDay = 2958465;   // 9999-12-31
constexpr std::chrono::sys_days kDayZero{std::chrono::year(1899) / 12 / 30};

struct Moment {
  std::int64_t day;
  std::int64_t second;
};

bool InRange(std::int64_t day) { return day >= kFirstDay && day <= kLastDay; }

std::optional<Moment> Split(Date date) {
  if (!(date.days > kFirstDay - 1 && date.days < kLastDay + 1)) return {};
  const double whole = std::trunc(date.days);
  Moment moment{static_cast<std::int64_t>(whole),
                std::llround(std::abs(date.days - whole) * kSecondsPerDay)};
  if (moment.second == kSecondsPerDay) {
    ++moment.day;
    moment.second = 0;
  }
  if (!InRange(moment.day)) return {};
  return moment;
}

Date Join(Moment moment) {
  const double fraction = static_cast<double>(moment.second) / kSecondsPerDay;
  const auto day = static_cast<double>(moment.day);
  return {day < 0 ? day - fraction : day + fraction};
}

}  // namespace

std::optional<CivilTime> ToCivilTime(Date date) {
  const std::optional<Moment> moment = Split(date);
  if (!moment) return {};
  const std::chrono::year_month_day calendar(kDayZero + std::chrono::days(moment->day));
  const int second = static_cast<int>(moment->second);
  return CivilTime{static_cast<int>(calendar.year()),
                   static_cast<int>(static_cast<unsigned>(calendar.month())),
                   static_cast<int>(static_cast<unsigned>(calendar.day())),
                   second / 3600,
                   second / 60 % 60,
                   second % 60};
}

std::optional<Date> FromCivilTime(const CivilTime& moment) {
  const auto within = [](int field, int first, int last) {
    return field >= first && field <= last;
  };
  if (!within(moment.year, 100, 9999) || !within(moment.month, 1, 12) ||
      !within(moment.day, 1, 31) || !within(moment.hour, 0, 23) || !within(moment.minute, 0, 59) ||
      !within(moment.second, 0, 59)) {
    return {};
  }
  const std::chrono::year_month_day calendar{
      std::chrono::year(moment.year), std::chrono::month(static_cast<unsigned>(moment.month)),
      std::chrono::day(static_cast<unsigned>(moment.day))};
  if (!calendar.ok()) return {};
  return Join({(std::chrono::sys_days(calendar) - kDayZero).count(),
               moment.hour * 3600 + moment.minute * 60 + moment.second});
}

Date AddSeconds(Date date, std::int64_t seconds) {
  const std::optional<Moment> from = Split(date);
  constexpr std::int64_t kWholeRange = (kLastDay - kFirstDay + 1) * kSecondsPerDay;
  if (!from || seconds > kWholeRange || seconds < -kWholeRange) {
    Raise(runtime_error::kInvalidCall);
  }
  const std::int64_t total = from->day * kSecondsPerDay + from->second + seconds;
  std::int64_t second = total % kSecondsPerDay;
  if (second < 0) second += kSecondsPerDay;
  const std::int64_t day = (total - second) / kSecondsPerDay;
  if (!InRange(day)) Raise(runtime_error::kInvalidCall);
  return Join({day, second});
}

Date MakeDate(int year, int month, int day, int hour, int minute, int second) {
  const std::optional<Date> date = FromCivilTime({year, month, day, hour, minute, second});
  if (!date) Raise(runtime_error::kInvalidCall);
  return *date;
}

}  // namespace veldmark
