#include "apartment/CSupport.h"
#include "apartment/Errors.h"
#include "network/CServer.h"
#include "tasks/CTask.h"
#include "tasks/CTaskScheduler.h"
#include "tasks/CTasks.h"

namespace veldmark {

Ref<CTasks> CSupport::GetTasks(CServer& server) {
  return ReRaising([&] {
    CTaskScheduler scheduler;
    scheduler.TargetComputer = server.ServerName;
    scheduler.DomainName = server.DomainName;
    scheduler.ServerName = server.ServerName;
    return scheduler.GetTasks();
  });
}

Ref<CTask> CSupport::CreateTask(CServer& server, const Text& task_name) {
  return ReRaising([&] {
    CTaskScheduler scheduler;
    scheduler.TargetComputer = server.ServerName;
    const Ref<CTask> task = scheduler.CreateNewTask(task_name);
    task->DomainName = server.DomainName;
    task->ServerName = server.ServerName;
    return task;
  });
}

}  // namespace veldmark
