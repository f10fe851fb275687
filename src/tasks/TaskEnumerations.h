#pragma once

#include <cstdint>

namespace veldmark {

struct Enumeration;

/// How a task is run.
enum TaskFlagsEnum : std::int32_t {
  tfInteractive = 1,
  tfDeleteWhenDone = 2,
  tfDisabled = 4,
  tfStartOnlyIfIdle = 16,
  tfKillOnIdleEnd = 32,
  tfDontStartIfOnBatteries = 64,
  tfKillIfGoingOnBatteries = 128,
  tfRunOnlyIfDocked = 256,
  tfHidden = 512,
  tfRunIfConnectedToInternet = 1024,
  tfRestartOnIdleResume = 2048,
};

/// What a task is doing.
enum TaskStatusEnum : std::int32_t {
  TS_TaskReady = 267008,
  TS_TaskRunning = 267009,
  TS_TaskDisabled = 267010,
};

/// What sets off a trigger.
enum TriggerTypesEnum : std::int32_t {
  TT_Once = 0,
  TT_Daily = 1,
  TT_Weekly = 2,
  TT_MonthlyDate = 3,
  TT_MonthlyWeekDay = 4,
  TT_OnIdle = 5,
  TT_AtSystemStart = 6,
  TT_AtLogon = 7,
};

/// Months, bit by bit.
enum TriggerMonthsEnum : std::int32_t {
  TM_January = 1,
  TM_February = 2,
  TM_March = 4,
  TM_April = 8,
  TM_May = 16,
  TM_June = 32,
  TM_July = 64,
  TM_August = 128,
  TM_September = 256,
  TM_October = 512,
  TM_November = 1024,
  TM_December = 2048,
};

/// Days of the week, bit by bit.
enum TriggerDaysEnum : std::int32_t {
  TD_Sunday = 1,
  TD_Monday = 2,
  TD_Tuesday = 4,
  TD_Wednesday = 8,
  TD_Thursday = 16,
  TD_Friday = 32,
  TD_Saturday = 64,
};

/// Weeks of a month.
enum TriggerWeeksEnum : std::int32_t {
  TW_First = 1,
  TW_Second = 2,
  TW_Third = 3,
  TW_Fourth = 4,
  TW_Last = 5,
};

/// What else there is to a trigger.
enum TriggerFlagsEnum : std::int32_t {
  TF_HasEndDate = 1,
  TF_KillAtDurationEnd = 2,
  TF_TriggerDisabled = 4,
};

const Enumeration& DescribeEnumeration(TaskFlagsEnum);
const Enumeration& DescribeEnumeration(TaskStatusEnum);
const Enumeration& DescribeEnumeration(TriggerTypesEnum);
const Enumeration& DescribeEnumeration(TriggerMonthsEnum);
const Enumeration& DescribeEnumeration(TriggerDaysEnum);
const Enumeration& DescribeEnumeration(TriggerWeeksEnum);
const Enumeration& DescribeEnumeration(TriggerFlagsEnum);

}  // namespace veldmark
