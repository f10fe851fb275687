#include "tasks/CTask.h"

#include "apartment/Errors.h"
#include "automation/Declare.h"
#include "tasks/CTrigger.h"
#include "tasks/CTriggers.h"
#include "tasks/SchedulerCalls.h"

namespace veldmark {
namespace {

constexpr TextView kClassName = u"CTask";
constexpr std::int32_t kNoTaskObject = 232;
constexpr std::size_t kExtensionLength = 4;

template <auto kSetting>
struct SettingForm;
template <class Value, Setting<Value> CTask::*kSetting>
struct SettingForm<kSetting> {
  static Value Get(CTask& self) { return (self.*kSetting).Get(); }
  static void Put(CTask& self, Value value) { (self.*kSetting).Put(std::move(value)); }
};

void RequireTask(HRESULT result) { Require(result, kClassName); }

}  // namespace

const Interface& CTask::Describe() {
  static const Interface table =
      Declare<CTask>(u"CTask", u"A scheduled task.")
          .Method<&CTask::Run>(u"Run", u"Starts the task now.")
          .Remark(u"Raises 8004130A for a task that was never saved.")
          .Method<&CTask::Terminate>(u"Terminate", u"Ends the running task.")
          .Remark(u"Raises 8004130B for a task that doesn't run.")
          .Method<&CTask::Save>(u"Save", u"Writes what was put, and the task to its job file.",
                                {{u"FileName", u""}, {u"SaveAsCopy", false}})
          .Remark(
              u"The name of a file counts with SaveAsCopy alone: then the task is written there "
              u"and that file becomes its own; 80070050 where it exists. Raises 232 for an "
              u"object of CreateTaskObject, and 80004001 for ErrorRetryCount and "
              u"ErrorRetryInterval, which no scheduler has taken so far.")
          .Method<&CTask::ShowProperties>(u"ShowProperties", u"Shows the task's dialog.",
                                          {{u"ParenthWnd", {}}})
          .Method<&CTask::GetTriggers>(u"GetTriggers", u"The task's triggers.")
          .Remark(u"Of triggers with the same text only the first is listed.")
          .Method<&CTask::CreateTrigger>(u"CreateTrigger",
                                         u"Adds a daily trigger, which begins disabled.")
          .Property<&SettingForm<&CTask::Name>::Get, &SettingForm<&CTask::Name>::Put>(
              u"Name", u"Its name, without folder and extension.")
          .Remark(u"A put renames nothing, but Delete goes by it.")
          .Property<&SettingForm<&CTask::ApplicationName>::Get,
                    &SettingForm<&CTask::ApplicationName>::Put>(u"ApplicationName",
                                                                u"The program that it runs.")
          .Property<&SettingForm<&CTask::WorkingDirectory>::Get,
                    &SettingForm<&CTask::WorkingDirectory>::Put>(u"WorkingDirectory",
                                                                 u"The program's folder.")
          .Property<&SettingForm<&CTask::FileName>::Get, &SettingForm<&CTask::FileName>::Put>(
              u"FileName", u"The full path of its job file.")
          .Property<&SettingForm<&CTask::CommandLine>::Get, &SettingForm<&CTask::CommandLine>::Put>(
              u"CommandLine", u"What the program is given.")
          .Property<&SettingForm<&CTask::AccountInformation>::Get,
                    &SettingForm<&CTask::AccountInformation>::Put>(
              u"AccountInformation", u"The account that it runs as; empty for the computer's own.")
          .Property<&SettingForm<&CTask::Comment>::Get, &SettingForm<&CTask::Comment>::Put>(
              u"Comment", u"What it is for.")
          .Property<&SettingForm<&CTask::Creator>::Get, &SettingForm<&CTask::Creator>::Put>(
              u"Creator", u"Who made it.")
          .Property<&SettingForm<&CTask::ErrorRetryCount>::Get,
                    &SettingForm<&CTask::ErrorRetryCount>::Put>(
              u"ErrorRetryCount", u"Tries after a failure; not in use.")
          .Property<&SettingForm<&CTask::ErrorRetryInterval>::Get,
                    &SettingForm<&CTask::ErrorRetryInterval>::Put>(
              u"ErrorRetryInterval", u"Minutes between tries; not in use.")
          .Get<&CTask::ExitCode>(u"ExitCode", u"What the latest run ended with.")
          .Property<&SettingForm<&CTask::Flags>::Get, &SettingForm<&CTask::Flags>::Put>(
              u"Flags", u"How it is run.")
          .Property<&SettingForm<&CTask::MaxRunTime>::Get, &SettingForm<&CTask::MaxRunTime>::Put>(
              u"MaxRunTime", u"Milliseconds after which it is ended.")
          .Property<&SettingForm<&CTask::Priority>::Get, &SettingForm<&CTask::Priority>::Put>(
              u"Priority", u"The priority class of its process.")
          .Get<&CTask::Status>(u"Status", u"What it is doing, as TaskStatusEnum tells.")
          .Get<&CTask::LastRunTime>(u"LastRunTime", u"When it was started last, local time.")
          .Remark(u"Of a task that never ran it is a date without a meaning, 1999-11-30.")
          .Get<&CTask::NextRunTime>(u"NextRunTime", u"When it will be started next, local time.")
          .Remark(u"Without a next run it is a date without a meaning, 1999-11-30.")
          .Put<&CTask::PutPassword>(u"Password", u"The account's password.")
          .Remark(u"It is written with AccountInformation, and only if that was put, too.")
          .Method<&CTask::Refresh>(u"Refresh", u"Reads the task again.")
          .Remark(u"What was put and not saved is lost.")
          .Stored<&CTask::DomainName>(u"DomainName", u"The domain of its server.")
          .Stored<&CTask::ServerName>(u"ServerName", u"The computer that it is a task of.")
          .Method<&CTask::Delete>(u"Delete", u"Deletes the task of this server and Name.")
          .Remark(
              u"Raises 80070002 where there is none, and 80070057 without a Name, as a new task "
              u"has none before its Refresh.");
  return table;
}

void CTask::Run() {
  ReRaising([&] {
    if (task_) RequireTask(task_->Run());
  });
}

void CTask::Terminate() {
  ReRaising([&] {
    if (task_) RequireTask(task_->Terminate());
  });
}

void CTask::ShowProperties(std::int32_t& parent_window) {
  if (!task_) return;
  const auto parent = static_cast<std::uintptr_t>(static_cast<std::intptr_t>(parent_window));
  RequireTask(task_->EditWorkItem(reinterpret_cast<HWND>(parent), 0));
}

void CTask::Save(const Text& file_name, bool save_as_copy) {
  ReRaising([&] {
    if (!task_) {
      Raise(kNoTaskObject, u"[Veldmark2][CTask]", u"Internal Task Object not initialized");
    }
    WriteChanges();
    if (!file_name.empty()) FileName.Put(file_name);
    Ref<IPersistFile> file;
    RequireTask(task_->QueryPersistFile(&file));
    if (FileName.Get().empty()) {
      RequireTask(file->Save(nullptr, false));
    } else if (save_as_copy) {
      RequireTask(file->Save(FileName.Get().c_str(), true));
    } else {
      SchedulerText current(Apartment::Current().platform.system);
      RequireTask(file->GetCurFile(current.Receive()));
      RequireTask(file->Save(nullptr, false));
      RequireTask(file->SaveCompleted(nullptr));
    }
  });
}

Ref<CTriggers> CTask::GetTriggers() {
  return ReRaising([&] {
    const Ref<CTriggers> triggers = Make<CTriggers>();
    WORD count = 0;
    RequireTask(Task().GetTriggerCount(&count));
    for (WORD index = 0; index < count; ++index) {
      Ref<ITaskTrigger> item;
      RequireTask(task_->GetTrigger(index, &item));
      const Ref<CTrigger> trigger = Make<CTrigger>();
      trigger->InitTrigger(std::move(item), index, task_);
      triggers->Add(trigger.Get());
    }
    return triggers;
  });
}

Ref<CTrigger> CTask::CreateTrigger() {
  return ReRaising([&] {
    WORD index = 0;
    Ref<ITaskTrigger> item;
    RequireTask(Task().CreateTrigger(&index, &item));
    const Ref<CTrigger> trigger = Make<CTrigger>();
    trigger->InitTrigger(std::move(item), index, task_);
    return trigger;
  });
}

void CTask::Refresh() {
  ReRaising([&] {
    const Ref<ITaskScheduler> scheduler = OpenScheduler(u"\\\\" + ServerName, kClassName);
    Ref<ITask> task;
    RequireTask(scheduler->Activate(FileName.Get().c_str(), &task));
    SetTaskObject(std::move(task));
    SetNameOfFile(FileName.Get());
  });
}

void CTask::Delete() {
  ReRaising([&] {
    const Ref<ITaskScheduler> scheduler = OpenScheduler(u"\\\\" + ServerName, kClassName);
    RequireTask(scheduler->Delete(Name.Get().c_str()));
  });
}

void CTask::PutPassword(Secret password) {
  password_ = std::make_unique<Secret>(std::move(password));
}

void CTask::SetTaskObject(Ref<ITask> task) {
  task_ = std::move(task);
  LoadTaskFields();
}

void CTask::SetNameOfFile(TextView file_name) {
  const std::size_t folder_end = file_name.rfind(u'\\');
  if (folder_end != TextView::npos) file_name.remove_prefix(folder_end + 1);
  if (file_name.size() < kExtensionLength) Raise(runtime_error::kInvalidCall);
  file_name.remove_suffix(kExtensionLength);
  Name.Load(Text(file_name));
}

ITask& CTask::Task() const {
  if (!task_) Raise(runtime_error::kObjectNotSet);
  return *task_;
}

// A call that fails leaves its field as it stood.
void CTask::LoadTaskFields() {
  System& system = Apartment::Current().platform.system;
  const auto text = [&](Setting<Text>& setting, auto& object, auto get) {
    SchedulerText value(system);
    if (!Failed((object.*get)(value.Receive()))) {
      setting.Load(WidePtrToString(value.Release(), true));
    }
  };
  const auto setting = [&](auto get, auto& place, auto value) {
    if (!Failed(((*task_).*get)(&value))) {
      place.Load(static_cast<std::decay_t<decltype(place.Get())>>(value));
    }
  };
  const auto date = [&](auto get, Date& place) {
    SYSTEMTIME time{};
    if (!Failed(((*task_).*get)(&time))) system.SystemTimeToVariantTime(&time, &place.days);
  };
  text(ApplicationName, *task_, &ITask::GetApplicationName);
  text(WorkingDirectory, *task_, &ITask::GetWorkingDirectory);
  text(CommandLine, *task_, &ITask::GetParameters);
  text(AccountInformation, *task_, &ITask::GetAccountInformation);
  text(Comment, *task_, &ITask::GetComment);
  text(Creator, *task_, &ITask::GetCreator);
  setting(&ITask::GetErrorRetryCount, ErrorRetryCount, WORD{});
  setting(&ITask::GetErrorRetryInterval, ErrorRetryInterval, WORD{});
  DWORD exit_code = 0;
  if (!Failed(task_->GetExitCode(&exit_code))) exit_code_ = static_cast<std::int32_t>(exit_code);
  setting(&ITask::GetFlags, Flags, DWORD{});
  setting(&ITask::GetMaxRunTime, MaxRunTime, DWORD{});
  setting(&ITask::GetPriority, Priority, DWORD{});
  HRESULT status = 0;
  if (!Failed(task_->GetStatus(&status))) status_ = status;
  date(&ITask::GetMostRecentRunTime, last_run_time_);
  date(&ITask::GetNextRunTime, next_run_time_);
  Ref<IPersistFile> file;
  if (!Failed(task_->QueryPersistFile(&file))) {
    text(FileName, *file, &IPersistFile::GetCurFile);
  }

  for (Setting<Text>* const changed : {&Name, &ApplicationName, &WorkingDirectory, &FileName,
                                       &CommandLine, &AccountInformation, &Comment, &Creator}) {
    changed->ClearChanged();
  }
  ErrorRetryCount.ClearChanged();
  ErrorRetryInterval.ClearChanged();
  Flags.ClearChanged();
  MaxRunTime.ClearChanged();
  Priority.ClearChanged();
  password_.reset();
}

void CTask::WriteChanges() {
  const auto text = [&](const Setting<Text>& setting, auto set) {
    if (setting.is_changed()) RequireTask(((*task_).*set)(setting.Get().c_str()));
  };
  const auto number = [&](const auto& setting, auto set, auto type) {
    if (setting.is_changed()) {
      RequireTask(((*task_).*set)(static_cast<decltype(type)>(setting.Get())));
    }
  };
  text(ApplicationName, &ITask::SetApplicationName);
  text(WorkingDirectory, &ITask::SetWorkingDirectory);
  text(CommandLine, &ITask::SetParameters);
  if (AccountInformation.is_changed()) {
    RequireTask(task_->SetAccountInformation(AccountInformation.Get().c_str(),
                                             password_ ? password_->c_str() : nullptr));
  }
  text(Comment, &ITask::SetComment);
  text(Creator, &ITask::SetCreator);
  number(ErrorRetryCount, &ITask::SetErrorRetryCount, WORD{});
  number(ErrorRetryInterval, &ITask::SetErrorRetryInterval, WORD{});
  number(Flags, &ITask::SetFlags, DWORD{});
  number(MaxRunTime, &ITask::SetMaxRunTime, DWORD{});
  number(Priority, &ITask::SetPriority, DWORD{});
}

}  // namespace veldmark
