#include "tasks/CTrigger.h"

#include <algorithm>
#include <chrono>

#include "apartment/Errors.h"
#include "automation/CivilTime.h"
#include "automation/Declare.h"
#include "tasks/SchedulerCalls.h"

namespace veldmark {
namespace {

constexpr TextView kClassName = u"CTrigger";
constexpr std::int32_t kInvalidTriggerType = kAutomationErrorBase + 1;

void RequireTrigger(HRESULT result) { Require(result, kClassName); }

std::int16_t Signed(WORD word) { return static_cast<std::int16_t>(word); }

template <class Enumeration>
Enumeration Extended(WORD word) {
  return static_cast<Enumeration>(std::int32_t{Signed(word)});
}

/// The date that the runtime makes of these numbers: months and days past their range carry over,
/// and years of two digits lie between 1930 and 2029.
Date PackDate(WORD year_word, WORD month_word, WORD day_word) {
  int year = Signed(year_word);
  if (year >= 0 && year < 100) year += year < 30 ? 2000 : 1900;
  const std::chrono::year_month month =
      std::chrono::year(year) / std::chrono::January + std::chrono::months(Signed(month_word) - 1);
  const auto date = std::chrono::sys_days(month / 1) + std::chrono::days(Signed(day_word) - 1);
  const std::chrono::year_month_day parts(date);
  if (parts.year() < std::chrono::year(100) || parts.year() > std::chrono::year(9999)) {
    Raise(runtime_error::kInvalidCall);
  }
  constexpr auto kDayZero =
      std::chrono::sys_days(std::chrono::year(1899) / std::chrono::December / 30);
  return {static_cast<double>((date - kDayZero).count())};
}

struct DateWords {
  WORD year;
  WORD month;
  WORD day;
};

DateWords Unpack(Date date) {
  const auto moment = ToCivilTime(date);
  if (!moment) Raise(runtime_error::kInvalidCall);
  return {static_cast<WORD>(moment->year), static_cast<WORD>(moment->month),
          static_cast<WORD>(moment->day)};
}

}  // namespace

const Interface& CTrigger::Describe() {
  static const Interface table =
      Declare<CTrigger>(u"CTrigger", u"A trigger of a scheduled task.")
          .Method<&CTrigger::Save>(u"Save", u"Hands the trigger to its task.")
          .Remark(u"The task's own Save makes it last.")
          .Method<&CTrigger::Delete>(u"Delete", u"Takes the trigger off its task.")
          .Remark(
              u"Goes by the place that the trigger had when it was listed: after one was "
              u"deleted, list them anew.")
          .Get<&CTrigger::Text>(u"Text", u"When the task runs, as the scheduler puts it in words.")
          .Property<&CTrigger::BeginDate, &CTrigger::PutBeginDate>(u"BeginDate", u"The first day.")
          .Property<&CTrigger::EndDate, &CTrigger::PutEndDate>(
              u"EndDate", u"The last day, with TF_HasEndDate in Flags.")
          .Property<&CTrigger::StartHour, &CTrigger::PutStartHour>(u"StartHour",
                                                                   u"The hour of the day.")
          .Property<&CTrigger::StartMinute, &CTrigger::PutStartMinute>(u"StartMinute",
                                                                       u"The minute of the hour.")
          .Property<&CTrigger::MinutesDuration, &CTrigger::PutMinutesDuration>(
              u"MinutesDuration", u"Minutes for which it repeats.")
          .Property<&CTrigger::MinutesInterval, &CTrigger::PutMinutesInterval>(
              u"MinutesInterval", u"Minutes between repetitions.")
          .Property<&CTrigger::RandomMinutesInterval, &CTrigger::PutRandomMinutesInterval>(
              u"RandomMinutesInterval", u"Kept and without effect.")
          .Property<&CTrigger::Flags, &CTrigger::PutFlags>(u"Flags", u"What else there is to it.")
          .Property<&CTrigger::TriggerType, &CTrigger::PutTriggerType>(u"TriggerType",
                                                                       u"What sets it off.")
          .Property<&CTrigger::DaysInterval, &CTrigger::PutDaysInterval>(
              u"DaysInterval", u"Days from one to the next, of a daily one.")
          .Property<&CTrigger::Day, &CTrigger::PutDay>(
              u"Day", u"Days 1 to 16 as bits, of a monthly one by date.")
          .Property<&CTrigger::Months, &CTrigger::PutMonths>(u"Months",
                                                             u"The months of a monthly one.")
          .Remark(u"Of one by day of the week it takes the place of the days of the week.")
          .Property<&CTrigger::DaysOfTheWeek, &CTrigger::PutDaysOfTheWeek>(
              u"DaysOfTheWeek", u"The days of a weekly one or a monthly one by day of the week.")
          .Remark(u"What was put isn't what is read: reading gives the week's number or interval.")
          .Property<&CTrigger::Week, &CTrigger::PutWeek>(
              u"Week", u"The week of a monthly one by day of the week.")
          .Remark(u"Takes the place of the months.")
          .Property<&CTrigger::WeeksInterval, &CTrigger::PutWeeksInterval>(
              u"WeeksInterval", u"Weeks from one to the next, of a weekly one.")
          .Remark(u"Reading it raises 80040001 on every trigger.");
  return table;
}

void CTrigger::Save() {
  ReRaisingAs(kClassName, [&] {
    if (!trigger_) Raise(runtime_error::kObjectNotSet);
    RequireTrigger(trigger_->SetTrigger(&record_));
    InitTrigger(trigger_, index_, task_);
  });
}

void CTrigger::Delete() {
  ReRaisingAs(kClassName, [&] {
    if (!task_) Raise(runtime_error::kObjectNotSet);
    RequireTrigger(task_->DeleteTrigger(index_));
  });
}

void CTrigger::InitTrigger(Ref<ITaskTrigger> trigger, WORD index, Ref<ITask> task) {
  ReRaisingAs(kClassName, [&] {
    trigger_ = std::move(trigger);
    index_ = index;
    task_ = std::move(task);
    RequireTrigger(trigger_->GetTrigger(&record_));
    record_.cbTriggerSize = kShortTriggerSize;
    SchedulerText text(Apartment::Current().platform.system);
    RequireTrigger(trigger_->GetTriggerString(text.Receive()));
    text_ = WidePtrToString(text.Release(), true);
  });
}

Date CTrigger::BeginDate() const {
  return PackDate(record_.wBeginYear, record_.wBeginMonth, record_.wBeginDay);
}

void CTrigger::PutBeginDate(Date date) {
  const DateWords words = Unpack(date);
  record_.wBeginYear = words.year;
  record_.wBeginMonth = words.month;
  record_.wBeginDay = words.day;
}

Date CTrigger::EndDate() const {
  return PackDate(record_.wEndYear, record_.wEndMonth, record_.wEndDay);
}

void CTrigger::PutEndDate(Date date) {
  const DateWords words = Unpack(date);
  record_.wEndYear = words.year;
  record_.wEndMonth = words.month;
  record_.wEndDay = words.day;
}

void CTrigger::PutMinutesDuration(std::int32_t minutes) {
  record_.MinutesDuration = static_cast<DWORD>(minutes);
}

void CTrigger::PutMinutesInterval(std::int32_t minutes) {
  record_.MinutesInterval = static_cast<DWORD>(minutes);
}

void CTrigger::PutFlags(TriggerFlagsEnum flags) { record_.rgFlags = static_cast<DWORD>(flags); }

void CTrigger::PutTriggerType(TriggerTypesEnum type) {
  record_.TriggerType = static_cast<TASK_TRIGGER_TYPE>(type);
}

std::int16_t CTrigger::DaysInterval() const {
  RequireType({TT_Daily});
  return Signed(record_.Type[0]);
}

void CTrigger::PutDaysInterval(std::int16_t days) {
  RequireType({TT_Daily});
  record_.Type[0] = static_cast<WORD>(days);
}

std::int16_t CTrigger::Day() const {
  RequireType({TT_MonthlyDate});
  return Signed(record_.Type[0]);
}

void CTrigger::PutDay(std::int16_t days) {
  RequireType({TT_MonthlyDate});
  record_.Type[0] = static_cast<WORD>(days);
}

TriggerMonthsEnum CTrigger::Months() const {
  return Extended<TriggerMonthsEnum>(record_.Type[MonthsPlace()]);
}

void CTrigger::PutMonths(TriggerMonthsEnum months) {
  record_.Type[MonthsPlace()] = static_cast<WORD>(months);
}

TriggerDaysEnum CTrigger::DaysOfTheWeek() const {
  RequireType({TT_Weekly, TT_MonthlyWeekDay});
  return Extended<TriggerDaysEnum>(record_.Type[0]);
}

void CTrigger::PutDaysOfTheWeek(TriggerDaysEnum days) {
  RequireType({TT_Weekly, TT_MonthlyWeekDay});
  record_.Type[1] = static_cast<WORD>(days);
}

TriggerWeeksEnum CTrigger::Week() const {
  RequireType({TT_MonthlyWeekDay});
  return Extended<TriggerWeeksEnum>(record_.Type[2]);
}

void CTrigger::PutWeek(TriggerWeeksEnum week) {
  RequireType({TT_MonthlyWeekDay});
  record_.Type[2] = static_cast<WORD>(week);
}

// What it reads it puts as the week, which a weekly trigger doesn't have.
std::int16_t CTrigger::WeeksInterval() {
  RequireType({TT_Weekly});
  PutWeek(Extended<TriggerWeeksEnum>(record_.Type[1]));
  return 0;
}

void CTrigger::PutWeeksInterval(std::int16_t weeks) {
  RequireType({TT_Weekly});
  record_.Type[0] = static_cast<WORD>(weeks);
}

void CTrigger::RequireType(std::initializer_list<TriggerTypesEnum> allowed) const {
  if (std::ranges::find(allowed, TriggerType()) == allowed.end()) {
    Raise(kInvalidTriggerType, {}, u"Invalid trigger type");
  }
}

std::size_t CTrigger::MonthsPlace() const {
  RequireType({TT_MonthlyDate, TT_MonthlyWeekDay});
  return TriggerType() == TT_MonthlyDate ? 2 : 1;
}

}  // namespace veldmark
