#include <string>
#include <utility>
#include <vector>

#include "contract/World.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"
#include "platform/operations/TaskScheduler.h"

namespace veldmark {
namespace {

constexpr char16_t kName[] = u"Veldmark2 contract";

class TaskContract : public Contract {
 protected:
  TaskContract() {
    EXPECT_EQ(platform_.tasks.CoCreateInstance(&scheduler_), kOk);
    scheduler_->Delete(kName);
  }
  ~TaskContract() override { scheduler_->Delete(kName); }

  template <class Interface>
  std::u16string TextOf(Interface& object, HRESULT (Interface::*get)(LPWSTR*)) {
    TaskMemory<WCHAR> text(platform_.system);
    EXPECT_EQ((object.*get)(text.Receive()), kOk);
    return text ? text.Get() : u"(null)";
  }
  Ref<ITask> Activate(const std::u16string& name) {
    Ref<ITask> task;
    EXPECT_EQ(scheduler_->Activate(name.c_str(), &task), kOk);
    return task;
  }
  // A task with a trigger, saved.
  std::u16string Save() {
    Ref<ITask> task;
    EXPECT_EQ(scheduler_->NewWorkItem(kName, &task), kOk);
    for (const HRESULT result :
         {task->SetComment(u"note"), task->SetCreator(u"me"), task->SetParameters(u"/q"),
          task->SetWorkingDirectory(u"C:\\"), task->SetApplicationName(u"a.exe"),
          task->SetFlags(kTaskFlagDisabled), task->SetMaxRunTime(5000)}) {
      EXPECT_EQ(result, kOk);
    }
    Ref<ITaskTrigger> trigger;
    WORD index = 7;
    EXPECT_EQ(task->CreateTrigger(&index, &trigger), kOk);
    EXPECT_EQ(index, 0);
    Ref<IPersistFile> file;
    EXPECT_EQ(task->QueryPersistFile(&file), kOk);
    EXPECT_EQ(file->Save(nullptr, false), kOk);
    EXPECT_EQ(file->SaveCompleted(nullptr), kOk);
    return TextOf(*file, &IPersistFile::GetCurFile);
  }

  Ref<ITaskScheduler> scheduler_;
};

TEST_F(TaskContract, SavedTasksAreListedReadAndDeleted) {
  const std::u16string path = Save();
  Ref<ITask> other;
  EXPECT_EQ(scheduler_->NewWorkItem(kName, &other), ResultOf(kErrorFileExists));
  EXPECT_EQ(scheduler_->NewWorkItem(u"", &other), kInvalidArgument);
  Ref<IEnumWorkItems> items;
  ASSERT_EQ(scheduler_->Enum(&items), kOk);
  bool found = false;
  for (;;) {
    TaskMemory<LPWSTR> names(platform_.system);
    DWORD fetched = 0;
    if (items->Next(1, names.Receive(), &fetched) != kOk) {
      EXPECT_TRUE(fetched == 0 && !names);
      break;
    }
    const TaskMemory<WCHAR> name(platform_.system, *names.Get());
    found = found || std::u16string(name.Get()) == std::u16string(kName) + u".job";
  }
  EXPECT_TRUE(found);
  for (const std::u16string& name :
       {std::u16string(kName), std::u16string(kName) + u".job", path}) {
    const Ref<ITask> task = Activate(name);
    ASSERT_TRUE(task);
    EXPECT_EQ(TextOf(*task, &ITask::GetComment) + TextOf(*task, &ITask::GetCreator) +
                  TextOf(*task, &ITask::GetParameters) +
                  TextOf(*task, &ITask::GetWorkingDirectory) +
                  TextOf(*task, &ITask::GetApplicationName),
              u"noteme/qC:\\a.exe");
    DWORD flags = 0, limit = 0, priority = 0;
    WORD triggers = 0;
    EXPECT_TRUE(task->GetFlags(&flags) == kOk && task->GetMaxRunTime(&limit) == kOk &&
                task->GetPriority(&priority) == kOk && task->GetTriggerCount(&triggers) == kOk);
    EXPECT_EQ((std::vector<DWORD>{flags, limit, priority, triggers}),
              (std::vector<DWORD>{kTaskFlagDisabled, 5000, kNormalPriorityClass, 1}));
  }
  EXPECT_EQ(scheduler_->Delete(u""), kInvalidArgument);
  EXPECT_EQ(scheduler_->Delete(kName), kOk);
  EXPECT_EQ(scheduler_->Delete(kName), ResultOf(kErrorFileNotFound));
  EXPECT_EQ(scheduler_->Activate(kName, &other), ResultOf(kErrorFileNotFound));
}

TEST_F(TaskContract, NewTasksHaveNothingToTell) {
  Ref<ITask> task;
  ASSERT_EQ(scheduler_->NewWorkItem(kName, &task), kOk);
  HRESULT status = 0;
  EXPECT_EQ(task->GetStatus(&status), kOk);
  EXPECT_EQ(status, kTaskNotScheduled);
  DWORD code = 1;
  EXPECT_EQ(task->GetExitCode(&code), kTaskHasNotRun);
  EXPECT_EQ(code, 0u);
  SYSTEMTIME time{};
  EXPECT_EQ(task->GetMostRecentRunTime(&time), kTaskHasNotRun);
  EXPECT_EQ(task->GetNextRunTime(&time), kTaskNoValidTriggers);
  EXPECT_EQ(time.wYear, 0);
  TaskMemory<WCHAR> account(platform_.system);
  EXPECT_EQ(task->GetAccountInformation(account.Receive()), ResultOf(kErrorFileNotFound));
  WORD retries = 0;
  EXPECT_EQ(task->GetErrorRetryCount(&retries), kNotImplemented);
  EXPECT_EQ(task->SetErrorRetryInterval(1), kNotImplemented);
  EXPECT_EQ(task->Run(), kTaskNotReady);
  EXPECT_EQ(task->Terminate(), kTaskNotRunning);
  EXPECT_EQ(task->DeleteTrigger(0), kTriggerNotFound);
}

TEST_F(TaskContract, TriggersAreTakenAsTheyAreSound) {
  Ref<ITask> task;
  ASSERT_EQ(scheduler_->NewWorkItem(kName, &task), kOk);
  Ref<ITaskTrigger> trigger;
  WORD index = 0;
  ASSERT_EQ(task->CreateTrigger(&index, &trigger), kOk);
  TASK_TRIGGER record{};
  ASSERT_EQ(trigger->GetTrigger(&record), kOk);
  EXPECT_EQ(record.TriggerType, kTriggerDaily);
  EXPECT_EQ(record.rgFlags, kTriggerDisabled);
  record.wBeginYear = 2030;
  record.wBeginMonth = record.wBeginDay = 3;
  record.wStartHour = 9;
  record.wStartMinute = 5;
  const std::pair<void (*)(TASK_TRIGGER&), HRESULT> rows[] = {
      {[](TASK_TRIGGER&) {}, kOk},
      {[](TASK_TRIGGER& r) { r.cbTriggerSize = kShortTriggerSize; }, kOk},
      {[](TASK_TRIGGER& r) { r.cbTriggerSize = 47; }, kInvalidArgument},
      {[](TASK_TRIGGER& r) { r.wStartHour = 24; }, kInvalidArgument},
      {[](TASK_TRIGGER& r) { r.wBeginMonth = 13; }, kInvalidArgument},
      {[](TASK_TRIGGER& r) { r.rgFlags = kTriggerHasEndDate; }, kInvalidArgument},
      {[](TASK_TRIGGER& r) { r.MinutesInterval = r.MinutesDuration = 10; }, kInvalidArgument}};
  for (const auto& [change, result] : rows) {
    TASK_TRIGGER changed = record;
    change(changed);
    EXPECT_EQ(trigger->SetTrigger(&changed), result);
  }
  EXPECT_EQ(TextOf(*trigger, &ITaskTrigger::GetTriggerString),
            u"At 9:05 AM every day, starting 3/3/2030");
}

TEST_F(TaskContract, OtherComputersAreReachedOrMissed) {
  EXPECT_EQ(scheduler_->SetTargetComputer(nullptr), kOk);
  EXPECT_EQ(scheduler_->SetTargetComputer(u"\\\\no-such-computer"), ResultOf(kErrorBadNetPath));
}

}  // namespace
}  // namespace veldmark
