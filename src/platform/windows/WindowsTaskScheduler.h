#pragma once

#include "platform/operations/TaskScheduler.h"

namespace veldmark {

/// The Task Scheduler of the operating system, by its interfaces of version 1.0.
class WindowsTaskScheduler final : public TaskScheduler {
 public:
  HRESULT CoCreateInstance(Ref<ITaskScheduler>* scheduler) override;
};

}  // namespace veldmark
