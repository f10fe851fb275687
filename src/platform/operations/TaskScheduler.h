#pragma once

#include "automation/Object.h"
#include "platform/operations/System.h"
#include "platform/operations/Types.h"

namespace veldmark {

// States of a work item, and what keeps it from having a run time. All of them are successes.
inline constexpr HRESULT kTaskReady = 0x00041300;
inline constexpr HRESULT kTaskRunning = 0x00041301;
inline constexpr HRESULT kTaskDisabled = 0x00041302;
inline constexpr HRESULT kTaskHasNotRun = 0x00041303;
inline constexpr HRESULT kTaskNoMoreRuns = 0x00041304;
inline constexpr HRESULT kTaskNotScheduled = 0x00041305;
inline constexpr HRESULT kTaskTerminated = 0x00041306;
inline constexpr HRESULT kTaskNoValidTriggers = 0x00041307;
inline constexpr HRESULT kTaskEventTrigger = 0x00041308;

inline constexpr HRESULT kTriggerNotFound = static_cast<HRESULT>(0x80041309u);
inline constexpr HRESULT kTaskNotReady = static_cast<HRESULT>(0x8004130Au);
inline constexpr HRESULT kTaskNotRunning = static_cast<HRESULT>(0x8004130Bu);
inline constexpr HRESULT kInvalidTask = static_cast<HRESULT>(0x8004130Eu);
inline constexpr HRESULT kAccountNameNotFound = static_cast<HRESULT>(0x80041310u);
inline constexpr HRESULT kUnknownObjectVersion = static_cast<HRESULT>(0x80041313u);

inline constexpr DWORD kTaskFlagDeleteWhenDone = 0x2;
inline constexpr DWORD kTaskFlagDisabled = 0x4;
inline constexpr DWORD kTaskFlagHidden = 0x200;

inline constexpr DWORD kTriggerHasEndDate = 0x1;
inline constexpr DWORD kTriggerKillAtDurationEnd = 0x2;
inline constexpr DWORD kTriggerDisabled = 0x4;

enum TASK_TRIGGER_TYPE : DWORD {
  kTriggerOnce = 0,
  kTriggerDaily = 1,
  kTriggerWeekly = 2,
  kTriggerMonthlyDate = 3,
  kTriggerMonthlyWeekDay = 4,
  kTriggerOnIdle = 5,
  kTriggerAtSystemStart = 6,
  kTriggerAtLogon = 7,
};

inline constexpr DWORD kNormalPriorityClass = 0x20;

// When a work item runs. Dates and times are local.
struct TASK_TRIGGER {
  WORD cbTriggerSize;
  WORD Reserved1;
  WORD wBeginYear;
  WORD wBeginMonth;
  WORD wBeginDay;
  WORD wEndYear;  // with kTriggerHasEndDate
  WORD wEndMonth;
  WORD wEndDay;
  WORD wStartHour;
  WORD wStartMinute;
  DWORD MinutesDuration;
  DWORD MinutesInterval;
  DWORD rgFlags;
  TASK_TRIGGER_TYPE TriggerType;
  // The published union as its words. Daily: the interval in days. Weekly: the interval in weeks,
  // the days of the week. Monthly by date: the days' bits, low word first, then the months. Monthly
  // by week: the week, the days of the week, the months.
  WORD Type[4];
  WORD Reserved2;
  WORD wRandomMinutesInterval;
};

// Two sizes that the scheduler takes a trigger's record by: that of the whole record, and that of
// one without its last field, which then is left alone.
inline constexpr WORD kTriggerSize = 48;
inline constexpr WORD kShortTriggerSize = 46;

// The interfaces of the scheduler, as far as they are called. An interface pointer is a counted
// reference, and letting go of the last one releases it. Out-arguments are empty references. Texts
// and arrays that come back are freed with CoTaskMemFree. Every method returns kOk, where nothing
// else is said, or the failure.

class ITaskTrigger : public ReferenceCounted {
 public:
  // Replaces the trigger's record. kInvalidArgument for a size that is none of the two, a date that
  // doesn't exist, a time that is none, or a duration not longer than a given interval.
  virtual HRESULT SetTrigger(const TASK_TRIGGER* trigger) = 0;
  // Fills all of the record.
  virtual HRESULT GetTrigger(TASK_TRIGGER* trigger) = 0;
  // "At 9:00 AM every day, starting 3/5/2024".
  virtual HRESULT GetTriggerString(LPWSTR* text) = 0;
};

class IPersistFile : public ReferenceCounted {
 public:
  // Writes the work item to a file, null for its own. With `remember` the file becomes its own.
  // 0x80070050 for a name that exists, 0x80070005 where it may not be written.
  virtual HRESULT Save(LPCWSTR file_name, BOOL remember) = 0;
  // Ends a Save.
  virtual HRESULT SaveCompleted(LPCWSTR file_name) = 0;
  // The full path of its own file.
  virtual HRESULT GetCurFile(LPWSTR* file_name) = 0;
};

// A work item, with the methods of IScheduledWorkItem. It is a copy of what its file held when it
// was activated; what is set reaches the file by IPersistFile::Save.
class ITask : public ReferenceCounted {
 public:
  // Adds a trigger that runs daily from now on and is disabled.
  virtual HRESULT CreateTrigger(WORD* index, Ref<ITaskTrigger>* trigger) = 0;
  // kTriggerNotFound past the last one. Those behind it move up.
  virtual HRESULT DeleteTrigger(WORD index) = 0;
  virtual HRESULT GetTriggerCount(WORD* count) = 0;
  virtual HRESULT GetTrigger(WORD index, Ref<ITaskTrigger>* trigger) = 0;
  // Local time. kTaskDisabled, kTaskNoValidTriggers, kTaskEventTrigger or kTaskNoMoreRuns with a
  // record of zeros where there is none.
  virtual HRESULT GetNextRunTime(SYSTEMTIME* next) = 0;
  // Starts it now; kTaskNotReady for one that was never saved. A running one runs on.
  virtual HRESULT Run() = 0;
  // kTaskNotRunning for one that doesn't run.
  virtual HRESULT Terminate() = 0;
  // Shows its dialog until the user closes it.
  virtual HRESULT EditWorkItem(HWND parent, DWORD reserved) = 0;
  // Local time; kTaskHasNotRun with a record of zeros.
  virtual HRESULT GetMostRecentRunTime(SYSTEMTIME* last) = 0;
  virtual HRESULT GetStatus(HRESULT* status) = 0;
  // kTaskHasNotRun with 0; the failure of the latest start.
  virtual HRESULT GetExitCode(DWORD* exit_code) = 0;
  virtual HRESULT SetComment(LPCWSTR comment) = 0;
  virtual HRESULT GetComment(LPWSTR* comment) = 0;
  virtual HRESULT SetCreator(LPCWSTR creator) = 0;
  virtual HRESULT GetCreator(LPWSTR* creator) = 0;
  // Published, and kNotImplemented on every platform so far. The interval is minutes.
  virtual HRESULT SetErrorRetryCount(WORD count) = 0;
  virtual HRESULT GetErrorRetryCount(WORD* count) = 0;
  virtual HRESULT SetErrorRetryInterval(WORD interval) = 0;
  virtual HRESULT GetErrorRetryInterval(WORD* interval) = 0;
  // kTaskFlag...
  virtual HRESULT SetFlags(DWORD flags) = 0;
  virtual HRESULT GetFlags(DWORD* flags) = 0;
  // The account that it runs as; empty for the computer's own, which has a null password.
  virtual HRESULT SetAccountInformation(LPCWSTR account, LPCWSTR password) = 0;
  // 0x80070002 where none was set.
  virtual HRESULT GetAccountInformation(LPWSTR* account) = 0;
  virtual HRESULT SetApplicationName(LPCWSTR application) = 0;
  virtual HRESULT GetApplicationName(LPWSTR* application) = 0;
  virtual HRESULT SetParameters(LPCWSTR parameters) = 0;
  virtual HRESULT GetParameters(LPWSTR* parameters) = 0;
  virtual HRESULT SetWorkingDirectory(LPCWSTR folder) = 0;
  virtual HRESULT GetWorkingDirectory(LPWSTR* folder) = 0;
  // A process's priority class.
  virtual HRESULT SetPriority(DWORD priority) = 0;
  virtual HRESULT GetPriority(DWORD* priority) = 0;
  // Milliseconds; all bits set for no limit.
  virtual HRESULT SetMaxRunTime(DWORD milliseconds) = 0;
  virtual HRESULT GetMaxRunTime(DWORD* milliseconds) = 0;
  // QueryInterface for IPersistFile.
  virtual HRESULT QueryPersistFile(Ref<IPersistFile>* file) = 0;
};

class IEnumWorkItems : public ReferenceCounted {
 public:
  // An array of up to `count` file names, "x.job", each freed by itself besides the array. kFalse
  // with a null array and 0 after the last one.
  virtual HRESULT Next(DWORD count, LPWSTR** names, DWORD* fetched) = 0;
};

class ITaskScheduler : public ReferenceCounted {
 public:
  // "\\\\SRV"; null for this computer, which it begins with. 0x80070035 for one that can't be
  // reached, 0x80070005 for one that the caller doesn't administer.
  virtual HRESULT SetTargetComputer(LPCWSTR computer) = 0;
  virtual HRESULT Enum(Ref<IEnumWorkItems>* items) = 0;
  // By name, with or without ".job", or by the full path of its file. 0x80070002 for a missing one,
  // 0x80070005 for one that may not be read, kInvalidTask for a file that is none.
  virtual HRESULT Activate(LPCWSTR name, Ref<ITask>* task) = 0;
  // By name. 0x80070002 for a missing one, kInvalidArgument for an empty name.
  virtual HRESULT Delete(LPCWSTR name) = 0;
  // A work item without a file yet. 0x80070050 for a name that exists.
  virtual HRESULT NewWorkItem(LPCWSTR name, Ref<ITask>* task) = 0;
};

// The Task Scheduler, version 1.0, of this computer and others.
class TaskScheduler {
 public:
  virtual ~TaskScheduler() = default;

  // A scheduler object. Fails where the platform has no scheduler, and on Windows in a thread that
  // didn't initialise COM.
  virtual HRESULT CoCreateInstance(Ref<ITaskScheduler>* scheduler) = 0;
};

}  // namespace veldmark
