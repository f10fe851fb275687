#pragma once

#include "automation/Object.h"
#include "automation/Text.h"
#include "platform/operations/TaskScheduler.h"

namespace veldmark {

class CTask;
class CTasks;

/// The scheduler of one computer, for one call.
class CTaskScheduler {
 public:
  /// Raises the platform's result where it has no scheduler.
  CTaskScheduler();

  /// With or without "\\" before it.
  Text TargetComputer;
  /// Handed on to each task.
  Text DomainName;
  Text ServerName;

  /// The computer's tasks, each with all its fields. Raises the scheduler's result, also for a
  /// single task that can't be activated.
  Ref<CTasks> GetTasks();
  /// A task that isn't saved yet; its `Name` stays empty. Raises the scheduler's result.
  Ref<CTask> CreateNewTask(const Text& task_name);

 private:
  Text MarkedTarget() const;

  Ref<ITaskScheduler> scheduler_;
};

}  // namespace veldmark
