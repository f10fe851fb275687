#include "platform/simulated/families/SimulatedTaskScheduler.h"

#include <algorithm>
#include <vector>

#include "automation/CaseMapping.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/simulated/estate/AccountLookup.h"
#include "platform/simulated/estate/FileAccess.h"
#include "platform/simulated/estate/FileNames.h"
#include "platform/simulated/estate/ScheduledTasks.h"

namespace veldmark::simulated {
namespace {

constexpr Sharing kReading{
    .reads = true, .lets_read = true, .lets_write = true, .lets_delete = true};
constexpr Sharing kWriting{.writes = true, .lets_read = true};
constexpr Sharing kDeleting{
    .deletes = true, .lets_read = true, .lets_write = true, .lets_delete = true};

// Enters an interface in the ledger for as long as it is held.
class Held {
 public:
  Held(Session& session, std::string_view operation, TextView detail) : session_(session) {
    session_.ledger.Opened(Resource::TaskInterface, Value(), operation, ToUtf8(detail));
  }
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  ~Held() {
    const auto turn = session_.Turn();
    session_.ledger.Closed(Resource::TaskInterface, Value(), "Release");
  }

 private:
  std::uintptr_t Value() const { return reinterpret_cast<std::uintptr_t>(this); }

  Session& session_;
};

LPWSTR HandOutText(Session& session, std::string_view operation, TextView text) {
  const std::size_t units = text.size() + 1;
  auto* const copy =
      static_cast<LPWSTR>(session.AllocateTask(units * sizeof(char16_t), operation, ToUtf8(text)));
  CopyText(text, copy, units);
  return copy;
}

// The error that stands in the way of opening a file that a path leads to.
DWORD OpenError(Session& session, const Place& place, DWORD access, bool denied,
                const Sharing& sharing) {
  if (place.node == nullptr) return place.error;
  if (place.node->is_folder() || place.node->is_delete_pending() || denied) {
    return kErrorAccessDenied;
  }
  if (const DWORD error = CheckFileAccess(session.estate.token(), place, access).error) {
    return error;
  }
  return place.node->CanOpen(sharing) ? 0 : kErrorSharingViolation;
}

// What the interfaces of one work item share.
struct Item {
  Session& session;
  Computer& computer;
  Text path;  // the full path of its file
  JobFile job{};
  std::vector<std::shared_ptr<TASK_TRIGGER>> triggers{};
  std::optional<Text> account{};
  std::optional<Secret> password{};
  bool has_new_account = false;

  Place Find() const { return simulated::Find(path, session.estate); }

  // The file, once it is saved where the scheduler looks for it, brought up to the clock.
  std::shared_ptr<FileNode> Scheduled() const {
    const auto file = Find().node;
    if (file == nullptr || !IsTaskOf(computer, *file)) return nullptr;
    CatchUp(session.estate, computer, *file);
    return file->parent() == nullptr ? nullptr : file;
  }

  // The file's content as it stands; the item's own for one without a file.
  JobFile Current() const {
    if (const auto file = Scheduled()) {
      auto read = ReadJob(*file);
      if (auto* const current = std::get_if<JobFile>(&read)) return std::move(*current);
    }
    return job;
  }

  std::vector<TASK_TRIGGER> Triggers() const {
    std::vector<TASK_TRIGGER> records;
    for (const auto& trigger : triggers) records.push_back(*trigger);
    return records;
  }
};

class SimulatedTrigger final : public ITaskTrigger {
 public:
  SimulatedTrigger(Session& session, std::string_view operation,
                   std::shared_ptr<TASK_TRIGGER> trigger)
      : session_(session), trigger_(std::move(trigger)), held_(session, operation, u"trigger") {}

  HRESULT SetTrigger(const TASK_TRIGGER* trigger) override {
    const Call call = session_.Begin("ITaskTrigger::SetTrigger");
    if (const DWORD fault = call.fault()) return ResultOf(fault);
    if (trigger == nullptr) return kInvalidArgument;
    const bool is_short = trigger->cbTriggerSize == kShortTriggerSize;
    if (!is_short && trigger->cbTriggerSize != kTriggerSize) return kInvalidArgument;
    if (!IsSound(*trigger)) return kInvalidArgument;
    const WORD random = trigger_->wRandomMinutesInterval;
    *trigger_ = *trigger;
    trigger_->cbTriggerSize = kTriggerSize;
    if (is_short) trigger_->wRandomMinutesInterval = random;
    return kOk;
  }

  HRESULT GetTrigger(TASK_TRIGGER* trigger) override {
    const Call call = session_.Begin("ITaskTrigger::GetTrigger");
    if (const DWORD fault = call.fault()) return ResultOf(fault);
    if (trigger == nullptr) return kInvalidArgument;
    *trigger = *trigger_;
    return kOk;
  }

  HRESULT GetTriggerString(LPWSTR* text) override {
    const Call call = session_.Begin("ITaskTrigger::GetTriggerString");
    if (const DWORD fault = call.fault()) return ResultOf(fault);
    if (text == nullptr) return kInvalidArgument;
    *text = HandOutText(session_, "ITaskTrigger::GetTriggerString", TriggerText(*trigger_));
    return kOk;
  }

 private:
  Session& session_;
  std::shared_ptr<TASK_TRIGGER> trigger_;
  Held held_;
};

class SimulatedPersistFile final : public IPersistFile {
 public:
  explicit SimulatedPersistFile(std::shared_ptr<Item> item)
      : item_(std::move(item)), held_(item_->session, "ITask::QueryPersistFile", item_->path) {}

  HRESULT Save(LPCWSTR file_name, BOOL remember) override {
    const Call call = item_->session.Begin(
        "IPersistFile::Save", Text(ViewOf(file_name)) + (remember != 0 ? u" TRUE" : u" FALSE"));
    if (const DWORD fault = call.fault()) return ResultOf(fault);
    const bool is_copy = file_name != nullptr;
    const HRESULT result = SaveTo(is_copy ? Text(file_name) : item_->path, is_copy);
    if (result == kOk && is_copy && remember != 0) item_->path = file_name;
    return result;
  }

  HRESULT SaveCompleted(LPCWSTR file_name) override {
    const Call call = item_->session.Begin("IPersistFile::SaveCompleted", ViewOf(file_name));
    return ResultOf(call.fault());
  }

  HRESULT GetCurFile(LPWSTR* file_name) override {
    const Call call = item_->session.Begin("IPersistFile::GetCurFile");
    if (const DWORD fault = call.fault()) return ResultOf(fault);
    if (file_name == nullptr) return kInvalidArgument;
    *file_name = HandOutText(item_->session, "IPersistFile::GetCurFile", item_->path);
    return kOk;
  }

 private:
  HRESULT SaveTo(const Text& path, bool is_copy) {
    Estate& estate = item_->session.estate;
    Computer& computer = item_->computer;
    if (item_->has_new_account && !item_->account->empty() &&
        !FindAccount(estate, computer, *item_->account)) {
      return kAccountNameNotFound;
    }
    JobFile job = item_->Current();
    Update(job);
    if (!job.Write()) return kInvalidArgument;
    Place place = Find(path, estate);
    if (place.node == nullptr) {
      if (const DWORD error = Make(place, path)) return ResultOf(error);
    } else if (is_copy) {
      return ResultOf(kErrorFileExists);
    } else if (const DWORD error = OpenError(item_->session, place, kGenericWrite,
                                             place.node->write_denied(), kWriting)) {
      return ResultOf(error);
    }
    FileNode& file = *place.node;
    WriteJob(file, job, estate.now());
    const bool is_hidden = (job.flags & kTaskFlagHidden) != 0;
    file.Attributes((file.attributes() & ~kFileAttributeHidden) |
                    (is_hidden ? kFileAttributeHidden : 0));
    if (IsTaskOf(computer, file)) {
      TaskNotes& notes = NotesOn(estate, computer, file);
      // What was changed before this moment doesn't make runs due that were none.
      notes.seen_until = std::max(notes.seen_until, LocalNow(estate));
      if (item_->has_new_account) {
        notes.account = item_->account;
        notes.password.reset();
        if (item_->password) notes.password.emplace(item_->password->c_str());
      }
    }
    return kOk;
  }

  // Lays the settings over what the file says of the task's runs.
  void Update(JobFile& job) const {
    const JobFile& own = item_->job;
    job.application = own.application;
    job.parameters = own.parameters;
    job.working_directory = own.working_directory;
    job.author = own.author;
    job.comment = own.comment;
    job.flags = own.flags;
    job.priority = own.priority;
    job.max_run_time = own.max_run_time;
    job.triggers = item_->Triggers();
    job.status = StatusOf(job, job.running_instances != 0);
  }

  // Makes the file that a path would lead to, and the tasks' folder where that alone is missing.
  DWORD Make(Place& place, const Text& path) {
    Estate& estate = item_->session.estate;
    const auto parsed = Path::Parse(path, estate);
    if (place.error == kErrorPathNotFound && !parsed.names.empty() &&
        ToUpper(path).ends_with(
            ToUpper(Text(kTasksFolder.substr(2)) + u"\\" + parsed.names.back()))) {
      item_->computer.AddFolder(kTasksFolder);
      place = simulated::Find(parsed, estate);
    }
    if (place.error != kErrorFileNotFound) return place.error;
    if (!IsValidName(place.name)) return kErrorInvalidName;
    if (place.folder->write_denied()) return kErrorAccessDenied;
    if (const DWORD error = CheckFolderAccess(estate.token(), place, kFileAddFile).error) {
      return error;
    }
    place.node = place.folder->AddChild(place.name, false, estate.now());
    place.node->Own(estate.token());
    place.node->Attributes(kFileAttributeArchive);
    return 0;
  }

  std::shared_ptr<Item> item_;
  Held held_;
};

class SimulatedTask final : public ITask {
 public:
  SimulatedTask(std::shared_ptr<Item> item, std::string_view operation)
      : item_(std::move(item)), held_(item_->session, operation, item_->path) {}

  HRESULT CreateTrigger(WORD* index, Ref<ITaskTrigger>* trigger) override {
    return Do("ITask::CreateTrigger", index, [&] {
      if (trigger == nullptr) return kInvalidArgument;
      const SYSTEMTIME now = SystemTimeOf(LocalNow(session().estate));
      item_->triggers.push_back(
          std::make_shared<TASK_TRIGGER>(TASK_TRIGGER{.cbTriggerSize = kTriggerSize,
                                                      .Reserved1 = 0,
                                                      .wBeginYear = now.wYear,
                                                      .wBeginMonth = now.wMonth,
                                                      .wBeginDay = now.wDay,
                                                      .wEndYear = 0,
                                                      .wEndMonth = 0,
                                                      .wEndDay = 0,
                                                      .wStartHour = now.wHour,
                                                      .wStartMinute = now.wMinute,
                                                      .MinutesDuration = 0,
                                                      .MinutesInterval = 0,
                                                      .rgFlags = kTriggerDisabled,
                                                      .TriggerType = kTriggerDaily,
                                                      .Type = {1, 0, 0, 0},
                                                      .Reserved2 = 0,
                                                      .wRandomMinutesInterval = 0}));
      *index = static_cast<WORD>(item_->triggers.size() - 1);
      *trigger = Make<SimulatedTrigger>(session(), "ITask::CreateTrigger", item_->triggers.back());
      return kOk;
    });
  }

  HRESULT DeleteTrigger(WORD index) override {
    return Do("ITask::DeleteTrigger", ToText(index), this, [&] {
      if (index >= item_->triggers.size()) return kTriggerNotFound;
      item_->triggers.erase(item_->triggers.begin() + index);
      return kOk;
    });
  }

  HRESULT GetTriggerCount(WORD* count) override {
    return Do("ITask::GetTriggerCount", count, [&] {
      *count = static_cast<WORD>(item_->triggers.size());
      return kOk;
    });
  }

  HRESULT GetTrigger(WORD index, Ref<ITaskTrigger>* trigger) override {
    return Do("ITask::GetTrigger", ToText(index), trigger, [&] {
      if (index >= item_->triggers.size()) return kTriggerNotFound;
      *trigger = Make<SimulatedTrigger>(session(), "ITask::GetTrigger", item_->triggers[index]);
      return kOk;
    });
  }

  HRESULT GetNextRunTime(SYSTEMTIME* next) override {
    return Do("ITask::GetNextRunTime", next, [&] {
      *next = {};
      if ((item_->job.flags & kTaskFlagDisabled) != 0) return kTaskDisabled;
      const std::vector<TASK_TRIGGER> triggers = item_->Triggers();
      const auto run = NextRun(triggers, LocalNow(session().estate));
      if (!run) return WhyNoRun(triggers);
      *next = SystemTimeOf(run->start);
      return kOk;
    });
  }

  HRESULT Run() override {
    return Do("ITask::Run", this, [&] {
      const auto file = item_->Scheduled();
      return file == nullptr ? kTaskNotReady : RunTask(session().estate, item_->computer, *file);
    });
  }

  HRESULT Terminate() override {
    return Do("ITask::Terminate", this, [&] {
      const auto file = item_->Scheduled();
      return file == nullptr ? kTaskNotRunning : EndTask(session().estate, item_->computer, *file);
    });
  }

  HRESULT EditWorkItem(HWND, DWORD) override {
    return Do("ITask::EditWorkItem", this, [] { return kOk; });
  }

  HRESULT GetMostRecentRunTime(SYSTEMTIME* last) override {
    return Do("ITask::GetMostRecentRunTime", last, [&] {
      *last = item_->Current().last_run;
      return last->wYear == 0 ? kTaskHasNotRun : kOk;
    });
  }

  HRESULT GetStatus(HRESULT* status) override {
    return Do("ITask::GetStatus", status, [&] {
      const auto file = item_->Scheduled();
      if (file == nullptr) {
        *status = kTaskNotScheduled;
        return kOk;
      }
      const auto running = NotesOn(session().estate, item_->computer, *file).run.has_value();
      *status = StatusOf(item_->Current(), running);
      return kOk;
    });
  }

  HRESULT GetExitCode(DWORD* exit_code) override {
    return Do("ITask::GetExitCode", exit_code, [&] {
      const JobFile job = item_->Current();
      *exit_code = job.exit_code;
      if (Failed(job.start_error)) return job.start_error;
      return job.last_run.wYear == 0 ? kTaskHasNotRun : kOk;
    });
  }

  HRESULT SetComment(LPCWSTR comment) override {
    return Put("ITask::SetComment", &JobFile::comment, comment);
  }
  HRESULT GetComment(LPWSTR* comment) override {
    return Get("ITask::GetComment", &JobFile::comment, comment);
  }
  HRESULT SetCreator(LPCWSTR creator) override {
    return Put("ITask::SetCreator", &JobFile::author, creator);
  }
  HRESULT GetCreator(LPWSTR* creator) override {
    return Get("ITask::GetCreator", &JobFile::author, creator);
  }

  HRESULT SetErrorRetryCount(WORD) override { return Unknown("ITask::SetErrorRetryCount"); }
  HRESULT GetErrorRetryCount(WORD*) override { return Unknown("ITask::GetErrorRetryCount"); }
  HRESULT SetErrorRetryInterval(WORD) override { return Unknown("ITask::SetErrorRetryInterval"); }
  HRESULT GetErrorRetryInterval(WORD*) override { return Unknown("ITask::GetErrorRetryInterval"); }

  HRESULT SetFlags(DWORD flags) override { return Put("ITask::SetFlags", &JobFile::flags, flags); }
  HRESULT GetFlags(DWORD* flags) override { return Get("ITask::GetFlags", &JobFile::flags, flags); }

  HRESULT SetAccountInformation(LPCWSTR account, LPCWSTR password) override {
    return Do("ITask::SetAccountInformation", ViewOf(account), account, [&] {
      item_->account = account;
      item_->password.reset();
      if (password != nullptr) item_->password.emplace(password);
      item_->has_new_account = true;
      return kOk;
    });
  }

  HRESULT GetAccountInformation(LPWSTR* account) override {
    return Do("ITask::GetAccountInformation", account, [&] {
      if (!item_->account) return ResultOf(kErrorFileNotFound);
      *account = HandOutText(session(), "ITask::GetAccountInformation", *item_->account);
      return kOk;
    });
  }

  HRESULT SetApplicationName(LPCWSTR application) override {
    return Put("ITask::SetApplicationName", &JobFile::application, application);
  }
  HRESULT GetApplicationName(LPWSTR* application) override {
    return Get("ITask::GetApplicationName", &JobFile::application, application);
  }
  HRESULT SetParameters(LPCWSTR parameters) override {
    return Put("ITask::SetParameters", &JobFile::parameters, parameters);
  }
  HRESULT GetParameters(LPWSTR* parameters) override {
    return Get("ITask::GetParameters", &JobFile::parameters, parameters);
  }
  HRESULT SetWorkingDirectory(LPCWSTR folder) override {
    return Put("ITask::SetWorkingDirectory", &JobFile::working_directory, folder);
  }
  HRESULT GetWorkingDirectory(LPWSTR* folder) override {
    return Get("ITask::GetWorkingDirectory", &JobFile::working_directory, folder);
  }
  HRESULT SetPriority(DWORD priority) override {
    return Put("ITask::SetPriority", &JobFile::priority, priority);
  }
  HRESULT GetPriority(DWORD* priority) override {
    return Get("ITask::GetPriority", &JobFile::priority, priority);
  }
  HRESULT SetMaxRunTime(DWORD milliseconds) override {
    return Put("ITask::SetMaxRunTime", &JobFile::max_run_time, milliseconds);
  }
  HRESULT GetMaxRunTime(DWORD* milliseconds) override {
    return Get("ITask::GetMaxRunTime", &JobFile::max_run_time, milliseconds);
  }

  HRESULT QueryPersistFile(Ref<IPersistFile>* file) override {
    return Do("ITask::QueryPersistFile", file, [&] {
      *file = Make<SimulatedPersistFile>(item_);
      return kOk;
    });
  }

 private:
  Session& session() const { return item_->session; }

  // Does what a method is for, unless it has no place for what it is to give.
  template <typename Action>
  HRESULT Do(std::string_view operation, const void* place, const Action& action) {
    return Do(operation, {}, place, action);
  }
  template <typename Action>
  HRESULT Do(std::string_view operation, TextView noted, const void* place, const Action& action) {
    const Call call = session().Begin(operation, noted);
    if (const DWORD fault = call.fault()) return ResultOf(fault);
    return place == nullptr ? kInvalidArgument : HRESULT{action()};
  }

  HRESULT Unknown(std::string_view operation) {
    return Do(operation, this, [] { return kNotImplemented; });
  }

  HRESULT Put(std::string_view operation, Text JobFile::*field, LPCWSTR text) {
    return Do(operation, ViewOf(text), this, [&] {
      item_->job.*field = ViewOf(text);
      return kOk;
    });
  }
  HRESULT Put(std::string_view operation, DWORD JobFile::*field, DWORD value) {
    return Do(operation, ToText(value), this, [&] {
      item_->job.*field = value;
      return kOk;
    });
  }
  HRESULT Get(std::string_view operation, Text JobFile::*field, LPWSTR* text) {
    return Do(operation, text, [&] {
      *text = HandOutText(session(), operation, item_->job.*field);
      return kOk;
    });
  }
  HRESULT Get(std::string_view operation, DWORD JobFile::*field, DWORD* value) {
    return Do(operation, value, [&] {
      *value = item_->job.*field;
      return kOk;
    });
  }

  std::shared_ptr<Item> item_;
  Held held_;
};

class SimulatedEnumeration final : public IEnumWorkItems {
 public:
  SimulatedEnumeration(Session& session, std::vector<Text> names)
      : session_(session),
        names_(std::move(names)),
        held_(session, "ITaskScheduler::Enum", u"enumeration") {}

  HRESULT Next(DWORD count, LPWSTR** names, DWORD* fetched) override {
    const Call call = session_.Begin("IEnumWorkItems::Next", ToText(count));
    if (names != nullptr) *names = nullptr;
    if (fetched != nullptr) *fetched = 0;
    if (const DWORD fault = call.fault()) return ResultOf(fault);
    if (names == nullptr || fetched == nullptr || count == 0) return kInvalidArgument;
    const std::size_t taken = std::min<std::size_t>(count, names_.size() - next_);
    if (taken == 0) return kFalse;
    *names = static_cast<LPWSTR*>(
        session_.AllocateTask(taken * sizeof(LPWSTR), "IEnumWorkItems::Next", "names"));
    for (std::size_t index = 0; index < taken; ++index) {
      (*names)[index] = HandOutText(session_, "IEnumWorkItems::Next", names_[next_++]);
    }
    *fetched = static_cast<DWORD>(taken);
    return taken == count ? kOk : kFalse;
  }

 private:
  Session& session_;
  std::vector<Text> names_;
  std::size_t next_ = 0;
  Held held_;
};

class SimulatedScheduler final : public ITaskScheduler {
 public:
  explicit SimulatedScheduler(Session& session)
      : session_(session),
        computer_(&session.estate.local()),
        held_(session, "CoCreateInstance", u"scheduler") {}

  HRESULT SetTargetComputer(LPCWSTR computer) override {
    const Call call = session_.Begin("ITaskScheduler::SetTargetComputer", ViewOf(computer));
    if (const DWORD fault = call.fault()) return ResultOf(fault);
    Computer* const found = session_.estate.ReachServer(computer);
    const bool has_mark = computer == nullptr || ViewOf(computer).starts_with(u"\\\\");
    if (found == nullptr || !has_mark) return ResultOf(kErrorBadNetPath);
    const bool is_local = found == &session_.estate.local();
    if (!is_local && !session_.estate.IsAdministrator(*found)) return ResultOf(kErrorAccessDenied);
    computer_ = found;
    return kOk;
  }

  HRESULT Enum(Ref<IEnumWorkItems>* items) override {
    const Call call = session_.Begin("ITaskScheduler::Enum");
    if (const DWORD fault = call.fault()) return ResultOf(fault);
    if (items == nullptr) return kInvalidArgument;
    std::vector<Text> names;
    const Text path = FolderPath();
    const Place place = Find(path, session_.estate);
    if (place.node != nullptr) {
      const bool is_closed =
          place.node->list_denied() ||
          CheckFileAccess(session_.estate.token(), place, kFileListDirectory).error != 0;
      if (is_closed) return ResultOf(kErrorAccessDenied);
      CatchUp(session_.estate, *computer_);
      for (const auto& [upper, file] : place.node->children()) {
        if (!file->is_folder() && upper.ends_with(ToUpper(kJobExtension))) {
          names.push_back(file->name());
        }
      }
    }
    *items = Make<SimulatedEnumeration>(session_, std::move(names));
    return kOk;
  }

  HRESULT Activate(LPCWSTR name, Ref<ITask>* task) override {
    const Call call = session_.Begin("ITaskScheduler::Activate", ViewOf(name));
    if (const DWORD fault = call.fault()) return ResultOf(fault);
    if (task == nullptr || ViewOf(name).empty()) return kInvalidArgument;
    const Text path = PathOf(name);
    Place place = Find(path, session_.estate);
    const bool denied = place.node != nullptr && place.node->read_denied();
    if (const DWORD error = OpenError(session_, place, kGenericRead, denied, kReading)) {
      return ResultOf(error == kErrorPathNotFound ? kErrorFileNotFound : error);
    }
    CatchUp(session_.estate, *computer_, *place.node);
    if (place.node->parent() == nullptr) return ResultOf(kErrorFileNotFound);
    auto job = ReadJob(*place.node);
    if (const auto* const error = std::get_if<HRESULT>(&job)) return *error;
    auto item = std::make_shared<Item>(Item{.session = session_,
                                            .computer = *computer_,
                                            .path = path,
                                            .job = std::move(std::get<JobFile>(job))});
    for (const TASK_TRIGGER& trigger : item->job.triggers) {
      item->triggers.push_back(std::make_shared<TASK_TRIGGER>(trigger));
    }
    if (IsTaskOf(*computer_, *place.node)) {
      item->account = NotesOn(session_.estate, *computer_, *place.node).account;
    }
    *task = Make<SimulatedTask>(std::move(item), "ITaskScheduler::Activate");
    return kOk;
  }

  HRESULT Delete(LPCWSTR name) override {
    const Call call = session_.Begin("ITaskScheduler::Delete", ViewOf(name));
    if (const DWORD fault = call.fault()) return ResultOf(fault);
    if (ViewOf(name).empty()) return kInvalidArgument;
    const Place place = Find(PathOf(name), session_.estate);
    const bool denied = place.node != nullptr && place.node->delete_denied();
    if (const DWORD error = OpenError(session_, place, kDelete, denied, kDeleting)) {
      return ResultOf(error == kErrorPathNotFound ? kErrorFileNotFound : error);
    }
    if (IsTaskOf(*computer_, *place.node)) computer_->tasks().erase(ToUpper(place.node->name()));
    place.node->Delete(session_.estate.now());
    return kOk;
  }

  HRESULT NewWorkItem(LPCWSTR name, Ref<ITask>* task) override {
    const Call call = session_.Begin("ITaskScheduler::NewWorkItem", ViewOf(name));
    if (const DWORD fault = call.fault()) return ResultOf(fault);
    if (task == nullptr || ViewOf(name).empty()) return kInvalidArgument;
    if (!IsValidName(JobName(name))) return ResultOf(kErrorInvalidName);
    const Text path = PathOf(name);
    if (Find(path, session_.estate).node != nullptr) {
      return ResultOf(kErrorFileExists);
    }
    JobFile job;
    const ServerDescription& system = computer_->description();
    job.product_version =
        static_cast<WORD>((system.version_major & 0xFF) << 8 | (system.version_minor & 0xFF));
    // No two have the same, and it is the same in each run of the estate.
    std::uint64_t hash = 14695981039346656037u;
    for (const char16_t unit : ToUpper(path)) hash = (hash ^ unit) * 1099511628211u;
    const std::uint64_t number = session_.NewHandle();
    for (std::size_t index = 0; index < 8; ++index) {
      job.uuid[index] = static_cast<std::uint8_t>(hash >> index * 8);
      job.uuid[index + 8] = static_cast<std::uint8_t>(number >> index * 8);
    }
    *task = Make<SimulatedTask>(
        std::make_shared<Item>(
            Item{.session = session_, .computer = *computer_, .path = path, .job = std::move(job)}),
        "ITaskScheduler::NewWorkItem");
    return kOk;
  }

 private:
  // As this computer reaches the other's.
  Text FolderPath() const {
    if (computer_ == &session_.estate.local()) return Text(kTasksFolder);
    return u"\\\\" + computer_->name() + u"\\C$" + Text(kTasksFolder.substr(2));
  }

  Text PathOf(TextView name) const {
    if (name.find(u'\\') != TextView::npos) return Text(name);
    return FolderPath() + u"\\" + JobName(name);
  }

  Session& session_;
  Computer* computer_;
  Held held_;
};

}  // namespace

HRESULT SimulatedTaskScheduler::CoCreateInstance(Ref<ITaskScheduler>* scheduler) {
  const Call call = session_.Begin("CoCreateInstance", u"CLSID_CTaskScheduler");
  if (const DWORD fault = call.fault()) return ResultOf(fault);
  if (scheduler == nullptr) return kInvalidArgument;
  *scheduler = Make<SimulatedScheduler>(session_);
  return kOk;
}

}  // namespace veldmark::simulated
