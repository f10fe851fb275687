#include "network/CServer.h"

#include "accounts/CGroup.h"
#include "accounts/CGroups.h"
#include "accounts/CUser.h"
#include "accounts/CUsers.h"
#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "apartment/NetworkPages.h"
#include "automation/Declare.h"
#include "eventlog/CEventLog.h"
#include "eventlog/CEventLogEntries.h"
#include "eventlog/CEventLogEntry.h"
#include "eventlog/CEventLogs.h"
#include "network/CServerAccountPolicy.h"
#include "network/CSocket.h"
#include "network/ServerNames.h"
#include "platform/operations/Handles.h"
#include "registry/CRegKey.h"
#include "registry/CRegKeys.h"
#include "registry/CRegistry.h"
#include "security/CSid.h"
#include "security/CSids.h"
#include "services/CPrinter.h"
#include "services/CPrinters.h"
#include "services/CService.h"
#include "services/CServices.h"
#include "storage/CShares.h"
#include "storage/CVolume.h"
#include "storage/CVolumes.h"
#include "tasks/CTask.h"
#include "tasks/CTasks.h"

namespace veldmark {
namespace {

constexpr TextView kClassName = u"CServer";
constexpr TextView kFilerPipe = u"\\PIPE\\NETAPPSVC";
constexpr TextView kEventLogKey = u"SYSTEM\\CurrentControlSet\\Services\\EventLog";
constexpr std::int32_t kWin32Services = SERVICE_WIN32;
constexpr std::int32_t kActiveServices = SERVICE_ACTIVE;
constexpr DWORD kVersionMask = 15;

enum ServerEvent : std::int32_t {
  kUserFound = 1,
  kGroupFound,
  kVolumeFound,
  kServiceFound,
  kPrinterFound,
  kSidFound,
  kEventLogEntryFound,
};

const EventInterface& DescribeServerEvents() {
  static const EventInterface table =
      DeclareEvents(u"__CServer", u"Objects that a walk finds, one by one.")
          .Event<Ref<CUser>, bool&>(u"UserFound", u"A user; Cancel ends the walk.",
                                    {u"oUser", u"Cancel"})
          .Event<Ref<CGroup>, bool&>(u"GroupFound", u"A group; Cancel ends the walk.",
                                     {u"oGroup", u"Cancel"})
          .Event<Ref<CVolume>, bool&>(u"VolumeFound", u"A volume; Cancel ends the walk.",
                                      {u"oVolume", u"Cancel"})
          .Event<Ref<CService>, bool&>(u"ServiceFound", u"A service; Cancel ends the walk.",
                                       {u"oService", u"Cancel"})
          .Event<Ref<CPrinter>, bool&>(u"PrinterFound", u"A printer; Cancel ends the walk.",
                                       {u"oPrinter", u"Cancel"})
          .Event<Ref<CSid>, bool&>(u"SidFound", u"A SID; Cancel ends the walk.",
                                   {u"oSid", u"Cancel"})
          .Event<Ref<CEventLogEntry>, bool&>(u"EventLogEntryFound",
                                             u"An entry of an event log; Cancel ends the walk.",
                                             {u"oEntry", u"Cancel"});
  return table;
}

std::int32_t Signed(DWORD value) { return static_cast<std::int32_t>(value); }

}  // namespace

const Interface& CServer::Describe() {
  static const Interface table =
      Declare<CServer>(u"CServer", u"A computer in the network.")
          .Method<&CServer::GetShares>(u"GetShares", u"Its shares.")
          .Remark(
              u"Who may not see everything gets names, kinds and comments; path, uses and "
              u"permissions are then empty or 0.")
          .Method<&CServer::GetGroups>(u"GetGroups", u"Its local groups.")
          .Method<&CServer::GetUsers>(u"GetUsers", u"Its users.")
          .Method<&CServer::GetVolumes>(u"GetVolumes", u"Its disks.")
          .Method<&CServer::GetServices>(
              u"GetServices", u"Its services of these types and states.",
              {{u"eServiceType", kWin32Services}, {u"eServiceState", kActiveServices}})
          .Remark(
              u"Without arguments those that run. A failure in the middle of the walk, and a "
              u"service whose two names take more than a slice of 256 bytes, end it without an "
              u"error.")
          .Method<&CServer::GetPrinters>(u"GetPrinters", u"Its printers.")
          .Remark(
              u"With AsyncFetch the list is full all the same, and its printers have no "
              u"ServerName. Raises the platform's error, 1722 for a server that can't be "
              u"reached and 122 where a printer was added meanwhile: ask again.")
          .Stored<&CServer::ServerName>(u"ServerName",
                                        u"Its name, as the caller or the computer itself gives it.")
          .Stored<&CServer::DomainName>(u"DomainName", u"The domain that it was found in.")
          .Property<&CServer::Comment, &CServer::PutComment>(u"Comment",
                                                             u"What the computer says of itself.")
          .Get<&CServer::PlatformId>(u"PlatformId", u"500 for Windows NT and later versions.")
          .Get<&CServer::VersionMajor>(u"VersionMajor", u"The system's version before the point.")
          .Get<&CServer::VersionMinor>(u"VersionMinor", u"The system's version behind the point.")
          .Get<&CServer::ServerType>(u"ServerType", u"What the computer is, bit by bit.")
          .Get<&CServer::NumUsers>(u"NumUsers", u"How many users it admits.")
          .Get<&CServer::DisconnectTime>(u"DisconnectTime",
                                         u"Minutes until an idle session is ended.")
          .Get<&CServer::Hidden>(u"Hidden", u"True if it doesn't announce itself.")
          .Get<&CServer::AnnounceRate>(u"AnnounceRate", u"Seconds between announcements.")
          .Get<&CServer::AnnounceDelta>(u"AnnounceDelta",
                                        u"Milliseconds by which announcements vary.")
          .Get<&CServer::Licenses>(u"Licenses", u"Users per licence.")
          .Get<&CServer::UserPath>(u"UserPath", u"The path of users' folders.")
          .Get<&CServer::PrimaryIPAddress>(u"PrimaryIPAddress", u"The first address of its name.")
          .Method<&CServer::CreateServiceObject>(u"CreateServiceObject",
                                                 u"A new service, to be filled and installed.")
          .Method<&CServer::GetService>(u"GetService", u"A service by its short name.",
                                        {u"ServiceName"})
          .Remark(u"Never raises: a service that doesn't exist has a name and nothing else.")
          .Method<&CServer::GetTasks>(u"GetTasks", u"Its scheduled tasks.")
          .Remark(u"Raises where a single task can't be read, and then there is no list.")
          .Method<&CServer::CreateTask>(u"CreateTask", u"A new scheduled task.", {u"TaskName"})
          .Remark(
              u"Nothing is written before the task's Save. Its Name is empty until its Refresh. "
              u"Raises 80070050 where there is a task of this name.")
          .Method<&CServer::GetEventLogEntries>(u"GetEventLogEntries", u"The entries of a log.",
                                                {u"EventLog"})
          .Method<&CServer::GetServerAccountPolicy>(u"GetServerAccountPolicy",
                                                    u"Its password and lockout rules.")
          .Method<&CServer::GetSidsWithUserRight>(
              u"GetSidsWithUserRight", u"The accounts that hold a right.", {u"UserRight"})
          .Remark(
              u"Raises 5 for who is no administrator there and 1313 for a right that there "
              u"isn't. A right that nobody holds makes an empty list.")
          .Get<&CServer::StateUnknown>(u"StateUnknown",
                                       u"True until it has answered or was on a browse list.")
          .Method<&CServer::CreateServicesCollection>(u"CreateServicesCollection",
                                                      u"An empty list of services.")
          .Method<&CServer::CreateTasksCollection>(u"CreateTasksCollection",
                                                   u"An empty list of tasks.")
          .Method<&CServer::GetEventLogEntriesFromFile>(
              u"GetEventLogEntriesFromFile", u"The entries of a saved log.", {u"FileName"})
          .Remark(
              u"The file is one of this computer, whatever the server. An empty name stands for "
              u"the server's application log.")
          .Method<&CServer::CreateTaskObject>(u"CreateTaskObject",
                                              u"A task object that only holds values.")
          .Method<&CServer::GetCompleteUsers>(u"GetCompleteUsers",
                                              u"Its users with all that is known of them.")
          .Remark(u"Raises 5 for who may not read all that; GetUsers lists the users to him too.")
          .Method<&CServer::CreateLocalGroup>(u"CreateLocalGroup",
                                              u"A new local group; nothing is written yet.",
                                              {{u"GroupName", u""}})
          .Remark(u"Give it a comment and call its Update.")
          .Method<&CServer::GetEventLogEntries2>(u"GetEventLogEntries2",
                                                 u"The entries of a log from a record on.",
                                                 {u"EventLog", u"StartingRecordNumber"})
          .Method<&CServer::GetEventLogs>(u"GetEventLogs", u"Its event logs.")
          .Property<&CServer::AsyncFetch, &CServer::PutAsyncFetch>(
              u"AsyncFetch", u"True to have objects delivered by events.")
          .Remark(
              u"While it is on, lists whose objects have an event stay empty, but for "
              u"GetUsers and GetGroups, which fetch at once all the same. Cancel ends the "
              u"walk. An object also gets the events of what any other one of its thread "
              u"fetches so.")
          .Get<&CServer::ServerTypeRaw>(
              u"ServerTypeRaw", u"What the computer is, as it says itself; 0 from a browse list.")
          .Get<&CServer::IsNetAppFiler>(u"IsNetAppFiler", u"True for a storage filer.")
          .Events(DescribeServerEvents());
  return table;
}

template <class Walk>
auto CServer::WithEngine(Walk&& walk) {
  const Ref<CServer> keep_alive(this);
  return ReRaisingAs(kClassName, [&] { return walk(Engine()); });
}

Ref<CShares> CServer::GetShares() {
  return WithEngine([&](CSupport& engine) { return engine.GetShares(*this); });
}

Ref<CGroups> CServer::GetGroups() {
  return WithEngine([&](CSupport& engine) { return engine.GetLocalGroups(this, false); });
}

Ref<CUsers> CServer::GetUsers() {
  return WithEngine([&](CSupport& engine) { return engine.GetUsers(*this, false); });
}

Ref<CUsers> CServer::GetCompleteUsers() {
  return WithEngine(
      [&](CSupport& engine) { return engine.GetCompleteUserAccounts(*this, AsyncFetch()); });
}

Ref<CVolumes> CServer::GetVolumes() {
  return WithEngine([&](CSupport& engine) { return engine.GetVolumes(*this, AsyncFetch()); });
}

Ref<CPrinters> CServer::GetPrinters() {
  return WithEngine([&](CSupport& engine) { return engine.GetPrinters(*this, AsyncFetch()); });
}

Ref<CServerAccountPolicy> CServer::GetServerAccountPolicy() {
  return WithEngine(
      [&](CSupport& engine) { return engine.GetAccountPolicyInformation(ServerName); });
}

Ref<CSids> CServer::GetSidsWithUserRight(const Text& user_right) {
  return WithEngine([&](CSupport& engine) {
    return engine.GetAccountsWithUserRight(ServerName, user_right, AsyncFetch());
  });
}

Ref<CServices> CServer::GetServices(ServiceTypesEnum types, ServiceStatesMaskEnum states) {
  return WithEngine(
      [&](CSupport& engine) { return engine.GetServices(*this, types, states, AsyncFetch()); });
}

Ref<CService> CServer::CreateServiceObject() {
  return ReRaisingAs(kClassName, [&] {
    auto service = Make<CService>();
    service->ServerName = ServerName;
    service->DomainName = DomainName;
    return service;
  });
}

Variant CServer::GetService(const Text& service_name) {
  return ReRaisingAs(kClassName, [&] {
    const Ref<CService> service = CreateServiceObject();
    service->ServiceName = service_name;
    service->Refresh();
    return Variant(service);
  });
}

Ref<CEventLogs> CServer::GetEventLogs() {
  return WithEngine([&](CSupport& engine) {
    const auto logs = Make<CEventLogs>();
    const auto registry = Make<CRegistry>();
    if (engine.ComputerName() != ServerName) registry->ConnectToRemoteRegistry(ServerName);
    const Ref<CRegKey> key = registry->GetRegKey(HKEY_LOCAL_MACHINE, Text(kEventLogKey));
    const Ref<CRegKeys> names = key->GetSubKeys();
    for (std::int32_t i = 1; i <= names->Count(); ++i) {
      const auto log = Make<CEventLog>();
      log->SetServerName(ServerName);
      log->SetLogName(names->ItemByIndex(i)->Name);
      logs->Add(log.Get());
    }
    return logs;
  });
}

Ref<CEventLogEntries> CServer::GetEventLogEntries(const Text& event_log) {
  return GetEventLogEntries2(event_log, 0);
}

Ref<CEventLogEntries> CServer::GetEventLogEntries2(const Text& event_log,
                                                   std::int32_t starting_record) {
  return WithEngine([&](CSupport& engine) {
    return engine.LoadEventLogEntries(u"\\\\" + ServerName, event_log, {}, starting_record,
                                      AsyncFetch());
  });
}

Ref<CEventLogEntries> CServer::GetEventLogEntriesFromFile(const Text& file_name) {
  return WithEngine([&](CSupport& engine) {
    return engine.LoadEventLogEntries(u"\\\\" + ServerName, {}, file_name, 0, AsyncFetch());
  });
}

Ref<CServices> CServer::CreateServicesCollection() {
  return ReRaisingAs(kClassName, [] { return Make<CServices>(); });
}

Ref<CTasks> CServer::CreateTasksCollection() {
  return ReRaisingAs(kClassName, [] { return Make<CTasks>(); });
}

Ref<CTasks> CServer::GetTasks() {
  return WithEngine([&](CSupport& engine) { return engine.GetTasks(*this); });
}

Ref<CTask> CServer::CreateTask(const Text& task_name) {
  return WithEngine([&](CSupport& engine) { return engine.CreateTask(*this, task_name); });
}

Ref<CTask> CServer::CreateTaskObject() {
  return ReRaisingAs(kClassName, [&] {
    const Ref<CTask> task = Make<CTask>();
    task->ServerName = ServerName;
    task->DomainName = DomainName;
    return task;
  });
}

Text CServer::PrimaryIPAddress() {
  CSocket socket;
  socket.PutHostName(ServerName);
  socket.StopSockets();
  return socket.IPAddress();
}

bool CServer::IsNetAppFiler() {
  bool is_filer = false;
  Swallow([&] {
    std::vector<std::uint8_t> name =
        StringToAnsiBuffer(Text(kServerNameStart).append(ServerName).append(kFilerPipe));
    name.push_back(0);
    FileSystem& files = Apartment::Current().platform.files;
    const FileHandle pipe(
        files,
        files.CreateFileA(reinterpret_cast<LPCSTR>(name.data()), kGenericRead | kGenericWrite,
                          kFileShareRead | kFileShareWrite, nullptr, kOpenExisting, 0, nullptr));
    is_filer = static_cast<bool>(pipe);
  });
  return is_filer;
}

void CServer::FetchUpTo(std::int32_t level) {
  if (information_level_ < level) Engine().GetServerInfo(*this);
}

void CServer::FillFrom(const SERVER_INFO_100& record) {
  SetPlatformId(record.sv100_platform_id);
  ServerName = TextAt(record.sv100_name);
  state_unknown_ = false;
  information_level_ = kNameLevel;
}

void CServer::FillFrom(const SERVER_INFO_101& record) {
  SetPlatformId(record.sv101_platform_id);
  ServerName = TextAt(record.sv101_name);
  state_unknown_ = false;
  version_major_ = Signed(record.sv101_version_major);
  version_minor_ = Signed(record.sv101_version_minor);
  server_type_ = static_cast<ServerTypeEnum>(record.sv101_type);
  comment_ = TextAt(record.sv101_comment);
  information_level_ = kServerLevel;
}

void CServer::FillFromItself(const SERVER_INFO_101& record) {
  FillFrom(record);
  version_major_ = Signed(record.sv101_version_major & kVersionMask);
  server_type_raw_ = Signed(record.sv101_type);
}

void CServer::FillFromItself(const SERVER_INFO_102& record) {
  FillFromItself(SERVER_INFO_101{.sv101_platform_id = record.sv102_platform_id,
                                 .sv101_name = record.sv102_name,
                                 .sv101_version_major = record.sv102_version_major,
                                 .sv101_version_minor = record.sv102_version_minor,
                                 .sv101_type = record.sv102_type,
                                 .sv101_comment = record.sv102_comment});
  num_users_ = Signed(record.sv102_users);
  disconnect_time_ = record.sv102_disc;
  hidden_ = record.sv102_hidden != 0;
  announce_rate_ = Signed(record.sv102_announce);
  announce_delta_ = Signed(record.sv102_anndelta);
  licenses_ = Signed(record.sv102_licenses);
  user_path_ = TextAt(record.sv102_userpath);
  information_level_ = kAdministratorLevel;
}

void CServer::FillFromName(Text server_name, Text domain_name) {
  ServerName = std::move(server_name);
  DomainName = std::move(domain_name);
  state_unknown_ = true;
  information_level_ = kNameLevel;
}

void CServer::OnObjectFound(Object& object, bool& cancel) {
  Forward(object, cancel,
          {{&CEventLogEntry::Describe, kEventLogEntryFound},
           {&CGroup::Describe, kGroupFound},
           {&CPrinter::Describe, kPrinterFound},
           {&CService::Describe, kServiceFound},
           {&CSid::Describe, kSidFound},
           {&CUser::Describe, kUserFound},
           {&CVolume::Describe, kVolumeFound}});
}

Ref<CGroup> CServer::CreateLocalGroup(const Text& group_name) {
  return ReRaisingAs(kClassName, [&] { return CGroup::CreateLocal(group_name, ServerName); });
}

}  // namespace veldmark
