#include "platform/scheduling/TriggerTimes.h"

#include <algorithm>
#include <chrono>
#include <string>

namespace veldmark {
namespace {

using std::chrono::days;
using std::chrono::sys_days;

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::int64_t kSecondsPerMinute = 60;
constexpr std::int64_t kDaysPerWeek = 7;
constexpr unsigned kLastWeek = 5;
constexpr unsigned kAllDays = 0x7F;
// What the platform's own dialog takes at most, in minutes.
constexpr DWORD kLongestRepetition = 9999 * 60;
// Past this many days no month, day or week comes that hasn't come before.
constexpr std::int64_t kLongestGap = 8 * 366 + 31;
constexpr WORD kFirstYear = 1601;
constexpr WORD kLastYear = 9999;

constexpr sys_days kEpoch{std::chrono::year{1601} / 1 / 1};
// 1601-01-01 was a Monday, and weeks begin on Sunday.
constexpr std::int64_t kSundayOffset = 1;

// Days since 1601-01-01; nothing for a date that doesn't exist.
std::optional<std::int64_t> DayOf(WORD year, WORD month, WORD day) {
  if (year < kFirstYear || year > kLastYear) return std::nullopt;
  const std::chrono::year_month_day date{std::chrono::year{year}, std::chrono::month{month},
                                         std::chrono::day{day}};
  if (!date.ok()) return std::nullopt;
  return (sys_days(date) - kEpoch).count();
}

std::chrono::year_month_day DateOf(std::int64_t day) { return {kEpoch + days(day)}; }

std::int64_t WeekOf(std::int64_t day) { return (day + kSundayOffset) / kDaysPerWeek; }

bool HasBit(unsigned bits, unsigned bit) { return ((bits >> bit) & 1) != 0; }

bool IsMonthOf(WORD months, const std::chrono::year_month_day& date) {
  return HasBit(months, static_cast<unsigned>(date.month()) - 1);
}

bool IsWeekOf(WORD week, const std::chrono::year_month_day& date) {
  const unsigned day = static_cast<unsigned>(date.day());
  if (week != kLastWeek) return (day + 6) / 7 == week;
  const auto last =
      std::chrono::year_month_day_last(date.year() / date.month() / std::chrono::last);
  return day + 7 > static_cast<unsigned>(last.day());
}

// The days of a sound trigger of time.
class Calendar {
 public:
  explicit Calendar(const TASK_TRIGGER& trigger)
      : trigger_(trigger),
        first_(*DayOf(trigger.wBeginYear, trigger.wBeginMonth, trigger.wBeginDay)) {
    if ((trigger.rgFlags & kTriggerHasEndDate) != 0) {
      last_ = *DayOf(trigger.wEndYear, trigger.wEndMonth, trigger.wEndDay);
    }
  }

  // The first day from `day` on, and nothing past the last one.
  std::optional<std::int64_t> DayFrom(std::int64_t day) const {
    const auto found = Found(std::max(day, first_));
    return found && *found <= last_ ? found : std::nullopt;
  }

 private:
  std::optional<std::int64_t> Found(std::int64_t day) const {
    switch (trigger_.TriggerType) {
      case kTriggerOnce:
        return day == first_ ? std::optional(day) : std::nullopt;
      case kTriggerDaily: {
        const std::int64_t interval = trigger_.Type[0];
        if (interval == 0) return std::nullopt;
        return first_ + (day - first_ + interval - 1) / interval * interval;
      }
      case kTriggerWeekly:
        return FoundWeekly(day);
      default:
        for (std::int64_t end = day + kLongestGap; day < end; ++day) {
          if (IsMonthly(day)) return day;
        }
        return std::nullopt;
    }
  }

  std::optional<std::int64_t> FoundWeekly(std::int64_t day) const {
    const std::int64_t interval = trigger_.Type[0];
    if (interval == 0 || (trigger_.Type[1] & kAllDays) == 0) return std::nullopt;
    for (;; ++day) {
      const std::int64_t past = (WeekOf(day) - WeekOf(first_)) % interval;
      // On to the Sunday of the next week that counts.
      if (past != 0) day = (WeekOf(day) + interval - past) * kDaysPerWeek - kSundayOffset;
      if (IsWeekDay(trigger_.Type[1], day)) return day;
    }
  }

  static bool IsWeekDay(WORD week_days, std::int64_t day) {
    return HasBit(week_days, static_cast<unsigned>((day + kSundayOffset) % kDaysPerWeek));
  }

  bool IsMonthly(std::int64_t day) const {
    const std::chrono::year_month_day date = DateOf(day);
    if (trigger_.TriggerType == kTriggerMonthlyDate) {
      const DWORD month_days = DWORD{trigger_.Type[1]} << 16 | trigger_.Type[0];
      return IsMonthOf(trigger_.Type[2], date) &&
             HasBit(month_days, static_cast<unsigned>(date.day()) - 1);
    }
    return IsMonthOf(trigger_.Type[2], date) && IsWeekDay(trigger_.Type[1], day) &&
           IsWeekOf(trigger_.Type[0], date);
  }

  const TASK_TRIGGER& trigger_;
  std::int64_t first_;
  std::int64_t last_ = INT64_MAX;
};

bool IsOfTime(const TASK_TRIGGER& trigger) { return trigger.TriggerType <= kTriggerMonthlyWeekDay; }

// Texts

std::u16string Number(unsigned number) {
  std::u16string digits;
  for (const char digit : std::to_string(number)) digits += static_cast<char16_t>(digit);
  return digits;
}

std::u16string DateText(WORD year, WORD month, WORD day) {
  return Number(month) + u"/" + Number(day) + u"/" + Number(year);
}

std::u16string TimeText(const TASK_TRIGGER& trigger) {
  const unsigned hour = trigger.wStartHour % 12;
  return Number(hour == 0 ? 12 : hour) + (trigger.wStartMinute < 10 ? u":0" : u":") +
         Number(trigger.wStartMinute) + (trigger.wStartHour < 12 ? u" AM" : u" PM");
}

// The names of the bits that are set, with commas between them.
std::u16string Listed(unsigned bits, std::span<const char16_t* const> names) {
  std::u16string list;
  for (unsigned bit = 0; bit < names.size(); ++bit) {
    if (!HasBit(bits, bit)) continue;
    if (!list.empty()) list += u", ";
    list += names[bit];
  }
  return list;
}

constexpr const char16_t* kDayNames[] = {u"Sun", u"Mon", u"Tue", u"Wed", u"Thu", u"Fri", u"Sat"};
constexpr const char16_t* kMonthNames[] = {u"Jan", u"Feb", u"Mar", u"Apr", u"May", u"Jun",
                                           u"Jul", u"Aug", u"Sep", u"Oct", u"Nov", u"Dec"};
constexpr unsigned kAllMonths = 0xFFF;

std::u16string MonthsText(WORD months) {
  const unsigned known = months & kAllMonths;
  return known == kAllMonths ? u"every month" : Listed(known, kMonthNames);
}

std::u16string WeekText(WORD week) {
  static constexpr const char16_t* kWeeks[] = {u"first", u"second", u"third", u"fourth", u"last"};
  return week >= 1 && week <= kLastWeek ? kWeeks[week - 1] : u"";
}

std::u16string DaysText(DWORD month_days) {
  std::u16string list;
  for (unsigned day = 1; day <= 31; ++day) {
    if (!HasBit(month_days, day - 1)) continue;
    if (!list.empty()) list += u", ";
    list += Number(day);
  }
  return list;
}

// Whole hours read as such.
std::u16string SpanText(DWORD minutes) {
  const bool hours = minutes >= 60 && minutes % 60 == 0;
  return Number(hours ? minutes / 60 : minutes) + (hours ? u" hour(s)" : u" minute(s)");
}

std::u16string PatternText(const TASK_TRIGGER& trigger) {
  const auto every = [&](const char16_t* one) {
    return trigger.Type[0] == 1 ? std::u16string(u"every ") + one
                                : u"every " + Number(trigger.Type[0]) + u" " + one + u"s";
  };
  switch (trigger.TriggerType) {
    case kTriggerDaily:
      return every(u"day");
    case kTriggerWeekly:
      return u"every " + Listed(trigger.Type[1], kDayNames) + u" of " + every(u"week");
    case kTriggerMonthlyDate:
      return u"on day " + DaysText(DWORD{trigger.Type[1]} << 16 | trigger.Type[0]) + u" of " +
             MonthsText(trigger.Type[2]);
    default:
      return u"on the " + WeekText(trigger.Type[0]) + u" " + Listed(trigger.Type[1], kDayNames) +
             u" of " + MonthsText(trigger.Type[2]);
  }
}

}  // namespace

SYSTEMTIME SystemTimeOf(std::optional<LocalSeconds> moment) {
  if (!moment) return {};
  const std::int64_t day = *moment / kSecondsPerDay;
  const std::int64_t second = *moment % kSecondsPerDay;
  const std::chrono::year_month_day date = DateOf(day);
  return {.wYear = static_cast<WORD>(static_cast<int>(date.year())),
          .wMonth = static_cast<WORD>(static_cast<unsigned>(date.month())),
          .wDayOfWeek = static_cast<WORD>((day + kSundayOffset) % kDaysPerWeek),
          .wDay = static_cast<WORD>(static_cast<unsigned>(date.day())),
          .wHour = static_cast<WORD>(second / 3600),
          .wMinute = static_cast<WORD>(second / 60 % 60),
          .wSecond = static_cast<WORD>(second % 60),
          .wMilliseconds = 0};
}

std::optional<LocalSeconds> ToLocalSeconds(const SYSTEMTIME& moment) {
  const auto day = DayOf(moment.wYear, moment.wMonth, moment.wDay);
  if (!day || moment.wHour > 23 || moment.wMinute > 59 || moment.wSecond > 59) return std::nullopt;
  return *day * kSecondsPerDay + moment.wHour * 3600 + moment.wMinute * 60 + moment.wSecond;
}

bool IsSound(const TASK_TRIGGER& trigger) {
  const auto first = DayOf(trigger.wBeginYear, trigger.wBeginMonth, trigger.wBeginDay);
  const bool ends = (trigger.rgFlags & kTriggerHasEndDate) != 0;
  const auto last =
      ends ? DayOf(trigger.wEndYear, trigger.wEndMonth, trigger.wEndDay) : std::optional(INT64_MAX);
  return trigger.TriggerType <= kTriggerAtLogon && first && last && trigger.wStartHour < 24 &&
         trigger.wStartMinute < 60 &&
         (trigger.MinutesInterval == 0 || trigger.MinutesDuration > trigger.MinutesInterval);
}

std::optional<TriggeredRun> NextRun(const TASK_TRIGGER& trigger, LocalSeconds after) {
  if ((trigger.rgFlags & kTriggerDisabled) != 0 || !IsOfTime(trigger) || !IsSound(trigger)) {
    return std::nullopt;
  }
  const Calendar calendar(trigger);
  const std::int64_t start = trigger.wStartHour * 3600 + trigger.wStartMinute * kSecondsPerMinute;
  const std::int64_t duration =
      std::min(trigger.MinutesDuration, kLongestRepetition) * kSecondsPerMinute;
  const std::int64_t interval = trigger.MinutesInterval * kSecondsPerMinute;
  // A day whose repetitions reach past the moment; each day begins its own.
  const std::int64_t reach = interval == 0 ? 0 : duration;
  std::int64_t day = std::max<std::int64_t>(after - start - reach, 0) / kSecondsPerDay;
  std::optional<TriggeredRun> earliest;
  while (const auto found = calendar.DayFrom(day)) {
    const LocalSeconds first = *found * kSecondsPerDay + start;
    if (earliest && first >= earliest->start) break;
    LocalSeconds run = first;
    if (run <= after && interval > 0) run += ((after - run) / interval + 1) * interval;
    const bool runs = run > after && (run == first || run < first + duration);
    if (runs && (!earliest || run < earliest->start)) {
      const bool kills = (trigger.rgFlags & kTriggerKillAtDurationEnd) != 0 && duration > 0;
      earliest = TriggeredRun{run, kills ? std::optional(first + duration) : std::nullopt};
    }
    day = *found + 1;
  }
  return earliest;
}

std::optional<TriggeredRun> NextRun(std::span<const TASK_TRIGGER> triggers, LocalSeconds after) {
  std::optional<TriggeredRun> earliest;
  for (const TASK_TRIGGER& trigger : triggers) {
    const auto run = NextRun(trigger, after);
    if (run && (!earliest || run->start < earliest->start)) earliest = run;
  }
  return earliest;
}

HRESULT WhyNoRun(std::span<const TASK_TRIGGER> triggers) {
  const auto is_valid = [](const TASK_TRIGGER& trigger) {
    return (trigger.rgFlags & kTriggerDisabled) == 0 && IsSound(trigger);
  };
  HRESULT why = kTaskNoValidTriggers;
  for (const TASK_TRIGGER& trigger : triggers) {
    if (!is_valid(trigger)) continue;
    if (!IsOfTime(trigger)) return kTaskEventTrigger;
    why = kTaskNoMoreRuns;
  }
  return why;
}

std::u16string TriggerText(const TASK_TRIGGER& trigger) {
  switch (trigger.TriggerType) {
    case kTriggerOnIdle:
      return u"Run when idle";
    case kTriggerAtSystemStart:
      return u"Run at system startup";
    case kTriggerAtLogon:
      return u"Run at user logon";
    default:
      break;
  }
  const std::u16string begin = DateText(trigger.wBeginYear, trigger.wBeginMonth, trigger.wBeginDay);
  std::u16string text = u"At " + TimeText(trigger);
  if (trigger.MinutesInterval > 0) {
    text = u"Every " + SpanText(trigger.MinutesInterval) + u" from " + TimeText(trigger) +
           u" for " + SpanText(trigger.MinutesDuration);
  }
  if (trigger.TriggerType == kTriggerOnce) return text + u" on " + begin;
  text += u" " + PatternText(trigger) + u", starting " + begin;
  if ((trigger.rgFlags & kTriggerHasEndDate) != 0) {
    text += u" and ending " + DateText(trigger.wEndYear, trigger.wEndMonth, trigger.wEndDay);
  }
  return text;
}

}  // namespace veldmark
