#include "platform/operations/TaskScheduler.h"

#include <windows.h>

#include <mstask.h>

#include "platform/windows/layout/SameLayout.h"

namespace veldmark {

VELDMARK_SAME_LAYOUT(TASK_TRIGGER, cbTriggerSize, Reserved1, wBeginYear, wBeginMonth, wBeginDay,
                     wEndYear, wEndMonth, wEndDay, wStartHour, wStartMinute, MinutesDuration,
                     MinutesInterval, rgFlags, TriggerType, Type, Reserved2,
                     wRandomMinutesInterval);

// The words of `Type` beyond the first, which stand for the fields of a union.
static_assert(offsetof(::WEEKLY, rgfDaysOfTheWeek) == 2 &&
              offsetof(::MONTHLYDATE, rgfMonths) == 4 &&
              offsetof(::MONTHLYDOW, rgfDaysOfTheWeek) == 2 &&
              offsetof(::MONTHLYDOW, rgfMonths) == 4);
static_assert(kTaskFlagDeleteWhenDone == TASK_FLAG_DELETE_WHEN_DONE);
static_assert(kTaskFlagDisabled == TASK_FLAG_DISABLED);
static_assert(kTaskFlagHidden == TASK_FLAG_HIDDEN);
static_assert(kTriggerHasEndDate == TASK_TRIGGER_FLAG_HAS_END_DATE);
static_assert(kTriggerKillAtDurationEnd == TASK_TRIGGER_FLAG_KILL_AT_DURATION_END);
static_assert(kTriggerDisabled == TASK_TRIGGER_FLAG_DISABLED);
static_assert(static_cast<int>(kTriggerAtLogon) == ::TASK_EVENT_TRIGGER_AT_LOGON);
static_assert(kTaskReady == SCHED_S_TASK_READY && kTaskEventTrigger == SCHED_S_EVENT_TRIGGER);
static_assert(kTriggerNotFound == SCHED_E_TRIGGER_NOT_FOUND);
static_assert(kTaskNotReady == SCHED_E_TASK_NOT_READY);
static_assert(kTaskNotRunning == SCHED_E_TASK_NOT_RUNNING);
static_assert(kInvalidTask == SCHED_E_INVALID_TASK);
static_assert(kAccountNameNotFound == SCHED_E_ACCOUNT_NAME_NOT_FOUND);
static_assert(kUnknownObjectVersion == SCHED_E_UNKNOWN_OBJECT_VERSION);
static_assert(kNormalPriorityClass == NORMAL_PRIORITY_CLASS);

}  // namespace veldmark
