#pragma once

#include "platform/operations/TaskScheduler.h"
#include "platform/simulated/families/Session.h"

namespace veldmark::simulated {

// The scheduled tasks of an estate's computers, which are the job files in their folder
// "C:\Windows\Tasks". Each call brings the tasks that it is about up to the estate's clock.
//
// The journal notes methods as "ITask::SetComment", with the computer, the name or the value that
// they were given; never a password. Letting go of an interface is no call.
class SimulatedTaskScheduler final : public TaskScheduler {
 public:
  explicit SimulatedTaskScheduler(Session& session) : session_(session) {}

  HRESULT CoCreateInstance(Ref<ITaskScheduler>* scheduler) override;

 private:
  Session& session_;
};

}  // namespace veldmark::simulated
