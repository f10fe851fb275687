#pragma once

#include <memory>

#include "automation/Object.h"
#include "automation/Secret.h"
#include "automation/Setting.h"
#include "automation/Text.h"
#include "automation/Values.h"
#include "platform/operations/TaskScheduler.h"
#include "tasks/TaskEnumerations.h"

namespace veldmark {

class CTrigger;
class CTriggers;

/// A scheduled task: a copy of all its fields, read once, in `Refresh` or when a listing made it.
/// Puts change this copy; `Save` writes those that were put to the task and the task to its job
/// file. One that `CServer.CreateTaskObject` made has no task behind it and only holds values.
class CTask : public Exported<CTask> {
 public:
  static const Interface& Describe();

  /// Raise the scheduler's result. Without a task they do nothing.
  void Run();
  void Terminate();
  void ShowProperties(std::int32_t& parent_window);
  /// Raises 232 without a task, and the scheduler's result.
  void Save(const Text& file_name, bool save_as_copy);
  /// Both raise 91 without a task, and the scheduler's result.
  Ref<CTriggers> GetTriggers();
  Ref<CTrigger> CreateTrigger();
  /// Raises the scheduler's result, the fields as they were.
  void Refresh();
  void Delete();

  Setting<Text> Name;
  Setting<Text> ApplicationName;
  Setting<Text> WorkingDirectory;
  Setting<Text> FileName;
  Setting<Text> CommandLine;
  Setting<Text> AccountInformation;
  Setting<Text> Comment;
  Setting<Text> Creator;
  Setting<std::int16_t> ErrorRetryCount;
  Setting<std::int16_t> ErrorRetryInterval;
  Setting<TaskFlagsEnum> Flags;
  Setting<std::int32_t> MaxRunTime;  ///< milliseconds
  Setting<std::int32_t> Priority;    ///< a process's priority class
  Text DomainName;
  Text ServerName;

  std::int32_t ExitCode() const { return exit_code_; }
  std::int32_t Status() const { return status_; }
  /// Local time.
  Date LastRunTime() const { return last_run_time_; }
  Date NextRunTime() const { return next_run_time_; }
  void PutPassword(Secret password);

  /// For the library's own use: takes a task over and reads all its fields but the name.
  void SetTaskObject(Ref<ITask> task);
  const Ref<ITask>& GetTaskObject() const { return task_; }
  /// Takes the name from that of a job file, "x.job" or a path. Raises 5 for a shorter one.
  void SetNameOfFile(TextView file_name);

 private:
  void LoadTaskFields();
  void WriteChanges();
  ITask& Task() const;

  std::unique_ptr<Secret> password_;
  std::int32_t exit_code_ = 0;
  std::int32_t status_ = 0;
  Date last_run_time_;
  Date next_run_time_;
  Ref<ITask> task_;
};

}  // namespace veldmark
