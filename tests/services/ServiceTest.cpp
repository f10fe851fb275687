#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <set>
#include <utility>
#include <vector>

#include "apartment/CSupport.h"
#include "automation/Conversion.h"
#include "eventlog/CEventLog.h"
#include "eventlog/CEventLogEntries.h"
#include "eventlog/CEventLogEntry.h"
#include "network/CServer.h"
#include "platform/operations/Handles.h"
#include "platform/simulated/estate/DescriptorText.h"
#include "root/SystemRoot.h"
#include "security/CSecurityDescriptor.h"
#include "services/CService.h"
#include "services/CServices.h"
#include "support/ErrorOf.h"
#include "support/FaultSweep.h"
#include "support/Listener.h"
#include "support/ValuesOf.h"

namespace veldmark {
namespace {

using simulated::kNever;
using simulated::Service;
using testing::ElementsAre;
using testing::IsEmpty;

std::string Names(const Ref<CServices>& services) { return ListOf(services, {u"ServiceName"}); }

/// SRV with a chain of services: Web depends on Db, and Db on Log.
class ServicesWorld : public SimulatedApartment {
 public:
  ServicesWorld() {
    srv = &estate().AddMember(u"WORKGROUP", u"SRV", simulated::Role::Server);
    Service& log = srv->AddService(u"Log");
    log.SetState(kServiceRunning);
    log.display_name = u"Log of everything";
    log.accepts = kServiceAcceptStop | kServiceAcceptPauseContinue;
    Service& db = srv->AddService(u"Db");
    db.dependencies = {u"Log"};
    db.account = u".\\dba";
    db.description = u"Keeps the data";
    db.binary_path = u"C:\\db.exe -k";
    db.load_order_group = u"Base";
    db.tag = 7;
    db.start_type = kServiceAutoStart;
    srv->own_accounts().AddUser(u"dba");
    srv->AddService(u"Web").dependencies = {u"Db", u"Log"};
    srv->AddService(u"Disk").type = kServiceKernelDriver;
  }
  Service& service(TextView name) { return *srv->FindService(name); }
  Ref<CService> Get(TextView name, TextView server_name = u"SRV") {
    auto service = Make<CService>();
    service->ServerName = server_name;
    service->ServiceName = name;
    return service;
  }
  /// What managers and services were opened or made with since the last time.
  std::string Opened() { return Called({"OpenSCManagerW", "OpenServiceW", "CreateServiceW"}); }

  simulated::Computer* srv;
};

class Services : public TestIn<ServicesWorld> {};

TEST_F(Services, ReadTheirConfigurationOnceWhenItIsFirstAskedFor) {
  const Ref<CService> db = Get(u"Db");
  EXPECT_FALSE(db->Stopped());  // nobody has filled the status yet
  EXPECT_EQ(ValuesOf(*db, {u"ErrorControl", u"StartType", u"TagId", u"BinaryPathName",
                           u"LoadOrderGroup", u"ServiceStartName", u"Dependencies", u"Description",
                           u"DisplayName", u"ServiceType", u"InteractsWithDesktop", u"Stopped",
                           u"OwnProcess", u"AcceptStop"}),
            "1|2|7|C:\\db.exe -k|Base|\\\\SRV\\dba|Log|Keeps the data|Db|16|False|True|True|False");
  EXPECT_EQ(Opened(), "\\\\SRV - 4;Db 5;");
  service(u"Db").binary_path = u"C:\\other.exe";
  EXPECT_EQ(db->BinaryPathName(), u"C:\\db.exe -k");
  db->Refresh();
  EXPECT_EQ(db->BinaryPathName(), u"C:\\other.exe");
  // What doesn't exist, and what can't be reached, is empty and no error.
  for (const TextView server : {u"SRV", u"NOBODY"}) {
    EXPECT_EQ(ValuesOf(*Get(u"None", server), {u"Description", u"DisplayName", u"StartType"}),
              "||0");
  }
  EXPECT_EQ(ValuesOf(*ToObject(Server(u"SRV")->GetService(u"Log")), {u"Running"}), "True");
  // What can't be told now stays as it was, and the error stands.
  faults().FailEvery("QueryServiceConfig2W", kErrorAccessDenied);
  db->Refresh();
  EXPECT_EQ(db->Description(), u"Keeps the data");
  EXPECT_EQ(Err().Number(), 5);
  faults().Clear();
  // Systems without descriptions have everything else.
  estate().local().description().version_major = 4;
  service(u"Db").account = u".";
  db->Refresh();
  EXPECT_EQ(db->Description() + db->ServiceStartName() + db->Dependencies(), u"\\\\SRV\\Log");
  EXPECT_EQ(Err().Number(), 0);
}

TEST_F(Services, TestTheBitsOfTypeStateAndControls) {
  const Ref<CService> plain = Get(u"x");
  plain->PutServiceType(static_cast<ServiceTypesEnum>(1 | 32));
  plain->ControlsAccepted = static_cast<ServiceAcceptEnum>(2 | 4);
  plain->CurrentState = SERVICE_PAUSE_PENDING;
  EXPECT_EQ(ValuesOf(*plain, {u"OwnProcess", u"ShareProcess", u"DeviceDriver", u"FileSystemDriver",
                              u"Stopped", u"StartPending", u"StopPending", u"Running",
                              u"ContinuePending", u"PausePending", u"Paused", u"AcceptStop",
                              u"AcceptPauseContinue", u"AcceptShutdown"}),
            "False|True|True|False|False|False|False|False|False|True|False|False|True|True");
  EXPECT_THAT(journal().entries(), IsEmpty());
  plain->PutInteractsWithDesktop(true);
  EXPECT_EQ(plain->ServiceType(), 1 | 32 | 256);
  plain->PutInteractsWithDesktop(true);
  plain->PutInteractsWithDesktop(false);
  EXPECT_EQ(plain->ServiceType(), 1 | 32);
}

TEST_F(Services, AreListedInSmallSlices) {
  const auto list = [&](ServiceTypesEnum types, ServiceStatesMaskEnum states) {
    return Names(Server(u"SRV")->GetServices(types, states));
  };
  EXPECT_EQ(list(SERVICE_WIN32, SERVICE_ACTIVE), "Log");
  EXPECT_EQ(list(SERVICE_WIN32, SERVICE_INACTIVE), "Db, Web");
  EXPECT_EQ(list(SERVICE_TYPE_ALL, SERVICE_STATE_ALL), "Db, Disk, Log, Web");
  EXPECT_EQ(list(SERVICE_KERNEL_DRIVER, SERVICE_STATE_ALL), "Disk");
  const auto usual = std::exchange(service(u"Web").security,
                                   simulated::SecurityBlock::Make(simulated::DescriptorOf(u"D:")));
  EXPECT_EQ(list(SERVICE_WIN32, SERVICE_INACTIVE), "Db") << "Web may not be queried";
  service(u"Web").security = usual;
  journal().Clear();
  service(u"Web").exit_code = 1066;
  service(u"Web").specific_exit_code = 99;
  service(u"Db").wait_hint = 20;
  const auto now = estate().now();
  service(u"Db").Move(kServiceStartPending, kServiceRunning, 60'000, now, now);
  for (int i = 0; i < 40; ++i) srv->AddService(u"Number " + ToText(i));
  const Ref<CServices> all =
      Server(u"SRV", u"CORP")->GetServices(SERVICE_TYPE_ALL, SERVICE_STATE_ALL);
  EXPECT_EQ(all->Count(), 44);
  const std::string calls = Called({"OpenSCManagerW", "EnumServicesStatusW"});
  EXPECT_TRUE(calls.starts_with("\\\\SRV ServicesActive 4;319 3 256 0;319 3 256 ")) << calls;
  EXPECT_GT(std::ranges::count(calls, ';'), 11);
  const Ref<CService> log = all->ItemByKey(u"Log");
  EXPECT_EQ(ValuesOf(*log, {u"DisplayName", u"ServerName", u"DomainName", u"ServiceType",
                            u"CurrentState", u"ControlsAccepted"}),
            "Log of everything|SRV|CORP|16|4|3");
  EXPECT_EQ(ValuesOf(*all->ItemByKey(u"Db"), {u"CurrentState", u"CheckPoint", u"WaitHint"}),
            "2|1|20");
  EXPECT_EQ(ValuesOf(*all->ItemByKey(u"Web"), {u"Win32ExitCode", u"ServiceSpecificExitCode"}),
            "1066|99");
  EXPECT_TRUE(log->Configuration().type.is_changed() &&
              log->Configuration().display_name.is_changed());

  // What goes wrong in the middle ends the walk quietly, at its begin it is raised.
  faults().FailNthOf("EnumServicesStatusW", 3, 1117);
  const std::int32_t found =
      Server(u"SRV")->GetServices(SERVICE_TYPE_ALL, SERVICE_STATE_ALL)->Count();
  EXPECT_TRUE(found > 0 && found < 44) << found;
  service(u"Log").display_name = Text(100, u'x');
  EXPECT_EQ(list(SERVICE_TYPE_ALL, SERVICE_STATE_ALL), "Db, Disk");
  EXPECT_EQ(FailureOf([&] {
              Server(u"\\\\SRV")->GetServices(SERVICE_WIN32, SERVICE_ACTIVE);
            }).substr(0, 23),
            u"1722|Veldmark2.CServer|");
  srv->service_manager().security =
      simulated::SecurityBlock::Make(simulated::DescriptorOf(u"O:SYG:SYD:(A;;CC;;;BA)"));
  EXPECT_EQ(FailureOf([&] { list(SERVICE_WIN32, SERVICE_ACTIVE); }),
            u"5|Veldmark2.CServer|Access is denied.");
}

TEST_F(Services, AreDeliveredOneByOneUntilAListenerCancels) {
  const Ref<CServer> server = Server(u"SRV");
  server->PutAsyncFetch(true);
  std::string log;
  Log(log, server.Get(), u"ServiceName", 2);
  EXPECT_EQ(server->GetServices(SERVICE_TYPE_ALL, SERVICE_STATE_ALL)->Count(), 0);
  EXPECT_EQ(log,
            "Retrieving Services for Server SRV\n4 CService Db\nRetrieved Service Db\n"
            "4 CService Disk\n");
}

TEST_F(Services, ChangeTheirStateWhileACallerWaitsByTheEstatesClock) {
  std::string told;
  Log(told);
  Service& log = service(u"Log");
  log.stop_time = 2500;
  log.pause_time = 10;
  log.wait_hint = 5000;  // of which the wait sleeps a second at most
  const Ref<CService> ours = Get(u"Log");
  auto passed = [&, begun = estate().milliseconds()]() mutable {
    const auto now = estate().milliseconds();
    return now - std::exchange(begun, now);
  };
  const struct {
    ServiceControlsEnum control;
    const char* access;
    ServiceStatesEnum state;
    std::uint64_t takes;
  } steps[] = {{SERVICE_CONTROL_INTERROGATE, "128", SERVICE_RUNNING, 0},
               {SERVICE_CONTROL_PAUSE, "196", SERVICE_PAUSED, 1000},
               {SERVICE_CONTROL_CONTINUE, "196", SERVICE_RUNNING, 0},
               {SERVICE_CONTROL_STOP, "164", SERVICE_STOPPED, 3000}};
  for (const auto& step : steps) {
    EXPECT_TRUE(ours->SetServiceControl(step.control));
    EXPECT_EQ(Opened(), "\\\\SRV - 4;Log " + std::string(step.access) + ";\\\\SRV - 4;Log 5;");
    EXPECT_EQ(ours->CurrentState, step.state);
    EXPECT_EQ(passed(), step.takes) << step.control;
  }
  EXPECT_EQ(told,
            "Last Checkpoint = 1\nLast Checkpoint = 1\nLast Checkpoint = 2\nLast Checkpoint = 3\n");
  log.start_time = 1500;
  EXPECT_TRUE(ours->Start());
  EXPECT_EQ(Called({"OpenSCManagerW", "OpenServiceW", "ControlService"}),
            "\\\\SRV - 4;Log 148;4;4;4;")
      << "each pass interrogates";
  EXPECT_TRUE(ours->Running());
  EXPECT_EQ(passed(), 2000u);
  // What a control leaves as an error may keep its state from being waited for, and what it told
  // stays where the service can't be asked any more.
  log.stop_time = 2500;
  for (const DWORD error : {1062u, 1061u, 1052u, 997u, 0u, 5u}) {
    log.SetState(kServiceRunning);
    faults().LeaveEvery("ControlService", error);
    ours->SetServiceControl(SERVICE_CONTROL_STOP);
    EXPECT_EQ(ours->Stopped(), error != 5) << error;
    faults().Clear();
  }
  log.SetState(kServiceRunning);
  faults().FailEvery("QueryServiceConfigW", kErrorAccessDenied);
  const Ref<CService> blind = Get(u"Log");
  blind->SetServiceControl(SERVICE_CONTROL_INTERROGATE);
  EXPECT_TRUE(blind->Running() && blind->OwnProcess());
  blind->SetServiceControl(SERVICE_CONTROL_STOP);
  EXPECT_TRUE(blind->Stopped());
  faults().Clear();
  log.SetState(kServiceRunning);
  passed();
  // A hint of 0 brakes nothing; who never gets there is waited for a minute.
  log.wait_hint = 0;
  log.stop_time = kNever;
  EXPECT_EQ(FailureOf([&] { ours->SetServiceControl(SERVICE_CONTROL_STOP); }).substr(0, 24),
            u"1053|Veldmark2.CService|");
  EXPECT_EQ(passed(), 60'000u);
}

TEST_F(Services, RefuseWithThePlatformsNumber) {
  srv->AddService(u"Idle");
  srv->AddService(u"Circle").dependencies = {u"Other"};
  srv->AddService(u"Other").dependencies = {u"Circle"};
  srv->AddService(u"Broken").start_error = 2;
  Service& account = srv->AddService(u"Account");
  account.account = u".\\dba";
  srv->own_accounts().user(u"dba").password.emplace(u"right");
  account.password.emplace(u"wrong");
  service(u"Db").start_type = kServiceDisabled;
  const auto start = [&](TextView name) { return ErrorOf([&] { Get(name)->Start(); }); };
  const std::pair<TextView, std::int32_t> cases[] = {
      {u"Web", 1068}, {u"Circle", 1059}, {u"Broken", 2}, {u"Account", 1069}, {u"", 123}};
  for (const auto& [name, error] : cases) EXPECT_EQ(start(name), error);
  EXPECT_EQ(ErrorOf([&] { Get(u"Log")->SetServiceControl(SERVICE_CONTROL_PARAMCHANGE); }), 1052);
  Service& gone = srv->AddService(u"Gone");
  gone.is_marked_for_deletion = true;
  gone.SetState(kServiceRunning);
  const Ref<CService> changed = Get(u"Gone");
  changed->PutStartType(SERVICE_DISABLED);
  EXPECT_EQ(ErrorOf([&] { changed->SaveServiceInfo(); }), 1072);
  srv->service_manager().is_locked = true;
  EXPECT_EQ(start(u"Idle"), 1055);
  EXPECT_EQ(ErrorOf([&] { Get(u"Idle")->Remove(); }), 1055);
  EXPECT_EQ(ErrorOf([&] { Get(u"Idle")->SaveServiceInfo(); }), 1055);
  srv->service_manager().is_locked = false;
  // A list denies what its mask lacks, and who may not administer the computer starts nothing.
  service(u"Idle").security = simulated::SecurityBlock::Make(simulated::DescriptorOf(
      u"O:SYG:SYD:(A;;" + ToText(std::int64_t{0xF01FF & ~kServiceStart}) + u";;;BA)"));
  EXPECT_EQ(start(u"Idle"), 5);
  Get(u"Idle")->SaveServiceInfo();
  srv->SetMayBeAdministered(false);
  EXPECT_EQ(start(u"Broken"), 5);
  EXPECT_EQ(Get(u"Db")->BinaryPathName(), u"C:\\db.exe -k");
}

TEST_F(Services, AreSavedInTheOrderThatOlderSystemsAccept) {
  srv->description().version_major = 5;
  const struct {
    void (*change)(CService&);
    const char* calls;
  } rows[] = {
      {[](CService& s) { s.PutServiceType(SERVICE_WIN32_SHARE_PROCESS); }, "32 -1 -1 - - - - - -;"},
      {[](CService& s) { s.PutServiceType(SERVICE_WIN32_OWN_PROCESS); }, "16 -1 -1 - - - - - -;"},
      {[](CService& s) { s.PutStartType(SERVICE_AUTO_START); }, "-1 2 -1 - - - - - -;"},
      {[](CService& s) { s.PutErrorControl(SERVICE_ERROR_SEVERE); }, "-1 -1 2 - - - - - -;"},
      {[](CService& s) { s.PutBinaryPathName(u"a"); }, "-1 -1 -1 a - - - - -;"},
      {[](CService& s) { s.PutLoadOrderGroup(u"f"); }, "-1 -1 -1 - f - - - -;"},
      {[](CService& s) { s.PutDependencies(u"Log|Disk"); }, "-1 -1 -1 - - Log|Disk - - -;"},
      {[](CService& s) { s.PutDisplayName(u"d"); }, "-1 -1 -1 - - - - - d;"},
      {[](CService& s) {
         s.PutDescription(u"x");
         s.PutTagId(3);
         s.PutDisplayName(s.DisplayName());
         s.PutServiceStartName(u"\\\\SRV\\dba");
         s.PutPassword(Secret(u"x"));
         s.PutPassword(Secret(u""));
       },
       ""},
      {[](CService& s) {
         s.PutPassword(Secret(u"x"));
         s.Refresh();
       },
       ""},
      {[](CService& s) { s.PutPassword(Secret(u"secret")); },
       "-1 -1 -1 - - - \\\\SRV\\dba password -;"},
      {[](CService& s) {
         s.PutServiceStartName(u"LocalSystem");
         s.PutInteractsWithDesktop(true);
         s.PutPassword(Secret(u"x"));
       },
       "-1 -1 -1 - - - LocalSystem password -;272 -1 -1 - - - - - -;"},
      {[](CService& s) {
         s.PutInteractsWithDesktop(false);
         s.PutServiceStartName(u"\\\\SRV\\dba");
       },
       "16 -1 -1 - - - - - -;-1 -1 -1 - - - SRV\\dba  -;"},
      {[](CService& s) {
         s.PutServiceStartName(u"LocalSystem");
         s.PutServiceType(SERVICE_WIN32_SHARE_PROCESS);
       },
       "32 -1 -1 - - - - - -;-1 -1 -1 - - - LocalSystem  -;"}};
  for (const auto& row : rows) {
    const Ref<CService> ours = Get(u"Db");
    ours->Refresh();
    row.change(*ours);
    journal().Clear();
    ours->SaveServiceInfo();
    // Between the lock of the database and its release.
    EXPECT_EQ(
        Called({"OpenSCManagerW", "OpenServiceW", "Lock", "ChangeServiceConfigW", "Un"}),
        std::string("\\\\SRV - 983103;Db 2;ServiceDatabase;") + row.calls + "lockServiceDatabase;");
    EXPECT_EQ(ours->Password(), nullptr);
  }
  EXPECT_EQ(service(u"Db").description, u"Keeps the data");
  EXPECT_EQ(service(u"Db").dependencies, std::vector<Text>{u"Log|Disk"});
  // What is listed writes its type and display name, too.
  const Ref<CService> listed =
      Server(u"SRV")->GetServices(SERVICE_WIN32, SERVICE_ACTIVE)->ItemByKey(u"Log");
  listed->PutStartType(SERVICE_DISABLED);
  listed->SaveServiceInfo();
  EXPECT_EQ(Called({"ChangeServiceConfigW"}), "16 4 -1 - - - - - Log of everything;");
  // A computer of an old version is asked once for what it is.
  simulated::Computer& old = estate().AddMember(u"WORKGROUP", u"OLD", simulated::Role::Server);
  old.description().version_major = 4;
  old.own_accounts().AddUser(u"joe");
  Service& shared = old.AddService(u"Shared");
  shared.type = kServiceShareProcess;
  const Ref<CService> ours = Get(u"Shared", u"OLD");
  ours->PutServiceStartName(u".\\joe");
  ours->PutStartType(SERVICE_DISABLED);
  ours->PutPassword(Secret(u"x"));
  ours->SaveServiceInfo();
  EXPECT_EQ(Called({"ChangeServiceConfigW"}),
            "16 -1 -1 - - - - - -;-1 -1 -1 - - - .\\joe password -;32 -1 -1 - - - - - -;"
            "-1 4 -1 - - - - - -;");
  EXPECT_EQ(shared.account, u".\\joe");
}

TEST_F(Services, AreInstalledAndRemoved) {
  const Ref<CService> made = Server(u"SRV")->CreateServiceObject();
  EXPECT_THAT(journal().entries(), IsEmpty());
  const auto furnish = [&] {
    made->ServiceName = u"New";
    made->PutBinaryPathName(u"C:\\new.exe");
    made->PutServiceType(SERVICE_WIN32_OWN_PROCESS);
    made->PutStartType(SERVICE_DEMAND_START);
  };
  const std::function<void()> lacks[] = {
      [&] { made->ServiceName.clear(); }, [&] { made->PutBinaryPathName(u""); },
      [&] { made->PutServiceType({}); }, [&] { made->PutStartType(SERVICE_BOOT_START); }};
  for (const auto& lack : lacks) {
    furnish();
    lack();
    EXPECT_EQ(ErrorOf([&] { made->Install(); }), 87);
  }
  furnish();
  made->PutPassword(Secret(u"x"));
  made->Install();
  EXPECT_EQ(Opened(), "\\\\SRV - 2;New - 983551 16 3 0 C:\\new.exe - -  password;");
  EXPECT_EQ(service(u"New").display_name + service(u"New").account, u"NewLocalSystem");
  EXPECT_EQ(FailureOf([&] { made->Install(); }),
            u"1073|Veldmark2.CService|The specified service already exists.");
  journal().Clear();
  made->Remove();
  EXPECT_EQ(Opened(), "\\\\SRV - 983103;New 65536;");
  EXPECT_EQ(srv->FindService(u"New"), nullptr);
  // One that runs stays until it stops.
  Get(u"Log")->Remove();
  EXPECT_EQ(ErrorOf([&] { Get(u"Log")->Remove(); }), 1072);
  Get(u"Log")->SetServiceControl(SERVICE_CONTROL_STOP);
  EXPECT_EQ(srv->FindService(u"Log"), nullptr);
}

TEST_F(Services, KnowWhatTheyDependOnAndWhatDependsOnThem) {
  const auto dependents = [&](TextView name, ServiceStatesMaskEnum states = SERVICE_STATE_ALL) {
    const Ref<CService> asked = Get(name);
    asked->DomainName = u"CORP";
    return asked->GetServicesDependentOnMe(states);
  };
  EXPECT_EQ(Names(dependents(u"Log")), "Web, Db");
  EXPECT_EQ(Opened(), "\\\\SRV - 983103;Log 10;");
  EXPECT_EQ(Names(dependents(u"Web")), "");
  EXPECT_EQ(Names(dependents(u"Log", SERVICE_ACTIVE)), "");
  service(u"Db").SetState(kServiceRunning);
  const Ref<CServices> active = dependents(u"Log", SERVICE_ACTIVE);
  EXPECT_EQ(ListOf(active, {u"ServiceName", u"ServerName", u"DomainName", u"DisplayName",
                            u"Running", u"OwnProcess"}),
            "Db|SRV|CORP|Db|True|True");
  EXPECT_EQ(ListOf(active->ItemByIndex(1)->GetMyDependentServices(),
                   {u"ServiceName", u"DomainName", u"Running"}),
            "Log|CORP|True");
  EXPECT_EQ(Names(Get(u"Web")->GetMyDependentServices()), "Db, Log");
  EXPECT_EQ(Names(Get(u"Log")->GetMyDependentServices()), "");
  // Starting one starts what it depends on before.
  service(u"Db").SetState(kServiceStopped);
  service(u"Db").start_time = 3000;
  service(u"Web").start_time = 2000;
  const auto begun = estate().milliseconds();
  EXPECT_TRUE(Get(u"Web")->Start());
  EXPECT_EQ(estate().milliseconds() - begun, 5000u);
  EXPECT_EQ(service(u"Db").StateAt(estate().now()), kServiceRunning);
}

TEST_F(Services, ShowTheirDescriptor) {
  for (const TextView server : {u"SRV", u"\\\\SRV"}) {
    const Ref<CSecurityDescriptor> descriptor = Get(u"Db", server)->GetSecurityDescriptor();
    EXPECT_EQ(descriptor->ParentObjectType + descriptor->ParentObjectPath, u"CService\\\\SRV\\Db");
  }
}

TEST_F(Services, TakeTheirTimeByAClockThatRuns) {
  estate().Follow([] {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<simulated::Ticks>(now / std::chrono::nanoseconds(100));
  });
  service(u"Db").start_time = 60;
  service(u"Db").wait_hint = 20;
  const auto begun = std::chrono::steady_clock::now();
  EXPECT_TRUE(Get(u"Db")->Start());
  EXPECT_GE(std::chrono::steady_clock::now() - begun, std::chrono::milliseconds(60));
}

TEST_F(Services, HaveTheirChangesLoggedWhenTheyHappen) {
  srv->AddEventLog(u"System");
  srv->AddDrive(u'C');
  srv->AddFile(u"C:\\codes.dll").Messages({{2, u"code 2"}});
  srv->local_machine()
      .Key(u"SYSTEM\\CurrentControlSet\\Services\\EventLog\\System\\Service Control Manager")
      .String(u"ParameterMessageFile", u"C:\\codes.dll", kRegExpandSz);
  const auto reader = Make<CEventLog>();
  reader->SetServerName(u"SRV");
  reader->SetLogName(u"System");
  Service& log = service(u"Log");
  log.SetState(kServiceStopped);
  log.start_time = log.continue_time = 2000;
  log.pause_time = 5000;
  service(u"Disk").start_error = 2;
  srv->AddService(u"Mount").dependencies = {u"Disk"};
  srv->AddService(u"Lonely").dependencies = {u"Nobody"};
  Service& going = srv->AddService(u"Going");
  going.SetState(kServiceRunning);
  going.is_marked_for_deletion = true;
  srv->AddService(u"Last").dependencies = {u"Going"};
  // What is new, each with its type and second.
  auto logged = [&, first = 1]() mutable {
    std::vector<std::string> told;
    const auto all = reader->GetEventLogEntries();
    for (; first <= all->Count(); ++first) {
      Variant index(first);
      const auto entry = all->Item(index);
      EXPECT_EQ(entry->SourceName() + entry->ComputerName(), u"Service Control ManagerSRV");
      EXPECT_EQ(entry->TimeWritten(), entry->TimeGenerated());
      Text text = ToText(Variant(entry->TimeWritten())).substr(14, 2) + u" " +
                  ToText(entry->EventCode()) + u" " + ToText(entry->EventType());
      const Variant strings = entry->StringsArray();
      for (const Text& string : strings.If<TextArray>()->elements) text += u", " + string;
      told.push_back(ToUtf8(text) + (entry->Sid() == nullptr ? "" : " by somebody"));
    }
    return told;
  };
  const auto control = [&](ServiceControlsEnum value) { Get(u"Log")->SetServiceControl(value); };
  EXPECT_TRUE(Get(u"Db")->Start());
  EXPECT_EQ(ErrorOf([&] { Get(u"Mount")->Start(); }), 1068);
  for (const auto* name : {u"Lonely", u"Last"}) {
    EXPECT_EQ(ErrorOf([&] { Get(name)->Start(); }), 1075);
  }
  EXPECT_EQ(ErrorOf([&] { control(SERVICE_CONTROL_STOP); }), 1051);
  EXPECT_THAT(logged(), ElementsAre("02 7036 4, Log of everything, running",
                                    "02 7036 4, Db, running", "02 7000 1, Disk, code 2",
                                    "02 7001 1, Mount, Disk, code 2", "02 7003 1, Lonely, Nobody"));
  // A state that is left for another one before it is entered is none.
  Get(u"Db")->SetServiceControl(SERVICE_CONTROL_STOP);
  const ServiceHandle manager(platform.services,
                              platform.services.OpenSCManagerW(u"SRV", nullptr, kManagerConnect));
  const ServiceHandle opened(platform.services, platform.services.OpenServiceW(
                                                    manager.Get(), u"Log", kServicePauseContinue));
  SERVICE_STATUS status;
  EXPECT_TRUE(platform.services.ControlService(opened.Get(), kServiceControlPause, &status));
  estate().Advance(1000);
  control(SERVICE_CONTROL_STOP);
  srv->description().version_major = 5;
  EXPECT_TRUE(Get(u"Log")->Start());
  control(SERVICE_CONTROL_PAUSE);
  control(SERVICE_CONTROL_CONTINUE);
  EXPECT_THAT(logged(),
              ElementsAre("02 7036 4, Db, stopped", "03 7036 4, Log of everything, stopped",
                          "03 7035 4, Log of everything, start by somebody",
                          "05 7036 4, Log of everything, running",
                          "05 7035 4, Log of everything, pause by somebody",
                          "10 7036 4, Log of everything, paused",
                          "10 7035 4, Log of everything, continue by somebody",
                          "12 7036 4, Log of everything, running"));
}

struct RunningWorld : ServicesWorld {
  RunningWorld() {
    service(u"Log").stop_time = service(u"Db").start_time = 1500;
    Engine().GetServer(u"SRV", u"WORKGROUP");
  }
};

TEST(ServiceFaults, LeaveNoHandleOpenAndNoDatabaseLocked) {
  const auto unlocked = [](ServicesWorld& world, const std::string&, bool) {
    EXPECT_FALSE(world.srv->service_manager().is_locked);
  };
  // What gives back reports its failure, and it is none of the caller's; a fetch never raises.
  const std::set<std::string> closing = {"CloseServiceHandle", "FormatMessageW", "LocalFree",
                                         "lstrlenW"};
  const std::set<std::string> twice = {"OpenSCManagerW", "OpenServiceW", "QueryServiceStatus",
                                       "EnumServicesStatusW"};
  std::set<std::string> fetching = closing;
  fetching.insert({"QueryServiceConfigW", "QueryServiceConfig2W"});
  SweepFaults<RunningWorld>(
      closing,
      [](auto& w) {
        w.Get(u"Log")->GetServicesDependentOnMe(SERVICE_STATE_ALL);
        const Ref<CService> service = w.Get(u"Db");
        service->Start();
        service->PutStartType(SERVICE_DISABLED);
        service->PutServiceStartName(u"LocalSystem");
        service->PutPassword(Secret(u"x"));
        service->SaveServiceInfo();
        service->Remove();
        service->ServiceName = u"New";
        service->PutBinaryPathName(u"x");
        service->PutServiceType(SERVICE_WIN32_OWN_PROCESS);
        service->Install();
      },
      unlocked);
  SweepFaults<RunningWorld>(
      fetching,
      [](auto& w) {
        w.Get(u"Log")->SetServiceControl(SERVICE_CONTROL_STOP);
        w.Get(u"Web")->GetMyDependentServices();
        w.Server(u"SRV")->GetServices(SERVICE_TYPE_ALL, SERVICE_STATE_ALL);
      },
      unlocked, twice);
}

}  // namespace
}  // namespace veldmark
