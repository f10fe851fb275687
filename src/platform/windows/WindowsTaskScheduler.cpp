#include "platform/windows/WindowsTaskScheduler.h"

#include <windows.h>

#include <mstask.h>
#include <objbase.h>

#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include "platform/operations/ErrorCodes.h"
#include "platform/scheduling/TriggerTimes.h"
#include "platform/windows/Recorded.h"
#include "platform/windows/Sdk.h"
#include "platform/windows/WineDifferences.h"

namespace veldmark {
namespace {

constexpr ::GUID kSchedulerClass = {
    0x148BD52A, 0xA2AB, 0x11CE, {0xB1, 0x1F, 0x00, 0xAA, 0x00, 0x53, 0x05, 0x03}};
constexpr ::GUID kSchedulerInterface = {
    0x148BD527, 0xA2AB, 0x11CE, {0xB1, 0x1F, 0x00, 0xAA, 0x00, 0x53, 0x05, 0x03}};
constexpr ::GUID kTaskClass = {
    0x148BD520, 0xA2AB, 0x11CE, {0xB1, 0x1F, 0x00, 0xAA, 0x00, 0x53, 0x05, 0x03}};
constexpr ::GUID kTaskInterface = {
    0x148BD524, 0xA2AB, 0x11CE, {0xB1, 0x1F, 0x00, 0xAA, 0x00, 0x53, 0x05, 0x03}};
constexpr ::GUID kPersistFileInterface = {
    0x0000010B, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

constexpr std::u16string_view kJobExtension = u".job";

/// The platform's reference to an interface.
template <class Interface>
class Held {
 public:
  Held() = default;
  explicit Held(Interface* pointer) : pointer_(pointer) {}
  Held(Held&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  Held& operator=(Held&&) = delete;
  ~Held() {
    if (pointer_ != nullptr) pointer_->Release();
  }
  Interface* operator->() const { return pointer_; }
  Interface** Receive() { return &pointer_; }

 private:
  Interface* pointer_ = nullptr;
};

template <class Call>
HRESULT Asked(Call&& call) {
  return Recorded([&] { return HRESULT{call()}; });
}

const wchar_t* Wide(LPCWSTR text) { return Sdk(text); }

/// The text in a block that CoTaskMemFree frees; null where there is no memory.
LPWSTR CopyOut(std::u16string_view text) {
  auto* const copy = static_cast<LPWSTR>(::CoTaskMemAlloc((text.size() + 1) * sizeof(char16_t)));
  if (copy != nullptr) copy[text.copy(copy, text.size())] = u'\0';
  return copy;
}

class WindowsTrigger final : public ITaskTrigger {
 public:
  explicit WindowsTrigger(Held<::ITaskTrigger> trigger) : trigger_(std::move(trigger)) {}

  HRESULT SetTrigger(const TASK_TRIGGER* trigger) override {
    ::TASK_TRIGGER record;
    static_assert(sizeof record == sizeof *trigger);
    std::memcpy(&record, trigger, sizeof record);
    // Wine takes the whole record only; the field that the shorter one leaves alone keeps its
    // value.
    if (RunsUnderWine() && record.cbTriggerSize == kShortTriggerSize) {
      ::TASK_TRIGGER old{};
      old.cbTriggerSize = sizeof old;
      trigger_->GetTrigger(&old);
      record.cbTriggerSize = sizeof record;
      record.wRandomMinutesInterval = old.wRandomMinutesInterval;
    }
    return Asked([&] { return trigger_->SetTrigger(&record); });
  }

  HRESULT GetTrigger(TASK_TRIGGER* trigger) override {
    trigger->cbTriggerSize = kTriggerSize;
    return Asked([&] { return trigger_->GetTrigger(reinterpret_cast<::TASK_TRIGGER*>(trigger)); });
  }

  HRESULT GetTriggerString(LPWSTR* text) override {
    const HRESULT result = Asked([&] { return trigger_->GetTriggerString(Sdk(text)); });
    if (result != kNotImplemented || !RunsUnderWine()) return result;
    // Wine puts no trigger in words.
    TASK_TRIGGER record{};
    if (const HRESULT error = GetTrigger(&record); Failed(error)) return error;
    *text = CopyOut(TriggerText(record));
    return *text == nullptr ? kNoMemory : kOk;
  }

 private:
  static ::LPWSTR* Sdk(LPWSTR* text) { return reinterpret_cast<::LPWSTR*>(text); }

  Held<::ITaskTrigger> trigger_;
};

class WindowsPersistFile final : public IPersistFile {
 public:
  explicit WindowsPersistFile(Held<::IPersistFile> file) : file_(std::move(file)) {}

  HRESULT Save(LPCWSTR file_name, BOOL remember) override {
    return Asked([&] { return file_->Save(Wide(file_name), remember); });
  }
  HRESULT SaveCompleted(LPCWSTR file_name) override {
    const HRESULT result = Asked([&] { return file_->SaveCompleted(Wide(file_name)); });
    // Wine has nothing to complete, and says that it doesn't know how.
    return result == kNotImplemented && RunsUnderWine() ? kOk : result;
  }
  HRESULT GetCurFile(LPWSTR* file_name) override {
    return Asked([&] { return file_->GetCurFile(reinterpret_cast<::LPWSTR*>(file_name)); });
  }

 private:
  Held<::IPersistFile> file_;
};

class WindowsTask final : public ITask {
 public:
  explicit WindowsTask(Held<::ITask> task) : task_(std::move(task)) {}

  HRESULT CreateTrigger(WORD* index, Ref<ITaskTrigger>* trigger) override {
    Held<::ITaskTrigger> created;
    const HRESULT result = Asked([&] { return task_->CreateTrigger(index, created.Receive()); });
    if (!Failed(result)) *trigger = Make<WindowsTrigger>(std::move(created));
    return result;
  }
  HRESULT DeleteTrigger(WORD index) override {
    return Asked([&] { return task_->DeleteTrigger(index); });
  }
  HRESULT GetTriggerCount(WORD* count) override {
    return Asked([&] { return task_->GetTriggerCount(count); });
  }
  HRESULT GetTrigger(WORD index, Ref<ITaskTrigger>* trigger) override {
    Held<::ITaskTrigger> found;
    const HRESULT result = Asked([&] { return task_->GetTrigger(index, found.Receive()); });
    if (!Failed(result)) *trigger = Make<WindowsTrigger>(std::move(found));
    return result;
  }
  HRESULT GetNextRunTime(SYSTEMTIME* next) override {
    return Asked([&] { return task_->GetNextRunTime(Sdk(next)); });
  }
  HRESULT Run() override {
    return Asked([&] { return task_->Run(); });
  }
  HRESULT Terminate() override {
    return Asked([&] { return task_->Terminate(); });
  }
  HRESULT EditWorkItem(HWND parent, DWORD reserved) override {
    return Asked([&] { return task_->EditWorkItem(Sdk(parent), reserved); });
  }
  HRESULT GetMostRecentRunTime(SYSTEMTIME* last) override {
    return Asked([&] { return task_->GetMostRecentRunTime(Sdk(last)); });
  }
  HRESULT GetStatus(HRESULT* status) override {
    ::HRESULT told = 0;
    const HRESULT result = Asked([&] { return task_->GetStatus(&told); });
    *status = HRESULT{told};
    return result;
  }
  HRESULT GetExitCode(DWORD* exit_code) override {
    return Number(&::ITask::GetExitCode, exit_code);
  }
  HRESULT SetComment(LPCWSTR comment) override { return Put(&::ITask::SetComment, comment); }
  HRESULT GetComment(LPWSTR* comment) override { return Get(&::ITask::GetComment, comment); }
  HRESULT SetCreator(LPCWSTR creator) override { return Put(&::ITask::SetCreator, creator); }
  HRESULT GetCreator(LPWSTR* creator) override { return Get(&::ITask::GetCreator, creator); }
  HRESULT SetErrorRetryCount(WORD count) override {
    return Asked([&] { return task_->SetErrorRetryCount(count); });
  }
  HRESULT GetErrorRetryCount(WORD* count) override {
    return Asked([&] { return task_->GetErrorRetryCount(count); });
  }
  HRESULT SetErrorRetryInterval(WORD interval) override {
    return Asked([&] { return task_->SetErrorRetryInterval(interval); });
  }
  HRESULT GetErrorRetryInterval(WORD* interval) override {
    return Asked([&] { return task_->GetErrorRetryInterval(interval); });
  }
  HRESULT SetFlags(DWORD flags) override {
    return Asked([&] { return task_->SetFlags(flags); });
  }
  HRESULT GetFlags(DWORD* flags) override { return Number(&::ITask::GetFlags, flags); }
  HRESULT SetAccountInformation(LPCWSTR account, LPCWSTR password) override {
    return Asked([&] { return task_->SetAccountInformation(Wide(account), Wide(password)); });
  }
  HRESULT GetAccountInformation(LPWSTR* account) override {
    return Get(&::ITask::GetAccountInformation, account);
  }
  HRESULT SetApplicationName(LPCWSTR application) override {
    return Put(&::ITask::SetApplicationName, application);
  }
  HRESULT GetApplicationName(LPWSTR* application) override {
    return Get(&::ITask::GetApplicationName, application);
  }
  HRESULT SetParameters(LPCWSTR parameters) override {
    return Put(&::ITask::SetParameters, parameters);
  }
  HRESULT GetParameters(LPWSTR* parameters) override {
    return Get(&::ITask::GetParameters, parameters);
  }
  HRESULT SetWorkingDirectory(LPCWSTR folder) override {
    return Put(&::ITask::SetWorkingDirectory, folder);
  }
  HRESULT GetWorkingDirectory(LPWSTR* folder) override {
    return Get(&::ITask::GetWorkingDirectory, folder);
  }
  HRESULT SetPriority(DWORD priority) override {
    return Asked([&] { return task_->SetPriority(priority); });
  }
  HRESULT GetPriority(DWORD* priority) override { return Number(&::ITask::GetPriority, priority); }
  HRESULT SetMaxRunTime(DWORD milliseconds) override {
    return Asked([&] { return task_->SetMaxRunTime(milliseconds); });
  }
  HRESULT GetMaxRunTime(DWORD* milliseconds) override {
    return Number(&::ITask::GetMaxRunTime, milliseconds);
  }
  HRESULT QueryPersistFile(Ref<IPersistFile>* file) override {
    Held<::IPersistFile> found;
    const HRESULT result = Asked([&] {
      return task_->QueryInterface(kPersistFileInterface,
                                   reinterpret_cast<void**>(found.Receive()));
    });
    if (!Failed(result)) *file = Make<WindowsPersistFile>(std::move(found));
    return result;
  }

 private:
  template <class Method>
  HRESULT Put(Method method, LPCWSTR text) {
    return Asked([&] { return (task_.operator->()->*method)(Wide(text)); });
  }
  template <class Method>
  HRESULT Get(Method method, LPWSTR* text) {
    return Asked([&] { return (task_.operator->()->*method)(reinterpret_cast<::LPWSTR*>(text)); });
  }
  template <class Method>
  HRESULT Number(Method method, DWORD* number) {
    return Asked([&] { return (task_.operator->()->*method)(Sdk(number)); });
  }

  Held<::ITask> task_;
};

class WindowsEnumeration final : public IEnumWorkItems {
 public:
  explicit WindowsEnumeration(Held<::IEnumWorkItems> items) : items_(std::move(items)) {}

  HRESULT Next(DWORD count, LPWSTR** names, DWORD* fetched) override {
    *names = nullptr;
    *fetched = 0;
    return Asked(
        [&] { return items_->Next(count, reinterpret_cast<::LPWSTR**>(names), Sdk(fetched)); });
  }

 private:
  Held<::IEnumWorkItems> items_;
};

class WindowsScheduler final : public ITaskScheduler {
 public:
  explicit WindowsScheduler(Held<::ITaskScheduler> scheduler) : scheduler_(std::move(scheduler)) {}

  HRESULT SetTargetComputer(LPCWSTR computer) override {
    if (const DWORD error = OtherServerUnderWine(computer)) return ResultOf(error);
    const HRESULT result = Asked([&] { return scheduler_->SetTargetComputer(Wide(computer)); });
    // Wine has this computer's tasks only, by whatever name.
    return Failed(result) && RunsUnderWine() ? kOk : result;
  }
  HRESULT Enum(Ref<IEnumWorkItems>* items) override {
    Held<::IEnumWorkItems> found;
    const HRESULT result = Asked([&] { return scheduler_->Enum(found.Receive()); });
    if (!Failed(result)) *items = Make<WindowsEnumeration>(std::move(found));
    return result;
  }
  HRESULT Activate(LPCWSTR name, Ref<ITask>* task) override {
    Held<::ITask> found;
    const std::u16string known = KnownName(name);
    const HRESULT result = Asked([&] {
      return scheduler_->Activate(Wide(known.c_str()), kTaskInterface,
                                  reinterpret_cast<::IUnknown**>(found.Receive()));
    });
    if (!Failed(result)) *task = Make<WindowsTask>(std::move(found));
    return result;
  }
  HRESULT Delete(LPCWSTR name) override {
    if (name == nullptr || *name == u'\0') return kInvalidArgument;
    const std::u16string known = KnownName(name);
    return Asked([&] { return scheduler_->Delete(Wide(known.c_str())); });
  }
  HRESULT NewWorkItem(LPCWSTR name, Ref<ITask>* task) override {
    if (name == nullptr || *name == u'\0') return kInvalidArgument;
    // Wine makes another task of a name that exists.
    Ref<ITask> existing;
    if (RunsUnderWine() && !Failed(Activate(name, &existing))) return ResultOf(kErrorFileExists);
    Held<::ITask> created;
    const HRESULT result = Asked([&] {
      return scheduler_->NewWorkItem(Wide(name), kTaskClass, kTaskInterface,
                                     reinterpret_cast<::IUnknown**>(created.Receive()));
    });
    if (!Failed(result)) *task = Make<WindowsTask>(std::move(created));
    return result;
  }

 private:
  /// Wine knows tasks by their bare names, and no file by its path or extension.
  static std::u16string KnownName(LPCWSTR name) {
    std::u16string_view known = name == nullptr ? u"" : name;
    if (!RunsUnderWine()) return std::u16string(known);
    if (const std::size_t end = known.rfind(u'\\'); end != known.npos) known.remove_prefix(end + 1);
    if (known.ends_with(kJobExtension)) known.remove_suffix(kJobExtension.size());
    return std::u16string(known);
  }

  Held<::ITaskScheduler> scheduler_;
};

}  // namespace

HRESULT WindowsTaskScheduler::CoCreateInstance(Ref<ITaskScheduler>* scheduler) {
  Held<::ITaskScheduler> created;
  const HRESULT result = Asked([&] {
    return ::CoCreateInstance(kSchedulerClass, nullptr, CLSCTX_INPROC_SERVER, kSchedulerInterface,
                              reinterpret_cast<void**>(created.Receive()));
  });
  if (!Failed(result)) *scheduler = Make<WindowsScheduler>(std::move(created));
  return result;
}

}  // namespace veldmark
