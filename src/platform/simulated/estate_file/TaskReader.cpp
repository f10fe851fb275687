#include "platform/simulated/estate_file/TaskReader.h"

#include <algorithm>
#include <array>

#include "automation/CaseMapping.h"
#include "platform/simulated/estate/FileNames.h"
#include "platform/simulated/estate/ScheduledTasks.h"

namespace veldmark::simulated {
namespace {

constexpr std::size_t kDateLength = 10;
constexpr std::size_t kTimeLength = 16;

// "2024-03-05" or "2024-03-05T14:30", local time.
SYSTEMTIME ReadLocal(const Node& node, bool with_time) {
  const std::string text = node.Utf8();
  const std::string form =
      std::string("dddd-dd-ddTdd:dd").substr(0, with_time ? kTimeLength : kDateLength);
  const bool matches =
      text.size() == form.size() &&
      std::equal(text.begin(), text.end(), form.begin(), [](char unit, char wanted) {
        return wanted == 'd' ? unit >= '0' && unit <= '9' : unit == wanted;
      });
  const std::string problem = std::string("must be a local time such as ") +
                              (with_time ? "2024-03-05T14:30" : "2024-03-05");
  if (!matches) node.Complain(problem);
  const auto number = [&](std::size_t start, std::size_t count) {
    return static_cast<WORD>(std::stoi(text.substr(start, count)));
  };
  SYSTEMTIME time{};
  time.wYear = number(0, 4);
  time.wMonth = number(5, 2);
  time.wDay = number(8, 2);
  if (with_time) {
    time.wHour = number(11, 2);
    time.wMinute = number(14, 2);
  }
  const auto moment = ToLocalSeconds(time);
  if (!moment) node.Complain("there is no such time");
  return SystemTimeOf(moment);
}

WORD ReadBits(const Node& node, std::initializer_list<std::string_view> names) {
  unsigned bits = 0;
  for (const Node& element : node.Elements()) bits |= 1u << element.OneOf(names);
  return static_cast<WORD>(bits);
}

TASK_TRIGGER ReadTrigger(const Node& node) {
  node.OnlyFields({"type", "start", "end", "every", "days", "weekDays", "week", "months",
                   "repeatEvery", "repeatFor", "killAtEnd", "disabled"});
  TASK_TRIGGER trigger{};
  trigger.cbTriggerSize = kTriggerSize;
  trigger.TriggerType = static_cast<TASK_TRIGGER_TYPE>(
      node.Required("type").OneOf({"once", "daily", "weekly", "monthlyDate", "monthlyWeekDay",
                                   "idle", "systemStart", "logon"}));
  const SYSTEMTIME start = ReadLocal(node.Required("start"), true);
  trigger.wBeginYear = start.wYear;
  trigger.wBeginMonth = start.wMonth;
  trigger.wBeginDay = start.wDay;
  trigger.wStartHour = start.wHour;
  trigger.wStartMinute = start.wMinute;
  if (const auto end = node.Field("end")) {
    const SYSTEMTIME last = ReadLocal(*end, false);
    trigger.wEndYear = last.wYear;
    trigger.wEndMonth = last.wMonth;
    trigger.wEndDay = last.wDay;
    trigger.rgFlags |= kTriggerHasEndDate;
  }
  const auto flag = [&](const char* name, DWORD bit) {
    const auto field = node.Field(name);
    if (field && field->Boolean()) trigger.rgFlags |= bit;
  };
  flag("killAtEnd", kTriggerKillAtDurationEnd);
  flag("disabled", kTriggerDisabled);
  const auto minutes = [&](const char* name, DWORD& place) {
    if (const auto field = node.Field(name)) place = field->Unsigned32();
  };
  minutes("repeatEvery", trigger.MinutesInterval);
  minutes("repeatFor", trigger.MinutesDuration);

  const auto every = node.Field("every");
  const auto interval = every ? static_cast<WORD>(every->Integer(1, 0xFFFF)) : WORD{1};
  const auto week_days = [&] {
    return ReadBits(node.Required("weekDays"),
                    {"sunday", "monday", "tuesday", "wednesday", "thursday", "friday", "saturday"});
  };
  const auto months = [&] {
    const auto field = node.Field("months");
    return field ? ReadBits(*field, {"january", "february", "march", "april", "may", "june", "july",
                                     "august", "september", "october", "november", "december"})
                 : WORD{0xFFF};
  };
  switch (trigger.TriggerType) {
    case kTriggerDaily:
      trigger.Type[0] = interval;
      break;
    case kTriggerWeekly:
      trigger.Type[0] = interval;
      trigger.Type[1] = week_days();
      break;
    case kTriggerMonthlyDate: {
      DWORD days = 0;
      for (const Node& day : node.Required("days").Elements())
        days |= 1u << (day.Integer(1, 31) - 1);
      trigger.Type[0] = static_cast<WORD>(days);
      trigger.Type[1] = static_cast<WORD>(days >> 16);
      trigger.Type[2] = months();
      break;
    }
    case kTriggerMonthlyWeekDay:
      trigger.Type[0] = static_cast<WORD>(
          1 + node.Required("week").OneOf({"first", "second", "third", "fourth", "last"}));
      trigger.Type[1] = week_days();
      trigger.Type[2] = months();
      break;
    default:
      break;
  }
  if (!IsSound(trigger)) node.Complain("repetitions need a longer time than the one between them");
  return trigger;
}

DWORD ReadFlags(const Node& node) {
  static constexpr std::array<DWORD, 11> kBits = {0x1,  0x2,   0x4,   0x10,  0x20, 0x40,
                                                  0x80, 0x100, 0x200, 0x400, 0x800};
  DWORD flags = 0;
  for (const Node& element : node.Elements()) {
    flags |= kBits[element.OneOf({"interactive", "deleteWhenDone", "disabled", "startOnlyIfIdle",
                                  "killOnIdleEnd", "dontStartIfOnBatteries",
                                  "killIfGoingOnBatteries", "runOnlyIfDocked", "hidden",
                                  "runIfConnectedToInternet", "restartOnIdleResume"})];
  }
  return flags;
}

JobFile ReadJobOf(const Node& node, const Computer& computer) {
  JobFile job;
  const ServerDescription& system = computer.description();
  job.product_version =
      static_cast<WORD>((system.version_major & 0xFF) << 8 | (system.version_minor & 0xFF));
  const auto text = [&](const char* name, Text& place) {
    if (const auto field = node.Field(name)) place = field->String();
  };
  text("application", job.application);
  text("parameters", job.parameters);
  text("workingDirectory", job.working_directory);
  text("creator", job.author);
  text("comment", job.comment);
  if (const auto flags = node.Field("flags")) job.flags = ReadFlags(*flags);
  if (const auto limit = node.Field("maxRunTime")) job.max_run_time = limit->Unsigned32();
  if (const auto last = node.Field("lastRun")) {
    job.last_run = ReadLocal(*last, true);
    job.start_error = 0;
  }
  if (const auto code = node.Field("lastExitCode")) job.exit_code = code->Unsigned32();
  if (const auto triggers = node.Field("triggers")) {
    for (const Node& trigger : triggers->Elements()) job.triggers.push_back(ReadTrigger(trigger));
  }
  job.status = StatusOf(job, false);
  return job;
}

void ReadTask(const Node& node, Computer& computer, Estate& estate) {
  node.OnlyFields({"name", "application", "parameters", "workingDirectory", "creator", "comment",
                   "flags", "maxRunTime", "lastRun", "lastExitCode", "triggers", "account",
                   "password", "lasts", "exitCode"});
  const Node name_node = node.Required("name");
  const Text name = JobName(name_node.String());
  if (!IsValidName(name) || name == kJobExtension) name_node.Complain("no task can have this name");
  if (computer.tasks().contains(ToUpper(name))) {
    name_node.Complain("there is a task of this name");
  }
  const Text path = Text(kTasksFolder) + u"\\" + name;
  auto file = computer.Find(path);
  if (file == nullptr) {
    const JobFile job = ReadJobOf(node, computer);
    file = name_node.Try([&] { return computer.AddFile(path).shared_from_this(); });
    if (!WriteJob(*file, job, estate.now())) node.Complain("its texts are too long for a job file");
    if ((job.flags & kTaskFlagHidden) != 0) {
      file->Attributes(kFileAttributeHidden | kFileAttributeArchive);
    }
  } else {
    for (const char* field : {"application", "parameters", "workingDirectory", "creator", "comment",
                              "flags", "maxRunTime", "lastRun", "lastExitCode", "triggers"}) {
      if (const auto found = node.Field(field)) found->Complain("stands in the job file");
    }
  }
  TaskNotes& notes = NotesOn(estate, computer, *file);
  if (const auto account = node.Field("account")) notes.account = account->String();
  if (const auto password = node.Field("password")) {
    Text text = password->String();
    notes.password.emplace(Secret::TakenFrom(text));
  }
  if (const auto lasts = node.Field("lasts")) notes.lasts = lasts->Unsigned32();
  if (const auto code = node.Field("exitCode")) notes.exit_code = code->Unsigned32();
}

}  // namespace

void ReadTasks(const Node& node, Computer& computer, Estate& estate) {
  for (const Node& task : node.Elements()) ReadTask(task, computer, estate);
}

}  // namespace veldmark::simulated
