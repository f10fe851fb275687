#include <gmock/gmock.h>

#include <fstream>
#include <vector>

#include "apartment/CSupport.h"
#include "automation/CivilTime.h"
#include "automation/Interface.h"
#include "network/CServer.h"
#include "platform/simulated/estate/ScheduledTasks.h"
#include "support/ErrorOf.h"
#include "support/FaultSweep.h"
#include "tasks/CTask.h"
#include "tasks/CTasks.h"
#include "tasks/CTrigger.h"
#include "tasks/CTriggers.h"

namespace veldmark {
namespace {

using simulated::JobFile;
using testing::ElementsAre;

constexpr std::int32_t kMissing = ResultOf(kErrorFileNotFound);
constexpr std::int32_t kBadType = kAutomationErrorBase + 1;

TASK_TRIGGER Daily(WORD hour, WORD minute = 0, DWORD flags = 0) {
  return {.cbTriggerSize = kTriggerSize,
          .Reserved1 = 0,
          .wBeginYear = 2024,
          .wBeginMonth = 3,
          .wBeginDay = 5,
          .wEndYear = 0,
          .wEndMonth = 0,
          .wEndDay = 0,
          .wStartHour = hour,
          .wStartMinute = minute,
          .MinutesDuration = 0,
          .MinutesInterval = 0,
          .rgFlags = flags,
          .TriggerType = kTriggerDaily,
          .Type = {1, 0, 0, 0},
          .Reserved2 = 0,
          .wRandomMinutesInterval = 0};
}

/// 2024-03-05 14:30, a Tuesday, with a task of this computer and another one's.
struct TasksWorld : SimulatedApartment {
  TasksWorld() {
    local().own_accounts().AddUser(u"ann").password.emplace(u"Correct-Horse");
    other = &estate().AddComputer(u"OTHER");
    other->AddDrive(u'C');
    away = &estate().AddComputer(u"AWAY");
    away->SetReachable(false);
    Add(local(), u"backup",
        {.application = u"C:\\b.exe",
         .comment = u"nightly",
         .triggers = {Daily(23, 0), Daily(15, 5)}});
    Add(*other, u"far", {.application = u"x"});
  }
  static void Add(simulated::Computer& computer, const Text& name, const JobFile& job) {
    simulated::FileNode& file = computer.AddFile(Path(name));
    ASSERT_TRUE(simulated::WriteJob(file, job, 0));
  }
  static Text Path(const Text& name) { return u"C:\\Windows\\Tasks\\" + name + u".job"; }
  Ref<CServer> Server(const Text& name) {
    const Ref<CServer> server = Make<CServer>();
    server->ServerName = name;
    server->DomainName = u"CORP";
    return server;
  }
  Ref<CServer> Local() { return Server(local().name()); }
  Ref<CTask> Task(const Text& name) { return Local()->GetTasks()->ItemByKey(name); }
  JobFile Job(const Text& name, simulated::Computer* computer = nullptr) {
    const auto file = (computer == nullptr ? local() : *computer).Find(Path(name));
    return file ? std::get<JobFile>(simulated::ReadJob(*file)) : JobFile{.comment = u"missing"};
  }
  void Pass(int minutes) { estate().Advance(std::uint64_t{60'000} * minutes); }

  simulated::Computer* other;
  simulated::Computer* away;
};

struct Tasks : TestIn<TasksWorld> {};

Date At(int year, int month, int day, int hour = 0, int minute = 0) {
  return *FromCivilTime({year, month, day, hour, minute, 0});
}

TEST_F(Tasks, AreListedWithTheirFieldsFromTheirJobFiles) {
  const Ref<CTask> task = Task(u"backup");
  EXPECT_EQ(task->Name.Get() + u"|" + task->ApplicationName.Get() + u"|" + task->Comment.Get() +
                u"|" + task->FileName.Get() + u"|" + task->ServerName + u"|" + task->DomainName +
                u"|" + task->AccountInformation.Get(),
            u"backup|C:\\b.exe|nightly|C:\\Windows\\Tasks\\backup.job|LOCALHOST|CORP|");
  EXPECT_EQ(task->NextRunTime(), At(2024, 3, 5, 15, 5));
  EXPECT_EQ(task->LastRunTime(), At(1999, 11, 30));
  EXPECT_EQ(task->Status(), TS_TaskReady);
  EXPECT_EQ(task->MaxRunTime.Get(), 259'200'000);
  EXPECT_EQ(task->Priority.Get(), 32);
  const Ref<CTriggers> triggers = task->GetTriggers();
  EXPECT_EQ(triggers->ItemByIndex(1)->Text(), u"At 11:00 PM every day, starting 3/5/2024");
  EXPECT_EQ(triggers->ItemByIndex(2)->Text(), u"At 3:05 PM every day, starting 3/5/2024");

  EXPECT_EQ(Server(u"\\\\other")->GetTasks()->ItemByIndex(1)->FileName.Get(),
            u"\\\\OTHER\\C$\\Windows\\Tasks\\far.job");
  EXPECT_EQ(FailureOf([&] { Server(u"AWAY")->GetTasks(); }),
            u"-2147024843|Veldmark2.CServer|The network path was not found.");
  other->SetMayBeAdministered(false);
  EXPECT_EQ(ErrorOf([&] { Server(u"OTHER")->GetTasks(); }), ResultOf(kErrorAccessDenied));
  // One that can't be read, or is none, costs the list.
  local().AddFile(Path(u"closed")).DenyRead();
  EXPECT_EQ(ErrorOf([&] { Local()->GetTasks(); }), ResultOf(kErrorAccessDenied));
  local().Find(Path(u"closed"))->DenyRead(false).Content("no job");
  EXPECT_EQ(ErrorOf([&] { Local()->GetTasks(); }), kInvalidTask);
  local().Find(u"C:\\Windows\\Tasks")->Remove(0);
  EXPECT_EQ(Local()->GetTasks()->Count(), 0);
}

TEST_F(Tasks, AreMadeSavedCopiedAndDeleted) {
  const Ref<CTask> task = Local()->CreateTask(u"new");
  EXPECT_EQ(task->Name.Get() + task->Creator.Get(), u"Veldmark2");
  EXPECT_EQ(ErrorOf([&] { task->Delete(); }), kInvalidArgument);
  EXPECT_EQ(ErrorOf([&] { task->Run(); }), kTaskNotReady);
  task->ApplicationName.Put(u"a.exe");
  task->CommandLine.Put(u"/q");
  task->WorkingDirectory.Put(u"C:\\W");
  task->Comment.Put(u"note");
  task->Name.Put(u"other name");
  task->Flags.Put(static_cast<TaskFlagsEnum>(tfHidden | tfInteractive));
  task->MaxRunTime.Put(-1);
  task->Priority.Put(64);
  const Ref<CTrigger> trigger = task->CreateTrigger();
  EXPECT_EQ(trigger->Flags(), TF_TriggerDisabled);
  trigger->PutTriggerType(TT_Daily);
  trigger->PutDaysInterval(2);
  trigger->PutBeginDate({At(2024, 3, 6).days + 0.7});
  trigger->PutFlags({});
  EXPECT_EQ(trigger->Text(), u"At 2:30 PM every day, starting 3/5/2024");
  trigger->Save();
  EXPECT_EQ(trigger->Text(), u"At 2:30 PM every 2 days, starting 3/6/2024");
  EXPECT_EQ(trigger->BeginDate(), At(2024, 3, 6));
  // What is put for the name of a file counts for copies alone.
  task->Save(u"C:\\ignored.job", false);
  const JobFile job = Job(u"new");
  EXPECT_EQ(job.application + job.parameters + job.working_directory + job.author + job.comment,
            u"a.exe/qC:\\WVeldmark2note");
  EXPECT_EQ(job.flags, 0x201u);
  EXPECT_EQ(job.max_run_time, 0xFFFFFFFFu);
  EXPECT_EQ(job.triggers.size(), 1u);
  EXPECT_NE(local().Find(Path(u"new"))->attributes() & kFileAttributeHidden, 0u);
  EXPECT_EQ(local().Find(u"C:\\ignored.job"), nullptr);
  journal().Clear();
  task->Save(u"C:\\copy.job", true);
  EXPECT_NE(local().Find(u"C:\\copy.job"), nullptr);
  EXPECT_EQ(ErrorOf([&] { task->Save(u"C:\\copy.job", true); }), ResultOf(kErrorFileExists));
  EXPECT_EQ(task->FileName.Get(), u"C:\\copy.job");

  task->FileName.Put(Path(u"new"));
  task->Comment.Put(u"lost");
  task->Refresh();
  EXPECT_EQ(task->Name.Get() + task->Comment.Get(), u"newnote");
  EXPECT_EQ(task->NextRunTime(), At(2024, 3, 6, 14, 30));
  EXPECT_EQ(ErrorOf([&] { Local()->CreateTask(u"NEW"); }), ResultOf(kErrorFileExists));
  EXPECT_EQ(ErrorOf([&] { Local()->CreateTask(u"a/b"); }), ResultOf(kErrorInvalidName));
  task->ErrorRetryCount.Put(1);
  EXPECT_EQ(ErrorOf([&] { task->Save(u"", false); }), kNotImplemented);
  task->Delete();
  EXPECT_EQ(Job(u"new").comment, u"missing");
  EXPECT_EQ(ErrorOf([&] { task->Delete(); }), kMissing);
  EXPECT_EQ(ErrorOf([&] { task->Refresh(); }), kMissing);
  local().Find(Path(u"backup"))->DenyDelete().DenyWrite();
  EXPECT_EQ(ErrorOf([&] { Task(u"backup")->Delete(); }), ResultOf(kErrorAccessDenied));
  EXPECT_EQ(ErrorOf([&] { Task(u"backup")->Save(u"", false); }), ResultOf(kErrorAccessDenied));
}

TEST_F(Tasks, WithoutATaskBehindThemOnlyHoldValues) {
  const Ref<CTask> task = Local()->CreateTaskObject();
  EXPECT_EQ(task->ServerName + task->DomainName, u"LOCALHOSTCORP");
  task->Run();
  task->Terminate();
  std::int32_t window = 0;
  task->ShowProperties(window);
  EXPECT_EQ(FailureOf([&] { task->Save(u"", false); }),
            u"232|[Veldmark2][CTask]|Internal Task Object not initialized");
  CTrigger trigger;
  const std::vector<std::function<void()>> unset = {
      [&] { task->GetTriggers(); }, [&] { task->CreateTrigger(); }, [&] { trigger.Save(); },
      [&] { trigger.Delete(); }};
  for (const auto& call : unset) EXPECT_EQ(ErrorOf(call), runtime_error::kObjectNotSet);
}

TEST_F(Tasks, HandThePasswordOnWithAnAccountOnlyAndTellNobody) {
  const Ref<CTask> task = Task(u"backup");
  Call(*task, u"Password", MemberKind::kPut, {Variant(Text(u"Correct-Horse"))});
  task->Save(u"", false);
  EXPECT_FALSE(local().tasks()[u"BACKUP.JOB"].password.has_value());
  task->AccountInformation.Put(u"nobody");
  EXPECT_EQ(ErrorOf([&] { task->Save(u"", false); }), kAccountNameNotFound);
  task->AccountInformation.Put(u"LOCALHOST\\ann");
  task->Save(u"", false);
  EXPECT_EQ(TextView(local().tasks()[u"BACKUP.JOB"].password->c_str()), u"Correct-Horse");
  EXPECT_EQ(Task(u"backup")->AccountInformation.Get(), u"LOCALHOST\\ann");
  for (const auto& call : journal().entries()) {
    EXPECT_EQ(call.argument.find("Horse"), std::string::npos) << call.operation;
  }
  // With another password the task doesn't start.
  local().own_accounts().user(u"ann").password.emplace(u"x");
  task->Run();
  task->Refresh();
  EXPECT_EQ(task->Status(), TS_TaskReady);
  EXPECT_EQ(Job(u"backup").start_error, ResultOf(kErrorLogonFailure));
}

TEST_F(Tasks, RunByHandAndByTheClock) {
  const Ref<CTask> task = Task(u"backup");
  const auto state = [&] {
    task->Refresh();
    return std::vector<std::int32_t>{task->Status(), task->ExitCode()};
  };
  EXPECT_EQ(ErrorOf([&] { task->Terminate(); }), kTaskNotRunning);
  task->Run();
  EXPECT_THAT(state(), ElementsAre(TS_TaskRunning, 0));
  EXPECT_EQ(task->LastRunTime(), At(2024, 3, 5, 14, 30));
  task->Terminate();
  EXPECT_THAT(state(), ElementsAre(TS_TaskReady, kTaskTerminated));
  simulated::TaskNotes& notes = local().tasks()[u"BACKUP.JOB"];
  notes.lasts = 600;
  notes.exit_code = 3;
  Pass(36);
  EXPECT_THAT(state(), ElementsAre(TS_TaskRunning, kTaskTerminated));
  EXPECT_EQ(task->LastRunTime(), At(2024, 3, 5, 15, 5));
  Pass(10);
  EXPECT_THAT(state(), ElementsAre(TS_TaskReady, 3));
  task->MaxRunTime.Put(60'000);
  task->Flags.Put(tfDisabled);
  task->Save(u"", false);
  Pass(60 * 24);
  EXPECT_THAT(state(), ElementsAre(TS_TaskDisabled, 3));
  EXPECT_EQ(task->NextRunTime(), At(1999, 11, 30));
  task->Flags.Put({});
  task->Save(u"", false);
  Pass(60 * 24);
  EXPECT_THAT(state(), ElementsAre(TS_TaskReady, kTaskTerminated));

  // One that is done is gone, if it is to be.
  TASK_TRIGGER once = Daily(16, 30);
  once.TriggerType = kTriggerOnce;
  once.wBeginDay = 8;
  Add(local(), u"once", {.flags = kTaskFlagDeleteWhenDone, .triggers = {once}});
  EXPECT_EQ(Local()->GetTasks()->Count(), 2);
  Pass(60 * 24 * 3);
  EXPECT_EQ(Local()->GetTasks()->Count(), 1);
}

TEST_F(Tasks, HaveTriggersWhoseMembersGoByTheirType) {
  const Ref<CTask> task = Task(u"backup");
  const Ref<CTrigger> trigger = task->CreateTrigger();
  const auto words = [&] {
    const TASK_TRIGGER& record = trigger->Record();
    return std::vector<int>(std::begin(record.Type), std::end(record.Type));
  };
  const std::vector<TextView> members = {u"DaysInterval",  u"Day",  u"Months",
                                         u"DaysOfTheWeek", u"Week", u"WeeksInterval"};
  struct Row {
    TriggerTypesEnum type;
    const char* gets;  // of the members above in turn: the word read, "-" for an error
    const char* puts;
  };
  for (const Row& row :
       {Row{TT_Once, "------", "------"}, Row{TT_Daily, "0-----", "0-----"},
        Row{TT_Weekly, "---0--", "---1-0"}, Row{TT_MonthlyDate, "-02---", "-02---"},
        Row{TT_MonthlyWeekDay, "--102-", "--112-"}, Row{TT_OnIdle, "------", "------"}}) {
    trigger->PutTriggerType(row.type);
    for (std::size_t i = 0; i < members.size(); ++i) {
      SCOPED_TRACE(std::to_string(row.type) + ToUtf8(members[i]));
      const std::vector<int> before = words();
      const std::int32_t value = static_cast<std::int32_t>(i) - 3;
      if (row.puts[i] == '-') {
        EXPECT_EQ(FailureOf([&] {
                    Call(*trigger, members[i], MemberKind::kPut, {Variant(value)});
                  }).substr(0, 12),
                  ToText(kBadType) + u"|");
        EXPECT_EQ(words(), before);
      } else {
        Call(*trigger, members[i], MemberKind::kPut, {Variant(value)});
        EXPECT_EQ(static_cast<std::int16_t>(words()[row.puts[i] - '0']), value);
      }
      if (row.gets[i] == '-') {
        EXPECT_EQ(ErrorOf([&] { Call(*trigger, members[i], MemberKind::kGet, {}); }), kBadType);
      } else {
        EXPECT_EQ(ToLong(Call(*trigger, members[i], MemberKind::kGet, {})),
                  static_cast<std::int16_t>(words()[row.gets[i] - '0']));
      }
    }
  }
  trigger->PutRandomMinutesInterval(7);
  EXPECT_EQ(trigger->Record().Reserved2, 7);
  EXPECT_EQ(trigger->Record().wRandomMinutesInterval, 0);
  EXPECT_EQ(trigger->Record().cbTriggerSize, 46);
  EXPECT_EQ(trigger->EndDate(), At(1999, 11, 30));
  EXPECT_EQ(ErrorOf([&] { trigger->PutEndDate({1e9}); }), runtime_error::kInvalidCall);
  trigger->PutStartHour(24);
  EXPECT_EQ(ErrorOf([&] { trigger->Save(); }), kInvalidArgument);
  EXPECT_EQ(Task(u"backup")->GetTriggers()->Count(), 2);
  // A trigger goes by its place, and those behind it move up.
  const Ref<CTrigger> first = task->GetTriggers()->ItemByIndex(1);
  first->Delete();
  first->Delete();
  trigger->PutStartHour(1);
  EXPECT_EQ(ErrorOf([&] { trigger->Delete(); }), kTriggerNotFound);
}

TEST(TriggerTimes, FollowFromTheRecordAndReadAsThePlatformWords) {
  struct Row {
    TASK_TRIGGER trigger;
    const char16_t* text;
    std::vector<int> next;  // from 2024-03-05 14:30 on: month, day, hour, minute
  };
  const auto with = [](TASK_TRIGGER_TYPE type, WORD a, WORD b, WORD c) {
    TASK_TRIGGER trigger = Daily(9);
    trigger.TriggerType = type;
    trigger.Type[0] = a;
    trigger.Type[1] = b;
    trigger.Type[2] = c;
    return trigger;
  };
  TASK_TRIGGER repeated = Daily(12, 5);
  repeated.MinutesInterval = 20;
  repeated.MinutesDuration = 180;
  TASK_TRIGGER ended = Daily(9, 0, kTriggerHasEndDate);
  ended.wEndYear = 2024;
  ended.wEndMonth = 3;
  ended.wEndDay = 5;
  TASK_TRIGGER unsound = Daily(9);
  unsound.wBeginMonth = 13;
  for (const Row& row :
       {Row{with(kTriggerDaily, 3, 0, 0),
            u"At 9:00 AM every 3 days, starting 3/5/2024",
            {3, 8, 9, 0}},
        Row{with(kTriggerWeekly, 2, 0x42, 0),
            u"At 9:00 AM every Mon, Sat of every 2 weeks, starting 3/5/2024",
            {3, 9, 9, 0}},
        Row{with(kTriggerWeekly, 2, 0x02, 0),
            u"At 9:00 AM every Mon of every 2 weeks, starting 3/5/2024",
            {3, 18, 9, 0}},
        Row{with(kTriggerWeekly, 0, 0x02, 0),
            u"At 9:00 AM every Mon of every 0 weeks, starting 3/5/2024",
            {}},
        Row{with(kTriggerMonthlyDate, 0, 0x4000, 0xFFF),
            u"At 9:00 AM on day 31 of every month, starting 3/5/2024",
            {3, 31, 9, 0}},
        Row{with(kTriggerMonthlyWeekDay, 5, 0x01, 0x102),
            u"At 9:00 AM on the last Sun of Feb, Sep, starting 3/5/2024",
            {9, 29, 9, 0}},
        Row{with(kTriggerOnce, 0, 0, 0), u"At 9:00 AM on 3/5/2024", {}},
        Row{with(kTriggerAtLogon, 0, 0, 0), u"Run at user logon", {}},
        Row{repeated,
            u"Every 20 minute(s) from 12:05 PM for 3 hour(s) every day, starting 3/5/2024",
            {3, 5, 14, 45}},
        Row{ended, u"At 9:00 AM every day, starting 3/5/2024 and ending 3/5/2024", {}},
        Row{Daily(15, 0, kTriggerDisabled), u"At 3:00 PM every day, starting 3/5/2024", {}},
        Row{unsound, u"At 9:00 AM every day, starting 13/5/2024", {}}}) {
    SCOPED_TRACE(ToUtf8(row.text));
    EXPECT_EQ(TriggerText(row.trigger), row.text);
    const auto now = ToLocalSeconds({.wYear = 2024,
                                     .wMonth = 3,
                                     .wDayOfWeek = 0,
                                     .wDay = 5,
                                     .wHour = 14,
                                     .wMinute = 30,
                                     .wSecond = 0,
                                     .wMilliseconds = 0});
    const auto run = NextRun(row.trigger, *now);
    std::vector<int> next;
    if (run) {
      const SYSTEMTIME time = SystemTimeOf(run->start);
      next = {time.wMonth, time.wDay, time.wHour, time.wMinute};
    }
    EXPECT_EQ(next, row.next);
  }
}

TEST(JobFiles, AreReadWholeOrRefusedWithinTheirBounds) {
  const JobFile job{.application = u"a",
                    .comment = u"c",
                    .user_data = {1, 2},
                    .triggers = {Daily(1), Daily(2)},
                    .signature = std::vector<std::uint8_t>(68)};
  const std::vector<std::uint8_t> whole = *job.Write();
  const auto again = std::get<JobFile>(JobFile::Read(whole));
  EXPECT_EQ(again.application + again.comment, u"ac");
  EXPECT_EQ(*again.Write(), whole);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const auto read = JobFile::Read(std::span(whole).first(size));
    EXPECT_EQ(std::holds_alternative<HRESULT>(read), size < whole.size() - 68) << size;
  }
  struct Row {
    std::size_t offset;
    std::uint8_t value;
    HRESULT error;
  };
  for (const Row& row : {Row{2, 2, kUnknownObjectVersion}, Row{20, 3, kInvalidTask},
                         Row{23, 0xFF, kInvalidTask}, Row{71, 0xFF, kInvalidTask}}) {
    auto changed = whole;
    changed[row.offset] = row.value;
    EXPECT_EQ(std::get<HRESULT>(JobFile::Read(changed)), row.error) << row.offset;
  }
  EXPECT_EQ(JobFile{.comment = Text(70'000, u'x')}.Write(), std::nullopt);
}

TEST_F(Tasks, AreReadFromAFileThatARealSchedulerSaved) {
  // Of Wine's: SetFlags(0x200), SetMaxRunTime(5), a daily trigger with repetitions.
  const Text hex =
      u"010601004ee12a911a907345b76f862180d4c00246007e00000000003c000a00200000000500000000000000"
      u"0313040000020000000000000000000000000000000000000000060061002e00650078006500000002007000"
      u"0000040043003a005c000000030063007200000002006300000000000800ff0f1d0000000000010030000000"
      u"ea070200030000000000000009000f00140000000a00000000000000010000000100000000002a2800000000";
  std::string bytes;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
    bytes += static_cast<char>(std::stoi(ToUtf8(hex.substr(i, 2)), nullptr, 16));
  }
  local().AddFile(Path(u"wine"), bytes);
  const Ref<CTask> task = Task(u"wine");
  EXPECT_EQ(task->ApplicationName.Get() + task->CommandLine.Get() + task->WorkingDirectory.Get() +
                task->Creator.Get() + task->Comment.Get(),
            u"a.exepC:\\crc");
  EXPECT_EQ(task->Flags.Get(), tfHidden);
  EXPECT_EQ(task->MaxRunTime.Get(), 5);
  EXPECT_EQ(task->GetTriggers()->ItemByIndex(1)->Text(),
            u"Every 10 minute(s) from 9:15 AM for 20 minute(s) every day, starting 2/3/2026");
}

TEST(TaskFaults, LeaveNothingOpen) {
  const std::set<std::string> loads = {"ITask::GetApplicationName", "ITask::GetWorkingDirectory",
                                       "ITask::GetParameters",      "ITask::GetAccountInformation",
                                       "ITask::GetComment",         "ITask::GetCreator",
                                       "ITask::GetErrorRetryCount", "ITask::GetErrorRetryInterval",
                                       "ITask::GetExitCode",        "ITask::GetFlags",
                                       "ITask::GetMaxRunTime",      "ITask::GetPriority",
                                       "ITask::GetStatus",          "ITask::GetMostRecentRunTime",
                                       "ITask::GetNextRunTime",     "SystemTimeToVariantTime"};
  const auto ignore = [](auto&&...) {};
  SweepFaults<TasksWorld>(loads,
                          [](TasksWorld& world) {
                            const Ref<CTask> task = world.Task(u"backup");
                            task->GetTriggers();
                          },
                          ignore, {"ITask::QueryPersistFile", "IPersistFile::GetCurFile"});
  // Without the name of its file a task is saved all the same, and can't be read again.
  SweepFaults<TasksWorld>(loads,
                          [](TasksWorld& world) {
                            const Ref<CTask> task = world.Local()->CreateTask(u"new");
                            const Ref<CTrigger> trigger = task->CreateTrigger();
                            trigger->Save();
                            task->Save(u"", false);
                            task->Refresh();
                            task->Delete();
                          },
                          ignore, {"ITask::QueryPersistFile", "IPersistFile::GetCurFile"});
}

}  // namespace
}  // namespace veldmark
