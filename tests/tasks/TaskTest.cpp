#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <set>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "automation/CaseMapping.h"
#include "automation/CivilTime.h"
#include "automation/Conversion.h"
#include "automation/Interface.h"
#include "network/CServer.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/scheduling/TriggerTimes.h"
#include "platform/simulated/estate/JobFile.h"
#include "platform/simulated/estate/ScheduledTasks.h"
#include "support/ErrorOf.h"
#include "support/FaultSweep.h"
#include "support/ValuesOf.h"
#include "tasks/CTask.h"
#include "tasks/CTasks.h"
#include "tasks/CTrigger.h"
#include "tasks/CTriggers.h"

namespace veldmark {
namespace {

using simulated::JobFile;
using testing::ElementsAre;

constexpr std::int32_t kBadType = kAutomationErrorBase + 1;

TASK_TRIGGER Trigger(TASK_TRIGGER_TYPE type, WORD first = 0, WORD second = 0, WORD third = 0) {
  TASK_TRIGGER trigger{};
  trigger.cbTriggerSize = kTriggerSize;
  trigger.wBeginYear = 2024;
  trigger.wBeginMonth = 3;
  trigger.wBeginDay = 5;
  trigger.wStartHour = 9;
  trigger.TriggerType = type;
  std::ranges::copy(std::initializer_list<WORD>{first, second, third}, trigger.Type);
  return trigger;
}
TASK_TRIGGER Daily(WORD hour, WORD minute = 0, DWORD flags = 0) {
  TASK_TRIGGER trigger = Trigger(kTriggerDaily, 1);
  trigger.wStartHour = hour;
  trigger.wStartMinute = minute;
  trigger.rgFlags = flags;
  return trigger;
}

/// 2024-03-05 14:30, a Tuesday, with a task of this computer and another one's.
struct TasksWorld : SimulatedApartment {
  TasksWorld() {
    local().own_accounts().AddUser(u"ann").password.emplace(u"Correct-Horse");
    other = &estate().AddComputer(u"OTHER");
    other->AddDrive(u'C');
    estate().AddComputer(u"AWAY").SetReachable(false);
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
  Ref<CServer> Local() { return Server(local().name(), u"CORP"); }
  Ref<CTask> Task(const Text& name) { return Local()->GetTasks()->ItemByKey(name); }
  JobFile Job(const Text& name, simulated::Computer* computer = nullptr) {
    const auto file = (computer == nullptr ? local() : *computer).Find(Path(name));
    return file ? std::get<JobFile>(simulated::ReadJob(*file)) : JobFile{.comment = u"missing"};
  }
  void Pass(int minutes) { estate().Advance(std::uint64_t{60'000} * minutes); }

  simulated::Computer* other;
};

struct Tasks : TestIn<TasksWorld> {};

Date At(int year, int month, int day, int hour = 0, int minute = 0) {
  return *FromCivilTime({year, month, day, hour, minute, 0});
}

TEST_F(Tasks, AreListedWithTheirFieldsFromTheirJobFiles) {
  const Ref<CTask> task = Task(u"backup");
  EXPECT_EQ(ValuesOf(*task, {u"Name", u"ApplicationName", u"Comment", u"FileName", u"ServerName",
                             u"DomainName", u"AccountInformation", u"NextRunTime", u"LastRunTime",
                             u"Status", u"MaxRunTime", u"Priority"}),
            "backup|C:\\b.exe|nightly|C:\\Windows\\Tasks\\backup.job|LOCALHOST|CORP||"
            "3/5/2024 3:05:00 PM|11/30/1999|267008|259200000|32");
  EXPECT_EQ(task->GetTriggers()->ItemByIndex(2)->Text(),
            u"At 3:05 PM every day, starting 3/5/2024");
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
  task->Name.Put(u"other name");
  task->Priority.Put(64);
  task->MaxRunTime.Put(-1);
  task->Flags.Put(static_cast<TaskFlagsEnum>(tfHidden | tfInteractive));
  task->Comment.Put(u"note");
  task->AccountInformation.Put(u"");
  task->CommandLine.Put(u"/q");
  task->WorkingDirectory.Put(u"C:\\W");
  task->ApplicationName.Put(u"a.exe");
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
  const auto calls = [&] { return Called({"ITask::", "ITaskScheduler::", "IPersistFile::"}); };
  journal().Clear();
  std::int32_t window = 0;
  task->ShowProperties(window);
  // What is put for the name of a file counts for copies alone.
  task->Save(u"C:\\ignored.job", false);
  const std::string sets =
      "SetApplicationName a.exe;SetWorkingDirectory C:\\W;SetParameters /q;SetAccountInformation;"
      "SetComment note;SetCreator Veldmark2;SetFlags 513;SetMaxRunTime 4294967295;SetPriority 64;";
  const std::string saves = "QueryPersistFile;GetCurFile;Save  FALSE;SaveCompleted;";
  EXPECT_EQ(calls(), "EditWorkItem;" + sets + saves);
  EXPECT_EQ(Job(u"new").triggers.size(), 1u);
  EXPECT_NE(local().Find(Path(u"new"))->attributes() & kFileAttributeHidden, 0u);
  EXPECT_EQ(local().Find(u"C:\\ignored.job"), nullptr);
  task->Save(u"C:\\copy.job", true);
  EXPECT_EQ(calls(), sets + "QueryPersistFile;Save C:\\copy.job TRUE;") << "until it is read again";
  EXPECT_NE(local().Find(u"C:\\copy.job"), nullptr);
  EXPECT_EQ(ErrorOf([&] { task->Save(u"C:\\copy.job", true); }), ResultOf(kErrorFileExists));
  EXPECT_EQ(task->FileName.Get(), u"C:\\copy.job");

  task->FileName.Put(Path(u"new"));
  task->Comment.Put(u"lost");
  task->Refresh();
  EXPECT_EQ(
      ValuesOf(*task, {u"Name", u"ApplicationName", u"CommandLine", u"WorkingDirectory", u"Creator",
                       u"Comment", u"Flags", u"MaxRunTime", u"Priority", u"NextRunTime"}),
      "new|a.exe|/q|C:\\W|Veldmark2|note|513|-1|64|3/6/2024 2:30:00 PM");
  for (const TextView unknown : {u"ErrorRetryCount", u"ErrorRetryInterval"}) {
    Call(*task, unknown, MemberKind::kPut, {Variant(1)});
    EXPECT_EQ(ErrorOf([&] { task->Save(u"", false); }), kNotImplemented);
    journal().Clear();
    task->Refresh();
  }
  EXPECT_EQ(
      calls(),
      "SetTargetComputer \\\\LOCALHOST;Activate C:\\Windows\\Tasks\\new.job;GetApplicationName;"
      "GetWorkingDirectory;GetParameters;GetAccountInformation;GetComment;GetCreator;"
      "GetErrorRetryCount;GetErrorRetryInterval;GetExitCode;GetFlags;GetMaxRunTime;GetPriority;"
      "GetStatus;GetMostRecentRunTime;GetNextRunTime;QueryPersistFile;GetCurFile;");
  task->Save(u"", false);
  EXPECT_EQ(calls(), saves);
  task->Delete();
  EXPECT_EQ(Job(u"new").comment, u"missing");
  EXPECT_EQ(ErrorOf([&] { Local()->CreateTask(u"a/b"); }), ResultOf(kErrorInvalidName));
  local().Find(Path(u"backup"))->DenyDelete().DenyWrite();
  EXPECT_EQ(ErrorOf([&] { Task(u"backup")->Delete(); }), ResultOf(kErrorAccessDenied));
  EXPECT_EQ(ErrorOf([&] { Task(u"backup")->Save(u"", false); }), ResultOf(kErrorAccessDenied));

  const Ref<CTask> there = Server(u"OTHER", u"CORP")->CreateTask(u"there");
  EXPECT_EQ(there->ServerName + there->DomainName, u"OTHERCORP");
  there->Save(u"", false);
  EXPECT_EQ(Job(u"there", other).author, u"Veldmark2");
  // What was read without the path of its file may have a name too short for an extension.
  Add(local(), u"abc", {});
  faults().FailEvery("IPersistFile::GetCurFile", 1117);
  task->FileName.Put(u"abc");
  EXPECT_EQ(ErrorOf([&] { task->Refresh(); }), runtime_error::kInvalidCall);
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
  task->Refresh();
  task->AccountInformation.Put(u"nobody");
  EXPECT_EQ(ErrorOf([&] { task->Save(u"", false); }), kAccountNameNotFound);
  task->AccountInformation.Put(u"LOCALHOST\\ann");
  task->Save(u"", false);
  EXPECT_FALSE(local().tasks()[u"BACKUP.JOB"].password.has_value()) << "reading forgets it";
  Call(*task, u"Password", MemberKind::kPut, {Variant(Text(u"Correct-Horse"))});
  task->Save(u"", false);
  EXPECT_EQ(TextView(local().tasks()[u"BACKUP.JOB"].password->c_str()), u"Correct-Horse");
  EXPECT_EQ(Task(u"backup")->AccountInformation.Get(), u"LOCALHOST\\ann");
  EXPECT_EQ(Called({""}).find("Horse"), std::string::npos);
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
  TASK_TRIGGER once = Trigger(kTriggerOnce);
  once.wBeginDay = 8;
  Add(local(), u"once", {.flags = kTaskFlagDeleteWhenDone, .triggers = {once}});
  EXPECT_EQ(Local()->GetTasks()->Count(), 2);
  Pass(60 * 24 * 3);
  EXPECT_EQ(Local()->GetTasks()->Count(), 1);
}

TEST_F(Tasks, HaveTriggersWhoseMembersGoByTheirType) {
  const Ref<CTask> task = Task(u"backup");
  const Ref<CTrigger> trigger = task->CreateTrigger();
  std::int32_t value = 0;
  const auto words = [&] {
    const TASK_TRIGGER& record = trigger->Record();
    return std::vector<std::int16_t>(std::begin(record.Type), std::end(record.Type));
  };
  struct Row {
    TriggerTypesEnum type;
    // Of DaysInterval, Day, Months, DaysOfTheWeek, Week and WeeksInterval: the word that a get
    // reads and the one that a put writes, "-" for an error.
    const char* gets;
    const char* puts;
  };
  for (const Row& row :
       {Row{TT_Once, "------", "------"}, Row{TT_Daily, "0-----", "0-----"},
        Row{TT_Weekly, "---0--", "---1-0"}, Row{TT_MonthlyDate, "-02---", "-02---"},
        Row{TT_MonthlyWeekDay, "--102-", "--112-"}, Row{TT_OnIdle, "------", "------"}}) {
    trigger->PutTriggerType(row.type);
    std::string gets, puts;
    for (const TextView member :
         {u"DaysInterval", u"Day", u"Months", u"DaysOfTheWeek", u"Week", u"WeeksInterval"}) {
      const std::vector<std::int16_t> before = words();
      const Text failure =
          FailureOf([&] { Call(*trigger, member, MemberKind::kPut, {Variant(--value)}); });
      const std::vector<std::int16_t> after = words();
      const auto put = std::ranges::mismatch(before, after).in1 - before.begin();
      EXPECT_EQ(failure, put == 4 ? ToText(kBadType) + u"|Veldmark2|Invalid trigger type" : u"");
      puts += put == 4 ? '-' : static_cast<char>('0' + put);
      std::int32_t got = 99;
      const auto error = ErrorOf([&] { got = ToLong(Call(*trigger, member, MemberKind::kGet)); });
      const auto read = std::ranges::find(after, got) - after.begin();
      EXPECT_EQ(error, read == 4 ? kBadType : 0);
      gets += read == 4 ? '-' : static_cast<char>('0' + read);
    }
    EXPECT_EQ(gets, row.gets) << row.type;
    EXPECT_EQ(puts, row.puts) << row.type;
  }
  trigger->PutRandomMinutesInterval(7);
  EXPECT_EQ(trigger->Record().Reserved2, 7);
  EXPECT_EQ(trigger->Record().wRandomMinutesInterval, 0);
  EXPECT_EQ(trigger->Record().cbTriggerSize, 46);
  trigger->PutEndDate(At(2025, 4, 6, 23));
  trigger->PutMinutesDuration(9);
  trigger->PutMinutesInterval(8);
  EXPECT_EQ(ValuesOf(*trigger, {u"EndDate", u"MinutesDuration", u"MinutesInterval"}),
            "4/6/2025|9|8");
  EXPECT_EQ(ErrorOf([&] { trigger->PutEndDate({1e9}); }), runtime_error::kInvalidCall);
  EXPECT_EQ(Task(u"backup")->GetTriggers()->Count(), 2);
  // A trigger goes by its place, and those behind it move up.
  const Ref<CTrigger> first = task->GetTriggers()->ItemByIndex(1);
  first->Delete();
  first->Delete();
  EXPECT_EQ(ErrorOf([&] { trigger->Delete(); }), kTriggerNotFound);
}

TEST_F(Tasks, HaveTriggersWhoseDatesCarryOver) {
  struct Row {
    WORD year, month, day;
    const char* date;  // or the error
  };
  const Row rows[] = {
      {0, 0, 0, "11/30/1999"},    {1, 1, 1, "1/1/2001"},          {29, 12, 31, "12/31/2029"},
      {30, 1, 1, "1/1/1930"},     {99, 1, 1, "1/1/1999"},         {100, 1, 1, "1/1/100"},
      {100, 1, 0, "error 5"},     {9999, 12, 31, "12/31/9999"},   {9999, 12, 32, "error 5"},
      {2024, 14, 30, "3/2/2025"}, {2024, 3, 0xFFFF, "2/28/2024"}, {0xFFFF, 1, 1, "error 5"}};
  JobFile job;
  for (const Row& row : rows) {
    TASK_TRIGGER& trigger = job.triggers.emplace_back(Daily(9));
    trigger.wBeginYear = row.year;
    trigger.wBeginMonth = row.month;
    trigger.wBeginDay = row.day;
  }
  Add(local(), u"dates", job);
  const Ref<CTriggers> triggers = Task(u"dates")->GetTriggers();
  for (std::int32_t i = 0; const Row& row : rows) {
    ++i;
    EXPECT_EQ(OutcomeOf([&] { return ValuesOf(*triggers->ItemByIndex(i), {u"BeginDate"}); }),
              row.date);
  }
}

TEST(TriggerTimes, FollowFromTheRecordAndReadAsThePlatformWords) {
  struct Row {
    TASK_TRIGGER trigger;
    Text text;              // "~" stands for where all of them start
    const char* next = "";  // from 2024-03-05 14:30 on: month, day, hour, minute
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
  const Row rows[] = {
      {Trigger(kTriggerDaily, 3), u"At 9:00 AM every 3 days~", "3/8 9:0"},
      {Trigger(kTriggerWeekly, 2, 0x42), u"At 9:00 AM every Mon, Sat of every 2 weeks~", "3/9 9:0"},
      {Trigger(kTriggerWeekly, 2, 0x02), u"At 9:00 AM every Mon of every 2 weeks~", "3/18 9:0"},
      {Trigger(kTriggerWeekly, 0, 0x02), u"At 9:00 AM every Mon of every 0 weeks~"},
      {Trigger(kTriggerMonthlyDate, 0, 0x4000, 0xFFF), u"At 9:00 AM on day 31 of every month~",
       "3/31 9:0"},
      {Trigger(kTriggerMonthlyWeekDay, 5, 0x01, 0x102), u"At 9:00 AM on the last Sun of Feb, Sep~",
       "9/29 9:0"},
      {Trigger(kTriggerOnce), u"At 9:00 AM on 3/5/2024"},
      {Trigger(kTriggerAtLogon), u"Run at user logon"},
      {repeated, u"Every 20 minute(s) from 12:05 PM for 3 hour(s) every day~", "3/5 14:45"},
      {ended, u"At 9:00 AM every day~ and ending 3/5/2024"},
      {Daily(15, 0, kTriggerDisabled), u"At 3:00 PM every day~"},
      {unsound, u"At 9:00 AM every day, starting 13/5/2024"}};
  const auto now = ToLocalSeconds(SYSTEMTIME{2024, 3, 0, 5, 14, 30, 0, 0});
  for (const Row& row : rows) {
    EXPECT_EQ(TriggerText(row.trigger), ReplaceAll(row.text, u"~", u", starting 3/5/2024"));
    std::string next;
    if (const auto run = NextRun(row.trigger, *now)) {
      const SYSTEMTIME time = SystemTimeOf(run->start);
      next = std::to_string(time.wMonth) + "/" + std::to_string(time.wDay) + " " +
             std::to_string(time.wHour) + ":" + std::to_string(time.wMinute);
    }
    EXPECT_EQ(next, row.next) << ToUtf8(row.text);
  }
}

TEST_F(Tasks, AreReadFromAFileThatARealSchedulerSavedOrRefusedWithinItsBounds) {
  // Of Wine's: SetFlags(0x200), SetMaxRunTime(5), a daily trigger with repetitions.
  const Text hex =
      u"010601004ee12a911a907345b76f862180d4c00246007e00000000003c000a00200000000500000000000000"
      u"0313040000020000000000000000000000000000000000000000060061002e00650078006500000002007000"
      u"0000040043003a005c000000030063007200000002006300000000000800ff0f1d0000000000010030000000"
      u"ea070200030000000000000009000f00140000000a00000000000000010000000100000000002a2800000000";
  std::vector<std::uint8_t> whole;
  for (std::size_t i = 0; i < hex.size(); i += 2) {
    whole.push_back(static_cast<std::uint8_t>(std::stoi(ToUtf8(hex.substr(i, 2)), nullptr, 16)));
  }
  local().AddFile(Path(u"wine"), std::string(whole.begin(), whole.end()));
  const Ref<CTask> task = Task(u"wine");
  EXPECT_EQ(ValuesOf(*task, {u"ApplicationName", u"CommandLine", u"WorkingDirectory", u"Creator",
                             u"Comment", u"Flags", u"MaxRunTime"}),
            "a.exe|p|C:\\|cr|c|512|5");
  EXPECT_EQ(task->GetTriggers()->ItemByIndex(1)->Text(),
            u"Every 10 minute(s) from 9:15 AM for 20 minute(s) every day, starting 2/3/2026");
  const std::size_t size = whole.size();
  for (std::size_t cut = 0; cut < size; ++cut) {
    const auto read = JobFile::Read(std::span(whole).first(cut));
    EXPECT_TRUE(std::holds_alternative<HRESULT>(read)) << cut;
  }
  whole.resize(size + 68, 7);  // a signature
  EXPECT_EQ(*std::get<JobFile>(JobFile::Read(whole)).Write(), whole);
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

TEST(TaskFaults, LeaveNothingOpen) {
  const std::set<std::string> loads = {"ITask::GetApplicationName", "ITask::GetWorkingDirectory",
                                       "ITask::GetParameters",      "ITask::GetAccountInformation",
                                       "ITask::GetComment",         "ITask::GetCreator",
                                       "ITask::GetErrorRetryCount", "ITask::GetErrorRetryInterval",
                                       "ITask::GetExitCode",        "ITask::GetFlags",
                                       "ITask::GetMaxRunTime",      "ITask::GetPriority",
                                       "ITask::GetStatus",          "ITask::GetMostRecentRunTime",
                                       "ITask::GetNextRunTime",     "SystemTimeToVariantTime"};
  // Without the name of its file a task is saved all the same, and can't be read again.
  SweepFaults<TasksWorld>(
      loads,
      [](TasksWorld& world) {
        world.Task(u"backup")->GetTriggers();
        const Ref<CTask> task = world.Local()->CreateTask(u"new");
        task->CreateTrigger()->Save();
        task->Save(u"", false);
        task->Refresh();
        task->Delete();
      },
      [](auto&&...) {}, {"ITask::QueryPersistFile", "IPersistFile::GetCurFile"});
}

}  // namespace
}  // namespace veldmark
