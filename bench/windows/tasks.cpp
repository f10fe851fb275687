// 200 scheduled tasks with two triggers each, listed by the library beside the scheduler's own
// calls, in one run:
//
//   bench_tasks.exe SERVER.dll
//
// Makes the tasks and deletes them afterwards. The bare loop makes every call that the lists make.

#include <windows.h>

#include <mstask.h>
#include <objbase.h>

#include <cwchar>
#include <string>
#include <utility>

#include "Measure.h"

namespace {

using namespace bench;

constexpr int kTasks = 200;
constexpr WORD kTriggers = 2;

constexpr GUID kSchedulerClass = {
    0x148BD52A, 0xA2AB, 0x11CE, {0xB1, 0x1F, 0x00, 0xAA, 0x00, 0x53, 0x05, 0x03}};
constexpr GUID kSchedulerInterface = {
    0x148BD527, 0xA2AB, 0x11CE, {0xB1, 0x1F, 0x00, 0xAA, 0x00, 0x53, 0x05, 0x03}};
constexpr GUID kTaskClass = {
    0x148BD520, 0xA2AB, 0x11CE, {0xB1, 0x1F, 0x00, 0xAA, 0x00, 0x53, 0x05, 0x03}};
constexpr GUID kTaskInterface = {
    0x148BD524, 0xA2AB, 0x11CE, {0xB1, 0x1F, 0x00, 0xAA, 0x00, 0x53, 0x05, 0x03}};

// A counted reference to an interface.
template <class Interface>
class Com {
 public:
  Com() = default;
  Com(const Com&) = delete;
  Com& operator=(const Com&) = delete;
  ~Com() {
    if (pointer_ != nullptr) pointer_->Release();
  }
  Interface* operator->() const { return pointer_; }
  Interface* Get() const { return pointer_; }
  Interface** Receive() { return &pointer_; }
  template <class As>
  As** ReceiveAs() {
    return reinterpret_cast<As**>(&pointer_);
  }

 private:
  Interface* pointer_ = nullptr;
};

void OpenScheduler(Com<ITaskScheduler>& scheduler) {
  Check(CoCreateInstance(kSchedulerClass, nullptr, CLSCTX_INPROC_SERVER, kSchedulerInterface,
                         scheduler.ReceiveAs<void>()),
        "CoCreateInstance");
}

std::wstring TaskName(int number) { return L"Veldmark2 bench task " + std::to_wstring(number); }

void DeleteTasks() {
  Com<ITaskScheduler> scheduler;
  OpenScheduler(scheduler);
  for (int i = 0; i < kTasks; ++i) scheduler->Delete(TaskName(i).c_str());
}

void MakeTasks() {
  Com<ITaskScheduler> scheduler;
  OpenScheduler(scheduler);
  for (int i = 0; i < kTasks; ++i) {
    Com<ITask> task;
    Check(scheduler->NewWorkItem(TaskName(i).c_str(), kTaskClass, kTaskInterface,
                                 task.ReceiveAs<IUnknown>()),
          "NewWorkItem");
    task->SetApplicationName(L"C:\\windows\\notepad.exe");
    task->SetParameters(L"\"C:\\notes of the day.txt\"");
    task->SetWorkingDirectory(L"C:\\windows");
    task->SetComment(L"Shows the notes of the day.");
    task->SetCreator(L"Veldmark2 bench");
    for (WORD hour = 0; hour < kTriggers; ++hour) {
      WORD index = 0;
      Com<ITaskTrigger> trigger;
      Check(task->CreateTrigger(&index, trigger.Receive()), "CreateTrigger");
      TASK_TRIGGER record{};
      record.cbTriggerSize = sizeof record;
      record.wBeginYear = 2030;
      record.wBeginMonth = 3;
      record.wBeginDay = 5;
      record.wStartHour = 9 + hour;
      record.TriggerType = TASK_TIME_TRIGGER_DAILY;
      record.Type.Daily.DaysInterval = 1;
      Check(trigger->SetTrigger(&record), "SetTrigger");
    }
    Com<IPersistFile> file;
    Check(task->QueryInterface(IID_IPersistFile, file.ReceiveAs<void>()), "IPersistFile");
    Check(file->Save(nullptr, FALSE), "Save");
  }
}

struct Total {
  std::size_t tasks = 0;
  std::size_t triggers = 0;
  bool operator==(const Total&) const = default;
};

template <class Object, class Method>
void ReadText(const Com<Object>& object, Method method) {
  LPWSTR text = nullptr;
  if (SUCCEEDED((object.Get()->*method)(&text))) CoTaskMemFree(text);
}

void BareFields(const Com<ITask>& task) {
  using Get = HRESULT (STDMETHODCALLTYPE ITask::*)(LPWSTR*);
  static constexpr Get kTexts[] = {&ITask::GetApplicationName, &ITask::GetWorkingDirectory,
                                   &ITask::GetParameters,      &ITask::GetAccountInformation,
                                   &ITask::GetComment,         &ITask::GetCreator};
  for (const Get text : kTexts) ReadText(task, text);
  WORD word = 0;
  task->GetErrorRetryCount(&word);
  task->GetErrorRetryInterval(&word);
  DWORD number = 0;
  task->GetExitCode(&number);
  task->GetFlags(&number);
  task->GetMaxRunTime(&number);
  task->GetPriority(&number);
  HRESULT status = S_OK;
  task->GetStatus(&status);
  SYSTEMTIME time{};
  task->GetMostRecentRunTime(&time);
  task->GetNextRunTime(&time);
  Com<IPersistFile> file;
  if (SUCCEEDED(task->QueryInterface(IID_IPersistFile, file.ReceiveAs<void>()))) {
    ReadText(file, &IPersistFile::GetCurFile);
  }
}

std::size_t BareTriggers(const Com<ITask>& task) {
  WORD count = 0;
  task->GetTriggerCount(&count);
  std::size_t read = 0;
  for (WORD index = 0; index < count; ++index) {
    Com<ITaskTrigger> trigger;
    if (FAILED(task->GetTrigger(index, trigger.Receive()))) continue;
    TASK_TRIGGER record{};
    record.cbTriggerSize = sizeof record;
    if (SUCCEEDED(trigger->GetTrigger(&record))) ++read;
    // Wine puts no trigger in words; the library does it in its place.
    ReadText(trigger, &ITaskTrigger::GetTriggerString);
  }
  return read;
}

Total BareWalk(const std::wstring& computer) {
  Total total;
  Com<ITaskScheduler> scheduler;
  OpenScheduler(scheduler);
  // Wine has this computer's tasks only, and may refuse any name.
  scheduler->SetTargetComputer(computer.c_str());
  Com<IEnumWorkItems> items;
  Check(scheduler->Enum(items.Receive()), "Enum");
  LPWSTR* names = nullptr;
  DWORD fetched = 0;
  while (items->Next(1, &names, &fetched) == S_OK && fetched == 1) {
    std::wstring name = *names;
    CoTaskMemFree(*names);
    CoTaskMemFree(names);
    // Wine doesn't know a task by the name of its file.
    if (name.ends_with(L".job")) name.resize(name.size() - 4);
    Com<ITask> task;
    Check(scheduler->Activate(name.c_str(), kTaskInterface, task.ReceiveAs<IUnknown>()),
          "Activate");
    ++total.tasks;
    BareFields(task);
    total.triggers += BareTriggers(task);
  }
  return total;
}

Total OurWalk(_CServer* server) {
  Total total;
  Com<_CTasks> tasks;
  Check(server->GetTasks(tasks.Receive()), "GetTasks");
  Com<IUnknown> unknown;
  Check(tasks->get_NewEnum(unknown.Receive()), "NewEnum");
  Com<IEnumVARIANT> enumerator;
  Check(unknown->QueryInterface(IID_IEnumVARIANT, enumerator.ReceiveAs<void>()), "IEnumVARIANT");
  VARIANT item;
  while (enumerator->Next(1, &item, nullptr) == S_OK) {
    Com<_CTask> task;
    Check(V_DISPATCH(&item)->QueryInterface(IID__CTask, task.ReceiveAs<void>()), "_CTask");
    VariantClear(&item);
    Com<_CTriggers> triggers;
    Check(task->GetTriggers(triggers.Receive()), "GetTriggers");
    LONG count = 0;
    triggers->get_Count(&count);
    ++total.tasks;
    total.triggers += static_cast<std::size_t>(count);
  }
  return total;
}

bool Measure(const wchar_t* server_path) {
  Com<_SystemRoot> root;
  *root.Receive() = CreateRoot(server_path);
  BSTR name = nullptr;
  Check(root->get_LocalComputerName(&name), "LocalComputerName");
  const std::wstring computer = std::wstring(L"\\\\") + name;
  const BSTR domain = SysAllocString(L"");
  Com<_CServer> server;
  Check(root->GetServer(name, domain, server.Receive()), "GetServer");
  SysFreeString(name);
  SysFreeString(domain);

  const Total bare_total = BareWalk(computer);
  const Total our_total = OurWalk(server.Get());
  if (bare_total != our_total || bare_total.tasks < kTasks ||
      bare_total.triggers < kTasks * kTriggers) {
    std::printf("the two walks disagree: %zu tasks, %zu triggers and %zu tasks, %zu triggers\n",
                bare_total.tasks, bare_total.triggers, our_total.tasks, our_total.triggers);
    return false;
  }
  const double bare = Best([&] { BareWalk(computer); });
  const double ours = Best([&] { OurWalk(server.Get()); });
  Head();
  Row("200 tasks with two triggers each, early-bound", ours * 1000, bare * 1000, "ms", 1.3);
  return true;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 2) return 2;
  Check(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), "CoInitializeEx");
  // A run that was cut short leaves them behind.
  DeleteTasks();
  MakeTasks();
  const bool agree = Measure(argv[1]);
  DeleteTasks();
  CoUninitialize();
  return agree ? 0 : 1;
}
