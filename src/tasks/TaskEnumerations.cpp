#include "tasks/TaskEnumerations.h"

#include "automation/Declare.h"

namespace veldmark {

const Enumeration& DescribeEnumeration(TaskFlagsEnum) {
  static const Enumeration table =
      DeclareEnumeration<TaskFlagsEnum>(u"TaskFlagsEnum", u"How a task is run.")
          .Value(u"tfInteractive", tfInteractive, u"Shows itself to the user.")
          .Value(u"tfDeleteWhenDone", tfDeleteWhenDone, u"Deleted once it has no more runs.")
          .Value(u"tfDisabled", tfDisabled, u"Not run by its triggers.")
          .Value(u"tfStartOnlyIfIdle", tfStartOnlyIfIdle, u"Started only on an idle computer.")
          .Value(u"tfKillOnIdleEnd", tfKillOnIdleEnd, u"Ended when the computer is used again.")
          .Value(u"tfDontStartIfOnBatteries", tfDontStartIfOnBatteries,
                 u"Not started on batteries.")
          .Value(u"tfKillIfGoingOnBatteries", tfKillIfGoingOnBatteries,
                 u"Ended when the computer goes on batteries.")
          .Value(u"tfRunOnlyIfDocked", tfRunOnlyIfDocked, u"Run only in a docking station.")
          .Value(u"tfHidden", tfHidden, u"Its job file is hidden.")
          .Value(u"tfRunIfConnectedToInternet", tfRunIfConnectedToInternet,
                 u"Run only with a connection to the Internet.")
          .Value(u"tfRestartOnIdleResume", tfRestartOnIdleResume,
                 u"Started again when the computer is idle again.");
  return table;
}

const Enumeration& DescribeEnumeration(TaskStatusEnum) {
  static const Enumeration table =
      DeclareEnumeration<TaskStatusEnum>(u"TaskStatusEnum", u"What a task is doing.")
          .Value(u"TS_TaskReady", TS_TaskReady, u"Waits for its next run.")
          .Value(u"TS_TaskRunning", TS_TaskRunning, u"Runs.")
          .Value(u"TS_TaskDisabled", TS_TaskDisabled, u"Not run by its triggers.");
  return table;
}

const Enumeration& DescribeEnumeration(TriggerTypesEnum) {
  static const Enumeration table =
      DeclareEnumeration<TriggerTypesEnum>(u"TriggerTypesEnum", u"What sets off a trigger.")
          .Value(u"TT_Once", TT_Once, u"Its begin date.")
          .Value(u"TT_Daily", TT_Daily, u"Every so many days.")
          .Value(u"TT_Weekly", TT_Weekly, u"Days of every so many weeks.")
          .Value(u"TT_MonthlyDate", TT_MonthlyDate, u"Days of months.")
          .Value(u"TT_MonthlyWeekDay", TT_MonthlyWeekDay, u"Days of a week of months.")
          .Value(u"TT_OnIdle", TT_OnIdle, u"The computer being idle.")
          .Value(u"TT_AtSystemStart", TT_AtSystemStart, u"The start of the computer.")
          .Value(u"TT_AtLogon", TT_AtLogon, u"The logon of a user.");
  return table;
}

const Enumeration& DescribeEnumeration(TriggerMonthsEnum) {
  static const Enumeration table =
      DeclareEnumeration<TriggerMonthsEnum>(u"TriggerMonthsEnum", u"Months, bit by bit.")
          .Value(u"TM_January", TM_January, u"January.")
          .Value(u"TM_February", TM_February, u"February.")
          .Value(u"TM_March", TM_March, u"March.")
          .Value(u"TM_April", TM_April, u"April.")
          .Value(u"TM_May", TM_May, u"May.")
          .Value(u"TM_June", TM_June, u"June.")
          .Value(u"TM_July", TM_July, u"July.")
          .Value(u"TM_August", TM_August, u"August.")
          .Value(u"TM_September", TM_September, u"September.")
          .Value(u"TM_October", TM_October, u"October.")
          .Value(u"TM_November", TM_November, u"November.")
          .Value(u"TM_December", TM_December, u"December.");
  return table;
}

const Enumeration& DescribeEnumeration(TriggerDaysEnum) {
  static const Enumeration table =
      DeclareEnumeration<TriggerDaysEnum>(u"TriggerDaysEnum", u"Days of the week, bit by bit.")
          .Value(u"TD_Sunday", TD_Sunday, u"Sunday.")
          .Value(u"TD_Monday", TD_Monday, u"Monday.")
          .Value(u"TD_Tuesday", TD_Tuesday, u"Tuesday.")
          .Value(u"TD_Wednesday", TD_Wednesday, u"Wednesday.")
          .Value(u"TD_Thursday", TD_Thursday, u"Thursday.")
          .Value(u"TD_Friday", TD_Friday, u"Friday.")
          .Value(u"TD_Saturday", TD_Saturday, u"Saturday.");
  return table;
}

const Enumeration& DescribeEnumeration(TriggerWeeksEnum) {
  static const Enumeration table =
      DeclareEnumeration<TriggerWeeksEnum>(u"TriggerWeeksEnum", u"Weeks of a month.")
          .Value(u"TW_First", TW_First, u"The first one.")
          .Value(u"TW_Second", TW_Second, u"The second one.")
          .Value(u"TW_Third", TW_Third, u"The third one.")
          .Value(u"TW_Fourth", TW_Fourth, u"The fourth one.")
          .Value(u"TW_Last", TW_Last, u"The last one.");
  return table;
}

const Enumeration& DescribeEnumeration(TriggerFlagsEnum) {
  static const Enumeration table =
      DeclareEnumeration<TriggerFlagsEnum>(u"TriggerFlagsEnum", u"What else there is to a trigger.")
          .Value(u"TF_HasEndDate", TF_HasEndDate, u"It ends with its end date.")
          .Value(u"TF_KillAtDurationEnd", TF_KillAtDurationEnd,
                 u"What it started is ended with its duration.")
          .Value(u"TF_TriggerDisabled", TF_TriggerDisabled, u"It sets off nothing.");
  return table;
}

}  // namespace veldmark
