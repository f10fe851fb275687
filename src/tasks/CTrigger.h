#pragma once

#include <initializer_list>
#include <utility>

#include "automation/Object.h"
#include "automation/Text.h"
#include "automation/Values.h"
#include "platform/operations/TaskScheduler.h"
#include "tasks/TaskEnumerations.h"

namespace veldmark {

/// A trigger of a task: a copy of its record, read when it was made and by `Save`. Members that
/// belong to certain types of trigger raise 80040001, "Invalid trigger type", on any other.
class CTrigger : public Exported<CTrigger> {
 public:
  static const Interface& Describe();

  /// Hands the record to the task, whose own `Save` makes it last, and reads it back. Both raise
  /// the scheduler's result, and 91 for a trigger of no task.
  void Save();
  /// Takes the trigger off the task, by the place that it had when it was made.
  void Delete();

  const veldmark::Text& Text() const { return text_; }
  /// Midnight of the day. Raise 5 where there is no such date.
  Date BeginDate() const;
  void PutBeginDate(Date date);
  Date EndDate() const;
  void PutEndDate(Date date);
  std::int32_t MinutesDuration() const {
    return static_cast<std::int32_t>(record_.MinutesDuration);
  }
  void PutMinutesDuration(std::int32_t minutes);
  std::int32_t MinutesInterval() const {
    return static_cast<std::int32_t>(record_.MinutesInterval);
  }
  void PutMinutesInterval(std::int32_t minutes);
  TriggerFlagsEnum Flags() const { return static_cast<TriggerFlagsEnum>(record_.rgFlags); }
  void PutFlags(TriggerFlagsEnum flags);
  TriggerTypesEnum TriggerType() const {
    return static_cast<TriggerTypesEnum>(static_cast<std::int32_t>(record_.TriggerType));
  }
  void PutTriggerType(TriggerTypesEnum type);
  std::int16_t StartHour() const { return static_cast<std::int16_t>(record_.wStartHour); }
  void PutStartHour(std::int16_t hour) { record_.wStartHour = static_cast<WORD>(hour); }
  std::int16_t StartMinute() const { return static_cast<std::int16_t>(record_.wStartMinute); }
  void PutStartMinute(std::int16_t minute) { record_.wStartMinute = static_cast<WORD>(minute); }
  /// Kept in the record's place before the published one, which no scheduler reads.
  std::int16_t RandomMinutesInterval() const {
    return static_cast<std::int16_t>(record_.Reserved2);
  }
  void PutRandomMinutesInterval(std::int16_t minutes) {
    record_.Reserved2 = static_cast<WORD>(minutes);
  }
  std::int16_t DaysInterval() const;
  void PutDaysInterval(std::int16_t days);
  /// The lower half of the bits of the days, bit 0 for the first.
  std::int16_t Day() const;
  void PutDay(std::int16_t days);
  TriggerMonthsEnum Months() const;
  void PutMonths(TriggerMonthsEnum months);
  /// Reads the record's word before the one that it writes.
  TriggerDaysEnum DaysOfTheWeek() const;
  void PutDaysOfTheWeek(TriggerDaysEnum days);
  TriggerWeeksEnum Week() const;
  void PutWeek(TriggerWeeksEnum week);
  /// Can be put only: reading it raises 80040001 on every type.
  std::int16_t WeeksInterval();
  void PutWeeksInterval(std::int16_t weeks);

  /// For the library's own use: reads a trigger of a task.
  void InitTrigger(Ref<ITaskTrigger> trigger, WORD index, Ref<ITask> task);
  /// As put by the library itself; clients only read it.
  void SetText(veldmark::Text text) { text_ = std::move(text); }
  const TASK_TRIGGER& Record() const { return record_; }

 private:
  void RequireType(std::initializer_list<TriggerTypesEnum> allowed) const;
  std::size_t MonthsPlace() const;

  TASK_TRIGGER record_{};
  veldmark::Text text_;
  Ref<ITaskTrigger> trigger_;
  Ref<ITask> task_;
  WORD index_ = 0;
};

}  // namespace veldmark
