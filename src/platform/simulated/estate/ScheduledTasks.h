#pragma once

#include <map>
#include <memory>
#include <optional>

#include "automation/Secret.h"
#include "automation/Text.h"
#include "platform/scheduling/TriggerTimes.h"
#include "platform/simulated/estate/FileNode.h"
#include "platform/simulated/estate/JobFile.h"

namespace veldmark::simulated {

class Computer;
class Estate;

// Where every computer keeps its job files.
inline constexpr TextView kTasksFolder = u"C:\\Windows\\Tasks";
inline constexpr TextView kJobExtension = u".job";

// What a computer's scheduler knows of a task beside its job file.
struct TaskNotes {
  struct Run {
    LocalSeconds end = 0;
    DWORD exit_code = 0;
  };

  std::optional<Text> account{};  // empty for the computer's own
  std::optional<Secret> password{};
  // What each run is like.
  std::uint32_t lasts = 60;  // seconds
  DWORD exit_code = 0;

  // The file that the rest is about: another one of this name begins anew.
  std::weak_ptr<FileNode> file{};
  LocalSeconds seen_until = 0;  // runs up to here have been looked at
  std::optional<Run> run{};     // the one in progress
};

// By the job file's name in upper case.
using TaskBook = std::map<Text, TaskNotes>;

LocalSeconds LocalNow(const Estate& estate);

// The job file's name of a task: with ".job" behind it.
Text JobName(TextView task_name);
// A file's content as a job file.
std::variant<JobFile, HRESULT> ReadJob(const FileNode& file);
// Writes a job file; false where it doesn't fit the form.
bool WriteJob(FileNode& file, const JobFile& job, Ticks now);

// Whether a file lies where the computer's scheduler finds it.
bool IsTaskOf(const Computer& computer, const FileNode& file);

// Brings a task up to the estate's clock: what was due has run, what has run its time has ended and
// written its exit code into the job file. A task to be deleted when done may be gone then.
void CatchUp(Estate& estate, Computer& computer, FileNode& file);
void CatchUp(Estate& estate, Computer& computer);

// The notes on a task, of which CatchUp has looked at its file.
TaskNotes& NotesOn(Estate& estate, Computer& computer, FileNode& file);

// Starts a task now, or ends it. The result is that of the method.
HRESULT RunTask(Estate& estate, Computer& computer, FileNode& file);
HRESULT EndTask(Estate& estate, Computer& computer, FileNode& file);

// What the scheduler says of a task: kTaskRunning, kTaskDisabled, kTaskNotScheduled or kTaskReady.
HRESULT StatusOf(const JobFile& job, bool is_running);

}  // namespace veldmark::simulated
