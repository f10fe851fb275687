#include "platform/simulated/estate/ScheduledTasks.h"

#include <algorithm>
#include <vector>

#include "automation/CaseMapping.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/simulated/estate/AccountLookup.h"
#include "platform/simulated/estate/Estate.h"

namespace veldmark::simulated {
namespace {

constexpr DWORD kNoLimit = 0xFFFFFFFF;
// How many runs of a task are followed one by one while nobody looks.
constexpr int kMostRunsAtOnce = 10'000;

UserAccount* FindUser(Estate& estate, Computer& computer, const KnownAccount& account) {
  if (ToUpper(account.domain) == ToUpper(computer.name())) {
    return computer.own_accounts().FindUser(account.name);
  }
  Domain* const domain = estate.FindDomain(account.domain);
  return domain == nullptr || domain->is_workgroup() ? nullptr
                                                     : domain->accounts->FindUser(account.name);
}

// What keeps a task's account from logging on; 0 for nothing.
DWORD LogonError(Estate& estate, Computer& computer, const TaskNotes& notes) {
  if (!notes.account || notes.account->empty()) return 0;
  const auto account = FindAccount(estate, computer, *notes.account);
  if (!account) return kErrorNoneMapped;
  const UserAccount* const user = FindUser(estate, computer, *account);
  if (user == nullptr) return 0;
  if ((user->flags & kAccountDisabled) != 0) return kErrorAccountDisabled;
  const TextView given = notes.password ? notes.password->c_str() : TextView();
  const TextView right = user->password ? user->password->c_str() : TextView();
  return given == right ? 0 : kErrorLogonFailure;
}

// One task, with its job file as it changes.
class Task {
 public:
  Task(Estate& estate, Computer& computer, FileNode& file, JobFile job)
      : estate_(estate),
        computer_(computer),
        file_(file),
        notes_(NotesOn(estate, computer, file)),
        job_(std::move(job)) {}

  void CatchUp() {
    const LocalSeconds now = LocalNow(estate_);
    bool changed = false;
    for (int count = 0; count < kMostRunsAtOnce; ++count) {
      if (notes_.run) {
        if (notes_.run->end > now) break;
        const LocalSeconds end = notes_.run->end;
        End(notes_.run->exit_code);
        notes_.seen_until = std::max(notes_.seen_until, end);
        changed = true;
      } else {
        const auto next = NextRun();
        if (!next || next->start > now) break;
        notes_.seen_until = next->start;
        Start(*next);
        changed = true;
      }
      if (IsDone()) return Delete();
    }
    notes_.seen_until = std::max(notes_.seen_until, now);
    if (changed) Write();
  }

  void StartNow() {
    Start({LocalNow(estate_), std::nullopt});
    Write();
  }

  void EndNow(DWORD exit_code) {
    End(exit_code);
    if (IsDone()) return Delete();
    Write();
  }

 private:
  std::optional<TriggeredRun> NextRun() const {
    if ((job_.flags & kTaskFlagDisabled) != 0) return std::nullopt;
    return veldmark::NextRun(job_.triggers, notes_.seen_until);
  }

  void Start(const TriggeredRun& wanted) {
    job_.start_error = ResultOf(LogonError(estate_, computer_, notes_));
    if (Failed(job_.start_error)) return;
    TaskNotes::Run run{wanted.start + notes_.lasts, notes_.exit_code};
    const auto cut = [&run](LocalSeconds end) {
      if (end < run.end) run = {end, static_cast<DWORD>(kTaskTerminated)};
    };
    if (job_.max_run_time != kNoLimit) cut(wanted.start + job_.max_run_time / 1000);
    if (wanted.kill_at) cut(*wanted.kill_at);
    notes_.run = run;
    job_.last_run = SystemTimeOf(wanted.start);
    job_.running_instances = 1;
  }

  void End(DWORD exit_code) {
    notes_.run.reset();
    job_.exit_code = exit_code;
    job_.running_instances = 0;
  }

  bool IsDone() const {
    return (job_.flags & kTaskFlagDeleteWhenDone) != 0 && !notes_.run &&
           !Failed(job_.start_error) && WhyNoRun(job_.triggers) == kTaskNoMoreRuns && !NextRun();
  }

  void Delete() {
    const Text key = ToUpper(file_.name());
    file_.Delete(estate_.now());
    computer_.tasks().erase(key);
  }

  void Write() {
    job_.status = StatusOf(job_, notes_.run.has_value());
    WriteJob(file_, job_, estate_.now());
  }

  Estate& estate_;
  Computer& computer_;
  FileNode& file_;
  TaskNotes& notes_;
  JobFile job_;
};

}  // namespace

LocalSeconds LocalNow(const Estate& estate) {
  return static_cast<LocalSeconds>(estate.now() / kTicksPerSecond) -
         std::int64_t{estate.bias()} * 60;
}

Text JobName(TextView task_name) {
  Text name(task_name);
  if (!ToUpper(name).ends_with(ToUpper(kJobExtension))) name += kJobExtension;
  return name;
}

std::variant<JobFile, HRESULT> ReadJob(const FileNode& file) {
  // A larger file is none, whatever stands in it: each of its parts has a 16-bit length.
  constexpr std::uint64_t kLargest = 4 << 20;
  if (file.size() > kLargest) return kInvalidTask;
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(file.size()));
  file.Read(0, bytes.data(), bytes.size());
  return JobFile::Read(bytes);
}

bool WriteJob(FileNode& file, const JobFile& job, Ticks now) {
  const auto bytes = job.Write();
  if (!bytes) return false;
  file.Truncate(now);
  file.Write(0, bytes->data(), bytes->size(), now);
  return true;
}

bool IsTaskOf(const Computer& computer, const FileNode& file) {
  return file.parent() != nullptr && file.parent() == computer.Find(kTasksFolder).get();
}

TaskNotes& NotesOn(Estate& estate, Computer& computer, FileNode& file) {
  TaskNotes& notes = computer.tasks()[ToUpper(file.name())];
  if (notes.file.lock().get() != &file) {
    notes.file = file.weak_from_this();
    notes.run.reset();
    // What was due before there was an estate, or this file, is over.
    const Ticks began =
        std::max(estate.now() - estate.milliseconds() * kTicksPerMillisecond, file.created());
    notes.seen_until =
        static_cast<LocalSeconds>(began / kTicksPerSecond) - std::int64_t{estate.bias()} * 60;
  }
  return notes;
}

void CatchUp(Estate& estate, Computer& computer, FileNode& file) {
  if (!IsTaskOf(computer, file)) return;
  auto job = ReadJob(file);
  if (auto* const sound = std::get_if<JobFile>(&job)) {
    Task(estate, computer, file, std::move(*sound)).CatchUp();
  }
}

void CatchUp(Estate& estate, Computer& computer) {
  const auto folder = computer.Find(kTasksFolder);
  if (folder == nullptr) return;
  // A copy, since a task may delete itself.
  const auto children = folder->children();
  for (const auto& [name, file] : children) {
    if (!file->is_folder() && name.ends_with(ToUpper(kJobExtension))) {
      CatchUp(estate, computer, *file);
    }
  }
}

HRESULT RunTask(Estate& estate, Computer& computer, FileNode& file) {
  auto job = ReadJob(file);
  if (const auto* const error = std::get_if<HRESULT>(&job)) return *error;
  if (!NotesOn(estate, computer, file).run) {
    Task(estate, computer, file, std::move(std::get<JobFile>(job))).StartNow();
  }
  return kOk;
}

HRESULT EndTask(Estate& estate, Computer& computer, FileNode& file) {
  auto job = ReadJob(file);
  if (const auto* const error = std::get_if<HRESULT>(&job)) return *error;
  if (!NotesOn(estate, computer, file).run) return kTaskNotRunning;
  Task(estate, computer, file, std::move(std::get<JobFile>(job)))
      .EndNow(static_cast<DWORD>(kTaskTerminated));
  return kOk;
}

HRESULT StatusOf(const JobFile& job, bool is_running) {
  if (is_running) return kTaskRunning;
  if ((job.flags & kTaskFlagDisabled) != 0) return kTaskDisabled;
  return WhyNoRun(job.triggers) == kTaskNoValidTriggers ? kTaskNotScheduled : kTaskReady;
}

}  // namespace veldmark::simulated
