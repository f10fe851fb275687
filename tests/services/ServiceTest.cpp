#include <gmock/gmock.h>

#include <chrono>
#include <functional>

#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "automation/Conversion.h"
#include "automation/Interface.h"
#include "eventlog/CEventLog.h"
#include "eventlog/CEventLogEntries.h"
#include "eventlog/CEventLogEntry.h"
#include "network/CServer.h"
#include "platform/operations/Handles.h"
#include "platform/simulated/estate/DescriptorText.h"
#include "root/SystemRoot.h"
#include "security/CAces.h"
#include "security/CAcl.h"
#include "security/CSecurityDescriptor.h"
#include "services/CService.h"
#include "services/CServices.h"
#include "support/ErrorOf.h"
#include "support/FaultSweep.h"
#include "support/Listener.h"

namespace veldmark {
namespace {

using simulated::kNever;
using simulated::Service;
using testing::ElementsAre;
using testing::IsEmpty;

std::string Names(const Ref<CServices>& services) {
  Text names;
  for (std::int32_t i = 1; i <= services->Count(); ++i) {
    names += (i > 1 ? u" " : u"") + services->ItemByIndex(i)->ServiceName;
  }
  return ToUtf8(names);
}

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
  Ref<CServer> Server(TextView name = u"SRV") {
    auto server = Make<CServer>();
    server->ServerName = name;
    server->DomainName = u"CORP";
    return server;
  }
  std::vector<std::string> Asked(std::string_view operation) {
    std::vector<std::string> arguments;
    for (const auto& call : journal().entries()) {
      if (call.operation == operation) arguments.push_back(call.argument);
    }
    return arguments;
  }
  /// The access that manager and service were opened with.
  std::string Masks() {
    std::string masks;
    for (const char* operation : {"OpenSCManagerW", "OpenServiceW", "CreateServiceW"}) {
      for (const std::string& asked : Asked(operation)) masks += "[" + asked + "]";
    }
    journal().Clear();
    return masks;
  }

  simulated::Computer* srv;
};

class Services : public TestIn<ServicesWorld> {};

TEST_F(Services, ReadTheirConfigurationOnceWhenItIsFirstAskedFor) {
  const Ref<CService> db = Get(u"Db");
  EXPECT_FALSE(db->Stopped());  // nobody has filled the status yet
  Text shown;
  for (const TextView name :
       {u"ErrorControl", u"StartType", u"TagId", u"BinaryPathName", u"LoadOrderGroup",
        u"ServiceStartName", u"Dependencies", u"Description", u"DisplayName", u"ServiceType",
        u"InteractsWithDesktop", u"Stopped", u"OwnProcess", u"AcceptStop"}) {
    shown += ToText(Call(*db, name, MemberKind::kGet)) + u";";
  }
  EXPECT_EQ(shown,
            u"1;2;0;C:\\db.exe -k;;\\\\SRV\\dba;Log;Keeps the data;Db;16;False;True;True;False;");
  EXPECT_EQ(Masks(), "[\\\\SRV - 4][Db 5]");
  service(u"Db").binary_path = u"C:\\other.exe";
  EXPECT_EQ(db->BinaryPathName(), u"C:\\db.exe -k");
  db->Refresh();
  EXPECT_EQ(db->BinaryPathName(), u"C:\\other.exe");
  // What doesn't exist, and what can't be reached, is empty and no error.
  for (const TextView server : {u"SRV", u"NOBODY"}) {
    const Ref<CService> none = Get(u"None", server);
    EXPECT_EQ(none->Description() + none->DisplayName(), u"");
    EXPECT_EQ(none->StartType(), SERVICE_BOOT_START);
  }
  const Variant got = Server()->GetService(u"Log");
  EXPECT_TRUE(static_cast<CService*>(got.If<Ref<Object>>()->Get())->Running());
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
  Text shown;
  for (const TextView name :
       {u"OwnProcess", u"ShareProcess", u"DeviceDriver", u"FileSystemDriver", u"Stopped",
        u"StartPending", u"StopPending", u"Running", u"ContinuePending", u"PausePending", u"Paused",
        u"AcceptStop", u"AcceptPauseContinue", u"AcceptShutdown"}) {
    shown += ToBoolean(Call(*plain, name, MemberKind::kGet)) ? u'1' : u'0';
  }
  EXPECT_EQ(shown, u"01100000010011");
  EXPECT_THAT(journal().entries(), IsEmpty());
  plain->PutInteractsWithDesktop(true);
  EXPECT_EQ(plain->ServiceType(), 1 | 32 | 256);
  plain->PutInteractsWithDesktop(true);
  plain->PutInteractsWithDesktop(false);
  EXPECT_EQ(plain->ServiceType(), 1 | 32);
}

TEST_F(Services, AreListedInSmallSlices) {
  const auto list = [&](std::int32_t types, std::int32_t states) {
    return Names(Server()->GetServices(static_cast<ServiceTypesEnum>(types),
                                       static_cast<ServiceStatesMaskEnum>(states)));
  };
  EXPECT_EQ(list(48, 1), "Log");
  EXPECT_EQ(list(48, 2), "Db Web");
  EXPECT_EQ(list(319, 3), "Db Disk Log Web");
  EXPECT_EQ(list(1, 3), "Disk");
  journal().Clear();
  for (int i = 0; i < 40; ++i) srv->AddService(u"Number " + ToText(i));
  const Ref<CServices> all = Server()->GetServices(SERVICE_TYPE_ALL, SERVICE_STATE_ALL);
  EXPECT_EQ(all->Count(), 44);
  EXPECT_EQ(Asked("OpenSCManagerW"), std::vector<std::string>{"\\\\SRV ServicesActive 4"});
  const auto slices = Asked("EnumServicesStatusW");
  EXPECT_GT(slices.size(), 10u);
  EXPECT_EQ(slices[0], "319 3 256 0");
  const Ref<CService> log = all->ItemByKey(u"Log");
  EXPECT_EQ(log->DisplayName() + log->ServerName + log->DomainName, u"Log of everythingSRVCORP");
  EXPECT_TRUE(log->Running() && log->AcceptStop() && log->OwnProcess());
  EXPECT_TRUE(log->Configuration().type.is_changed() &&
              log->Configuration().display_name.is_changed());

  // What goes wrong in the middle ends the walk quietly, at its begin it is raised.
  faults().FailNthOf("EnumServicesStatusW", 3, 1117);
  const std::int32_t found = Server()->GetServices(SERVICE_TYPE_ALL, SERVICE_STATE_ALL)->Count();
  EXPECT_TRUE(found > 0 && found < 44) << found;
  service(u"Log").display_name = Text(100, u'x');
  EXPECT_EQ(list(319, 3), "Db Disk");
  EXPECT_EQ(FailureOf([&] {
              Server(u"\\\\SRV")->GetServices(SERVICE_WIN32, SERVICE_ACTIVE);
            }).substr(0, 23),
            u"1722|Veldmark2.CServer|");
  srv->service_manager().security =
      simulated::SecurityBlock::Make(simulated::DescriptorOf(u"O:SYG:SYD:(A;;CC;;;BA)"));
  EXPECT_EQ(FailureOf([&] { list(48, 1); }), u"5|Veldmark2.CServer|Access is denied.");
}

TEST_F(Services, AreDeliveredOneByOneUntilAListenerCancels) {
  const Ref<CServer> server = Server();
  server->PutAsyncFetch(true);
  std::vector<std::string> told;
  Listen(*server, [&](std::int32_t event, std::span<Variant> arguments) {
    auto* const found = static_cast<CService*>(arguments[0].If<Ref<Object>>()->Get());
    told.push_back(std::to_string(event) + ToUtf8(found->ServiceName));
    if (told.size() == 2) arguments[1].Assign(Variant(true));
  });
  EXPECT_EQ(server->GetServices(SERVICE_TYPE_ALL, SERVICE_STATE_ALL)->Count(), 0);
  EXPECT_THAT(told, ElementsAre("4Db", "4Disk"));
  server->PutAsyncFetch(false);
}

TEST_F(Services, ChangeTheirStateWhileACallerWaitsByTheEstatesClock) {
  std::vector<std::string> told;
  Listen(StatusObject(), [&](std::int32_t, std::span<Variant> arguments) {
    told.push_back(ToUtf8(ToText(arguments[0])));
  });
  Service& log = service(u"Log");
  log.stop_time = 2500;
  log.pause_time = 10;
  log.wait_hint = 5000;  // of which the wait sleeps a second at most
  const Ref<CService> ours = Get(u"Log");
  auto seconds = [&, begun = estate().milliseconds()]() mutable {
    const auto now = estate().milliseconds();
    return (now - std::exchange(begun, now)) / 1000;
  };
  struct Step {
    ServiceControlsEnum control;
    const char* masks;
    ServiceStatesEnum state;
    std::uint64_t takes;
  };
  const Step steps[] = {{SERVICE_CONTROL_INTERROGATE, "[Log 128][Log 5]", SERVICE_RUNNING, 0},
                        {SERVICE_CONTROL_PAUSE, "[Log 196][Log 5]", SERVICE_PAUSED, 1},
                        {SERVICE_CONTROL_CONTINUE, "[Log 196][Log 5]", SERVICE_RUNNING, 0},
                        {SERVICE_CONTROL_STOP, "[Log 164][Log 5]", SERVICE_STOPPED, 3}};
  for (const Step& step : steps) {
    EXPECT_TRUE(ours->SetServiceControl(step.control));
    EXPECT_EQ(Masks(), std::string("[\\\\SRV - 4][\\\\SRV - 4]") + step.masks);
    EXPECT_EQ(ours->CurrentState, step.state);
    EXPECT_EQ(seconds(), step.takes) << step.control;
  }
  EXPECT_THAT(told, ElementsAre("Last Checkpoint = 1", "Last Checkpoint = 1", "Last Checkpoint = 2",
                                "Last Checkpoint = 3"));
  log.start_time = 1500;
  EXPECT_TRUE(ours->Start());
  EXPECT_EQ(Masks(), "[\\\\SRV - 4][Log 148]");
  EXPECT_TRUE(ours->Running());
  EXPECT_EQ(seconds(), 2u);
  // A hint of 0 brakes nothing; who never gets there is waited for a minute.
  log.wait_hint = 0;
  log.stop_time = kNever;
  EXPECT_EQ(FailureOf([&] { ours->SetServiceControl(SERVICE_CONTROL_STOP); }).substr(0, 24),
            u"1053|Veldmark2.CService|");
  EXPECT_EQ(seconds(), 60u);
}

TEST_F(Services, RefuseWithThePlatformsNumber) {
  Service& log = service(u"Log");
  service(u"Db").start_type = kServiceDisabled;
  Service& idle = srv->AddService(u"Idle");
  srv->AddService(u"Circle").dependencies = {u"Other"};
  srv->AddService(u"Other").dependencies = {u"Circle"};
  srv->AddService(u"Lonely").dependencies = {u"Nobody"};
  srv->AddService(u"Broken").start_error = 2;
  Service& account = srv->AddService(u"Account");
  account.account = u".\\dba";
  srv->own_accounts().user(u"dba").password.emplace(u"right");
  account.password.emplace(u"wrong");
  srv->AddService(u"Gone").is_marked_for_deletion = true;
  srv->FindService(u"Gone")->SetState(kServiceRunning);
  const auto start = [&](TextView name) { Get(name)->Start(); };
  const auto control = [&](TextView name, std::int32_t value) {
    Get(name)->SetServiceControl(static_cast<ServiceControlsEnum>(value));
  };
  struct Case {
    std::int32_t error;
    std::function<void()> act;
  };
  const Case cases[] = {
      {1056, [&] { start(u"Log"); }},
      {1058, [&] { start(u"Db"); }},
      {1068, [&] { start(u"Web"); }},
      {1059, [&] { start(u"Circle"); }},
      {1075, [&] { start(u"Lonely"); }},
      {2, [&] { start(u"Broken"); }},
      {1069, [&] { start(u"Account"); }},
      {1060, [&] { start(u"None"); }},
      {123, [&] { start(u""); }},
      {1722, [&] { Get(u"Log", u"NOBODY")->Start(); }},
      {1062, [&] { control(u"Idle", 1); }},
      {1052, [&] { control(u"Log", 6); }},
      {87, [&] { control(u"Log", 5); }},
      {87, [&] { control(u"Log", 77); }},
      {1072, [&] { Get(u"Gone")->Remove(); }},
      {1072,
       [&] {
         const Ref<CService> gone = Get(u"Gone");
         gone->PutStartType(SERVICE_DISABLED);
         gone->SaveServiceInfo();
       }},
      {1051,
       [&] {
         service(u"Web").SetState(kServiceRunning);
         control(u"Log", 1);
       }},
      {1055,
       [&] {
         srv->service_manager().is_locked = true;
         start(u"Idle");
       }},
      {1055, [&] { Get(u"Idle")->Remove(); }},
      {1055, [&] { Get(u"Idle")->SaveServiceInfo(); }},
  };
  for (const Case& test : cases) EXPECT_EQ(ErrorOf(test.act), test.error);
  srv->service_manager().is_locked = false;

  // Each operation is denied where one bit of its mask is.
  const auto guard = [](DWORD mask) {
    return simulated::SecurityBlock::Make(simulated::DescriptorOf(
        u"O:SYG:SYD:(A;;" + ToText(std::int64_t{0xF01FF & ~mask}) + u";;;BA)"));
  };
  for (const auto& [bit, act] : std::initializer_list<std::pair<DWORD, std::function<void()>>>{
           {kServiceStart, [&] { start(u"Log"); }},
           {kServiceStop, [&] { control(u"Log", 1); }},
           {kServicePauseContinue, [&] { control(u"Log", 2); }},
           {kServiceInterrogate, [&] { control(u"Log", 4); }},
           {kServiceChangeConfig, [&] { Get(u"Log")->SaveServiceInfo(); }},
           {kServiceEnumerateDependents,
            [&] { Get(u"Log")->GetServicesDependentOnMe(SERVICE_STATE_ALL); }},
           {kDelete, [&] { Get(u"Log")->Remove(); }},
           {kReadControl, [&] { Get(u"Log")->GetSecurityDescriptor(); }}}) {
    log.security = guard(bit);
    EXPECT_EQ(ErrorOf(act), 5) << bit;
  }
  log.security = guard(0);
  srv->SetMayBeAdministered(false);
  EXPECT_EQ(ErrorOf([&] { start(u"Idle"); }), 5);
  EXPECT_EQ(idle.StateAt(estate().now()), kServiceStopped);
  EXPECT_EQ(Get(u"Log")->DisplayName() + Get(u"Db")->BinaryPathName(), u"C:\\db.exe -k");
}

TEST_F(Services, AreSavedInTheOrderThatOlderSystemsAccept) {
  const auto changes = [&](const std::function<void(CService&)>& change, TextView name = u"Db") {
    const Ref<CService> ours = Get(name);
    ours->Refresh();
    change(*ours);
    journal().Clear();
    ours->SaveServiceInfo();
    EXPECT_EQ(Asked("OpenServiceW"), std::vector<std::string>{ToUtf8(name) + " 2"});
    EXPECT_EQ(Asked("OpenSCManagerW"), std::vector<std::string>{"\\\\SRV - 983103"});
    EXPECT_EQ(Asked("LockServiceDatabase").size() + Asked("UnlockServiceDatabase").size(), 2u);
    EXPECT_EQ(ours->Password(), nullptr);
    return Asked("ChangeServiceConfigW");
  };
  srv->description().version_major = 5;
  EXPECT_THAT(changes([](CService&) {}), IsEmpty());
  EXPECT_THAT(changes([](CService& s) { s.PutStartType(SERVICE_AUTO_START); }),
              ElementsAre("-1 2 -1 - - - - - -"));
  EXPECT_THAT(changes([](CService& s) {
                s.PutDescription(u"x");
                s.PutTagId(3);
                s.PutDisplayName(s.DisplayName());
                s.PutServiceStartName(u"\\\\SRV\\dba");
              }),
              IsEmpty());
  EXPECT_EQ(service(u"Db").description, u"Keeps the data");
  EXPECT_THAT(changes([](CService& s) {
                s.PutBinaryPathName(u"b");
                s.PutLoadOrderGroup(u"g");
                s.PutDependencies(u"Log|Disk");
                s.PutDisplayName(u"d");
                s.PutErrorControl(SERVICE_ERROR_SEVERE);
                s.PutPassword(Secret(u"secret"));
              }),
              ElementsAre("-1 -1 2 b g Log|Disk - - d", "-1 -1 -1 - - - \\\\SRV\\dba password -"));
  EXPECT_EQ(service(u"Db").dependencies, std::vector<Text>{u"Log|Disk"});
  EXPECT_THAT(changes([](CService& s) {
                s.PutServiceStartName(u"LocalSystem");
                s.PutInteractsWithDesktop(true);
                s.PutPassword(Secret(u"x"));
              }),
              ElementsAre("-1 -1 -1 - - - LocalSystem password -", "272 -1 -1 - - - - - -"));
  EXPECT_THAT(changes([](CService& s) {
                s.PutInteractsWithDesktop(false);
                s.PutServiceStartName(u"\\\\SRV\\dba");
              }),
              ElementsAre("16 -1 -1 - - - - - -", "-1 -1 -1 - - - SRV\\dba  -"));
  // What is listed writes its type and display name, too.
  const Ref<CService> listed =
      Server()->GetServices(SERVICE_WIN32, SERVICE_ACTIVE)->ItemByKey(u"Log");
  listed->PutStartType(SERVICE_DISABLED);
  journal().Clear();
  listed->SaveServiceInfo();
  EXPECT_THAT(Asked("ChangeServiceConfigW"), ElementsAre("16 4 -1 - - - - - Log of everything"));
  for (const auto& call : journal().entries()) {
    EXPECT_EQ(call.argument.find("secret"), std::string::npos) << call.operation;
  }
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
  journal().Clear();
  ours->SaveServiceInfo();
  EXPECT_THAT(Asked("ChangeServiceConfigW"),
              ElementsAre("16 -1 -1 - - - - - -", "-1 -1 -1 - - - .\\joe password -",
                          "32 -1 -1 - - - - - -", "-1 4 -1 - - - - - -"));
  EXPECT_EQ(shared.account, u".\\joe");
}

TEST_F(Services, AreInstalledAndRemoved) {
  const Ref<CService> made = Server()->CreateServiceObject();
  EXPECT_THAT(journal().entries(), IsEmpty());
  const auto missing = [&] { EXPECT_EQ(ErrorOf([&] { made->Install(); }), 87); };
  missing();
  made->ServiceName = u"New";
  made->PutBinaryPathName(u"C:\\new.exe");
  missing();
  made->PutServiceType(SERVICE_WIN32_OWN_PROCESS);
  missing();
  made->PutStartType(SERVICE_DEMAND_START);
  made->PutPassword(Secret(u"x"));
  EXPECT_EQ(Asked("OpenSCManagerW").size(), 0u);
  made->Install();
  EXPECT_EQ(Masks(), "[\\\\SRV - 2][New - 983551 16 3 0 C:\\new.exe - -  password]");
  EXPECT_EQ(service(u"New").display_name + service(u"New").account, u"NewLocalSystem");
  EXPECT_EQ(FailureOf([&] { made->Install(); }),
            u"1073|Veldmark2.CService|The specified service already exists.");
  const auto other = [&](auto change) {
    const Ref<CService> service = Server()->CreateServiceObject();
    service->ServiceName = u"Other";
    service->PutBinaryPathName(u"x");
    service->PutServiceType(SERVICE_WIN32_OWN_PROCESS);
    service->PutStartType(SERVICE_DEMAND_START);
    change(*service);
    return ErrorOf([&] { service->Install(); });
  };
  EXPECT_EQ(other([](CService& s) { s.ServiceName = u"a\\b"; }), 123);
  EXPECT_EQ(other([](CService& s) { s.PutDisplayName(u"LOG OF EVERYTHING"); }), 1078);
  EXPECT_EQ(other([](CService& s) { s.PutServiceStartName(u"nobody"); }), 1057);
  EXPECT_EQ(other([](CService& s) { s.PutDependencies(u"Other"); }), 1059);
  EXPECT_EQ(other([](CService& s) { s.PutServiceType(SERVICE_WIN32); }), 87);
  EXPECT_EQ(srv->FindService(u"Other"), nullptr);
  journal().Clear();
  made->Remove();
  EXPECT_EQ(Masks(), "[\\\\SRV - 983103][New 65536]");
  EXPECT_EQ(srv->FindService(u"New"), nullptr);
  // One that runs stays until it stops.
  Get(u"Log")->Remove();
  EXPECT_EQ(ErrorOf([&] { Get(u"Log")->Remove(); }), 1072);
  Get(u"Log")->SetServiceControl(SERVICE_CONTROL_STOP);
  EXPECT_EQ(srv->FindService(u"Log"), nullptr);
}

TEST_F(Services, KnowWhatTheyDependOnAndWhatDependsOnThem) {
  const auto dependents = [&](TextView name, std::int32_t states = 3) {
    return Get(name)->GetServicesDependentOnMe(static_cast<ServiceStatesMaskEnum>(states));
  };
  EXPECT_EQ(Names(dependents(u"Log")), "Web Db");
  EXPECT_EQ(Masks(), "[\\\\SRV - 983103][Log 10]");
  EXPECT_EQ(Names(dependents(u"Web")), "");
  EXPECT_EQ(Names(dependents(u"Log", 1)), "");
  service(u"Db").SetState(kServiceRunning);
  const Ref<CServices> active = dependents(u"Log", 1);
  EXPECT_EQ(Names(active), "Db");
  const Ref<CService> db = active->ItemByIndex(1);
  EXPECT_TRUE(db->Running() && db->OwnProcess());
  EXPECT_EQ(db->ServerName + db->DisplayName(), u"SRVDb");
  EXPECT_EQ(Names(Get(u"Web")->GetMyDependentServices()), "Db Log");
  EXPECT_EQ(Names(Get(u"Log")->GetMyDependentServices()), "");
  EXPECT_TRUE(Get(u"Db")->GetMyDependentServices()->ItemByIndex(1)->Running());
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
    EXPECT_EQ(descriptor->GetDACL()->GetAces()->Count(), 4);
  }
  EXPECT_EQ(ErrorOf([&] { Get(u"None")->GetSecurityDescriptor(); }), 1060);
}

TEST_F(Services, TakeTheirTimeByAClockThatRuns) {
  estate().Follow([] {
    using Tick = std::chrono::duration<simulated::Ticks, std::ratio<1, 10'000'000>>;
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<Tick>(now).count();
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
  const auto control = [&](std::int32_t value) {
    Get(u"Log")->SetServiceControl(static_cast<ServiceControlsEnum>(value));
  };
  EXPECT_TRUE(Get(u"Db")->Start());
  EXPECT_EQ(ErrorOf([&] { Get(u"Mount")->Start(); }), 1068);
  EXPECT_EQ(ErrorOf([&] { control(SERVICE_CONTROL_STOP); }), 1051);
  EXPECT_THAT(logged(),
              ElementsAre("02 7036 4, Log of everything, running", "02 7036 4, Db, running",
                          "02 7000 1, Disk, code 2", "02 7001 1, Mount, Disk, code 2"));
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
  const std::set<std::string> twice = {"OpenSCManagerW", "OpenServiceW", "QueryServiceStatus"};
  const auto with = [&](std::set<std::string> more) {
    more.insert(closing.begin(), closing.end());
    return more;
  };
  SweepFaults<RunningWorld>(
      closing, [](auto& w) { w.Get(u"Db")->Start(); }, unlocked);
  SweepFaults<RunningWorld>(
      with({"QueryServiceConfigW", "QueryServiceConfig2W"}),
      [](auto& w) { w.Get(u"Log")->SetServiceControl(SERVICE_CONTROL_STOP); }, unlocked, twice);
  SweepFaults<RunningWorld>(
      closing,
      [](auto& w) {
        const Ref<CService> service = w.Get(u"Db");
        service->PutStartType(SERVICE_DISABLED);
        service->PutServiceStartName(u"LocalSystem");
        service->PutPassword(Secret(u"x"));
        service->SaveServiceInfo();
      },
      unlocked);
  SweepFaults<RunningWorld>(
      closing,
      [](auto& w) {
        const Ref<CService> service = w.Get(u"New");
        service->PutBinaryPathName(u"x");
        service->PutServiceType(SERVICE_WIN32_OWN_PROCESS);
        service->PutStartType(SERVICE_AUTO_START);
        service->Install();
      },
      unlocked);
  SweepFaults<RunningWorld>(
      closing, [](auto& w) { w.Get(u"Db")->Remove(); }, unlocked);
  SweepFaults<RunningWorld>(
      closing, [](auto& w) { w.Get(u"Log")->GetServicesDependentOnMe(SERVICE_STATE_ALL); },
      unlocked);
  SweepFaults<RunningWorld>(
      with({"OpenSCManagerW", "OpenServiceW", "QueryServiceConfigW", "QueryServiceStatus",
            "QueryServiceConfig2W"}),
      [](auto& w) { w.Get(u"Web")->GetMyDependentServices(); }, unlocked);
  SweepFaults<RunningWorld>(
      with({"EnumServicesStatusW"}),
      [](auto& w) { w.Server()->GetServices(SERVICE_TYPE_ALL, SERVICE_STATE_ALL); }, unlocked);
}

}  // namespace
}  // namespace veldmark
