#include "tasks/CTaskScheduler.h"

#include <span>

#include "apartment/Errors.h"
#include "tasks/CTask.h"
#include "tasks/CTasks.h"
#include "tasks/SchedulerCalls.h"

namespace veldmark {
namespace {

constexpr TextView kClassName = u"CTaskScheduler";
constexpr TextView kServerMark = u"\\\\";

/// The next name of an enumeration; false after the last one. A name that is none is passed over.
bool NextName(IEnumWorkItems& items, Text& name) {
  System& system = Apartment::Current().platform.system;
  for (;;) {
    TaskMemory<LPWSTR> names(system);
    DWORD fetched = 0;
    const HRESULT result = items.Next(1, names.Receive(), &fetched);
    Require(result, kClassName);
    if (result != kOk || !names) return false;
    if (*names.Get() == nullptr) continue;
    name = WidePtrToString(*names.Get(), true);
    return true;
  }
}

}  // namespace

CTaskScheduler::CTaskScheduler() {
  Require(Apartment::Current().platform.tasks.CoCreateInstance(&scheduler_), kClassName);
}

Ref<CTasks> CTaskScheduler::GetTasks() {
  return ReRaising([&] {
    const Ref<CTasks> tasks = Make<CTasks>();
    TargetComputer = MarkedTarget();
    Require(scheduler_->SetTargetComputer(TargetComputer.c_str()), kClassName);
    Ref<IEnumWorkItems> items;
    Require(scheduler_->Enum(&items), kClassName);
    for (Text name; NextName(*items, name);) {
      const Ref<CTask> task = Make<CTask>();
      Ref<ITask> item;
      Require(scheduler_->Activate(name.c_str(), &item), kClassName);
      task->SetTaskObject(std::move(item));
      task->SetNameOfFile(name);
      task->DomainName = DomainName;
      task->ServerName = ServerName;
      tasks->Add(task.Get());
    }
    return tasks;
  });
}

Ref<CTask> CTaskScheduler::CreateNewTask(const Text& task_name) {
  return ReRaising([&] {
    Require(scheduler_->SetTargetComputer(MarkedTarget().c_str()), kClassName);
    Ref<ITask> item;
    Require(scheduler_->NewWorkItem(task_name.c_str(), &item), kClassName);
    const Ref<CTask> task = Make<CTask>();
    task->SetTaskObject(std::move(item));
    task->Creator.Put(Text(kLibraryName));
    return task;
  });
}

Text CTaskScheduler::MarkedTarget() const {
  const bool has_mark = TargetComputer.starts_with(kServerMark);
  return has_mark ? TargetComputer : Text(kServerMark) + TargetComputer;
}

}  // namespace veldmark
