#include "platform/simulated/families/SimulatedServiceControl.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>

#include "automation/CaseMapping.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/simulated/estate/AccessCheck.h"
#include "platform/simulated/estate/AccountLookup.h"
#include "platform/simulated/estate/DescriptorText.h"

namespace veldmark::simulated {
namespace {

constexpr GENERIC_MAPPING kManagerMapping = {0x20014, 0x20022, 0x20009, kManagerAllAccess};
constexpr DWORD kManagerQueryLockStatus = 0x10;
// What is left to a caller who may not administer a computer.
constexpr DWORD kManagerOpenToAll =
    kManagerConnect | kManagerEnumerateService | kManagerQueryLockStatus | kReadControl;
constexpr DWORD kServiceOpenToAll = kServiceQueryConfig | kServiceQueryStatus |
                                    kServiceEnumerateDependents | kServiceInterrogate |
                                    kReadControl;
constexpr std::size_t kLongestName = 256;
constexpr DWORD kFirstUserDefinedControl = 128;
constexpr DWORD kLastUserDefinedControl = 255;
// Systems before this version have no descriptions of services, and let only a service with a
// process of its own have another account than LocalSystem.
constexpr DWORD kFirstNewVersion = 5;
// Systems before this version log the controls that are sent, too.
constexpr DWORD kFirstVersionWithoutControls = 6;

// What the service manager logs, by the published numbers with severity and facility.
constexpr TextView kLogSource = u"Service Control Manager";
constexpr DWORD kEventStartFailed = 0xC0001B58;        // 7000
constexpr DWORD kEventDependencyFailed = 0xC0001B59;   // 7001
constexpr DWORD kEventDependencyMissing = 0xC0001B5B;  // 7003
constexpr DWORD kEventControlSent = 0x40001B7B;        // 7035
constexpr DWORD kEventStateEntered = 0x40001B7C;       // 7036
constexpr DWORD kErrorSeverity = 3;
constexpr WORD kErrorEvent = 1;

bool IsServiceName(TextView name) {
  return !name.empty() && name.size() <= kLongestName &&
         name.find_first_of(u"/\\") == TextView::npos;
}

TextView OrDash(LPCWSTR text) { return text == nullptr ? TextView(u"-") : TextView(text); }

// The names of a list, each with its NUL, that ends in an empty one.
std::vector<Text> NamesOf(LPCWSTR list) {
  std::vector<Text> names;
  while (list != nullptr && *list != u'\0') {
    names.emplace_back(list);
    list += names.back().size() + 1;
  }
  return names;
}

// What the journal notes of a list, and of a password.
Text NotedList(LPCWSTR list) {
  if (list == nullptr) return u"-";
  Text joined;
  for (const Text& name : NamesOf(list)) joined += (joined.empty() ? u"" : u"|") + name;
  return joined;
}

TextView NotedPassword(LPCWSTR password) {
  if (password == nullptr) return u"-";
  return *password == u'\0' ? u"" : u"password";
}

std::size_t BytesOf(TextView text) { return (text.size() + 1) * sizeof(WCHAR); }

// Puts texts behind each other, with their NULs.
class Texts {
 public:
  explicit Texts(void* place) : place_(static_cast<LPWSTR>(place)) {}

  LPWSTR Put(TextView text) {
    const LPWSTR start = place_;
    place_ += text.copy(place_, text.size());
    *place_++ = u'\0';
    return start;
  }

 private:
  LPWSTR place_;
};

bool IsIn(DWORD state, DWORD asked) {
  return (asked & (state == kServiceStopped ? kServiceInactive : kServiceActive)) != 0;
}

// What a state is called in a log; one on the way to another is called as its control is.
Text NameOf(DWORD state) {
  static constexpr std::array<TextView, 8> kNames = {u"",        u"stopped",  u"start", u"stop",
                                                     u"running", u"continue", u"pause", u"paused"};
  return Text(kNames[state]);
}

// A code as the text of an event, which a reader replaces by the code's message.
Text MessageOf(DWORD code) { return u"%%" + ToText(code); }

// The rights that a control needs; 0 for none that can be sent.
DWORD RightsFor(DWORD control) {
  if (control >= kFirstUserDefinedControl && control <= kLastUserDefinedControl) {
    return kServiceUserDefinedControl;
  }
  switch (control) {
    case kServiceControlStop:
      return kServiceStop;
    case kServiceControlInterrogate:
      return kServiceInterrogate;
    case kServiceControlShutdown:
      return 0;
    default:
      return control >= kServiceControlPause && control <= kServiceControlNetBindDisable
                 ? kServicePauseContinue
                 : 0;
  }
}

// The bits of which a service must accept one to take a control.
DWORD AcceptedBy(DWORD control) {
  switch (control) {
    case kServiceControlStop:
      return kServiceAcceptStop;
    case kServiceControlPause:
    case kServiceControlContinue:
      return kServiceAcceptPauseContinue;
    case kServiceControlParamChange:
      return kServiceAcceptParamChange;
    default:
      return kServiceAcceptNetBindChange;
  }
}

bool IsServiceType(DWORD type) {
  const DWORD plain = type & ~kServiceInteractiveProcess;
  const bool is_one = plain != 0 && (plain & (plain - 1)) == 0 && plain <= kServiceShareProcess;
  return is_one && (plain == type || (plain & kServiceWin32) != 0);
}

}  // namespace

struct SimulatedServiceControl::Wanted {
  DWORD type;
  DWORD start_type;
  DWORD error_control;
  // Null for what stays as it is.
  LPCWSTR binary_path;
  LPCWSTR load_order_group;
  LPCWSTR dependencies;
  LPCWSTR account;
  LPCWSTR password;
  LPCWSTR display_name;

  bool has_account() const { return account != nullptr && *account != u'\0'; }

  void ApplyTo(Service& service) const {
    service.type = type;
    service.start_type = start_type;
    service.error_control = error_control;
    if (binary_path != nullptr) service.binary_path = binary_path;
    if (load_order_group != nullptr) service.load_order_group = load_order_group;
    if (dependencies != nullptr) service.dependencies = NamesOf(dependencies);
    if (has_account()) service.account = account;
    if (password != nullptr) service.password.emplace(password);
    if (display_name != nullptr) service.display_name = display_name;
  }
};

SC_HANDLE SimulatedServiceControl::OpenSCManagerW(LPCWSTR machine_name, LPCWSTR database_name,
                                                  DWORD desired_access) {
  constexpr std::string_view kName = "OpenSCManagerW";
  const Text noted = Noted(machine_name, OrDash(database_name), desired_access);
  const Call call = session_.Begin(kName, noted);
  if (const DWORD fault = call.fault()) return Fail(fault, SC_HANDLE{0});
  if (database_name != nullptr && !EqualNoCase(database_name, u"ServicesActive")) {
    const bool is_other = EqualNoCase(database_name, u"ServicesFailed");
    return Fail(is_other ? kErrorDatabaseDoesNotExist : kErrorInvalidName, SC_HANDLE{0});
  }
  Computer* const computer = session_.estate.ReachServer(machine_name);
  if (computer == nullptr) return Fail(kErrorRpcServerUnavailable, SC_HANDLE{0});
  DWORD granted = 0;
  const DWORD desired = desired_access | kManagerConnect;
  if (const DWORD error = CheckManager(*computer, desired, granted)) {
    return Fail(error, SC_HANDLE{0});
  }
  return Hand({computer, nullptr, granted}, kName, noted);
}

SC_HANDLE SimulatedServiceControl::OpenServiceW(SC_HANDLE manager, LPCWSTR service_name,
                                                DWORD desired_access) {
  constexpr std::string_view kName = "OpenServiceW";
  const Text noted = Noted(service_name, desired_access);
  const Call call = session_.Begin(kName, noted);
  if (const DWORD fault = call.fault()) return Fail(fault, SC_HANDLE{0});
  Open* const open = FindManager(manager, kManagerConnect, kName);
  if (open == nullptr) return SC_HANDLE{0};
  const TextView name = ViewOf(service_name);
  if (!IsServiceName(name)) return Fail(kErrorInvalidName, SC_HANDLE{0});
  RemoveMarked(*open->computer);
  Service* const service = open->computer->FindService(name);
  if (service == nullptr) return Fail(kErrorServiceDoesNotExist, SC_HANDLE{0});
  DWORD granted = 0;
  if (const DWORD error = CheckService(*open->computer, *service, desired_access, granted)) {
    return Fail(error, SC_HANDLE{0});
  }
  return Hand({open->computer, service, granted}, kName, noted);
}

BOOL SimulatedServiceControl::CloseServiceHandle(SC_HANDLE object) {
  const Call call = session_.Begin("CloseServiceHandle");
  const auto value = static_cast<std::uintptr_t>(object);
  if (!session_.ledger.Closed(Resource::ServiceHandle, value, "CloseServiceHandle")) {
    return Fail(kErrorInvalidHandle);
  }
  Computer& computer = *open_.at(value).computer;
  open_.erase(value);
  RemoveMarked(computer);
  return call.fault() != 0 ? Fail(call.fault()) : 1;
}

BOOL SimulatedServiceControl::QueryServiceStatus(SC_HANDLE service, SERVICE_STATUS* status) {
  constexpr std::string_view kName = "QueryServiceStatus";
  const Call call = session_.Begin(kName);
  if (const DWORD fault = call.fault()) return Fail(fault);
  const Open* const open = FindService(service, kServiceQueryStatus, kName);
  if (open == nullptr) return 0;
  *status = open->service->StatusAt(now());
  return 1;
}

BOOL SimulatedServiceControl::QueryServiceConfigW(SC_HANDLE service, QUERY_SERVICE_CONFIGW* config,
                                                  DWORD size, DWORD* needed) {
  constexpr std::string_view kName = "QueryServiceConfigW";
  const Call call = session_.Begin(kName);
  if (const DWORD fault = call.fault()) return Fail(fault);
  const Open* const open = FindService(service, kServiceQueryConfig, kName);
  if (open == nullptr) return 0;
  const Service& found = *open->service;
  Text dependencies;
  for (const Text& name : found.dependencies) dependencies += name + u'\0';
  *needed = static_cast<DWORD>(sizeof *config + BytesOf(found.binary_path) +
                               BytesOf(found.load_order_group) + BytesOf(dependencies) +
                               BytesOf(found.account) + BytesOf(found.display_name));
  if (size < *needed) return Fail(kErrorInsufficientBuffer);
  Texts texts(config + 1);
  QUERY_SERVICE_CONFIGW record{};
  record.dwServiceType = found.type;
  record.dwStartType = found.start_type;
  record.dwErrorControl = found.error_control;
  record.lpBinaryPathName = texts.Put(found.binary_path);
  record.lpLoadOrderGroup = texts.Put(found.load_order_group);
  record.dwTagId = found.tag;
  record.lpDependencies = texts.Put(dependencies);
  record.lpServiceStartName = texts.Put(found.account);
  record.lpDisplayName = texts.Put(found.display_name);
  std::memcpy(config, &record, sizeof record);
  return 1;
}

BOOL SimulatedServiceControl::QueryServiceConfig2W(SC_HANDLE service, DWORD level, BYTE* buffer,
                                                   DWORD size, DWORD* needed) {
  constexpr std::string_view kName = "QueryServiceConfig2W";
  const Call call = session_.Begin(kName, ToText(level));
  if (const DWORD fault = call.fault()) return Fail(fault);
  if (session_.estate.local().description().version_major < kFirstNewVersion) {
    return Fail(kErrorProcNotFound);
  }
  const Open* const open = FindService(service, kServiceQueryConfig, kName);
  if (open == nullptr) return 0;
  if (level != kServiceConfigDescription) return Fail(kErrorInvalidLevel);
  const Text& description = open->service->description;
  SERVICE_DESCRIPTIONW record{};
  *needed = static_cast<DWORD>(sizeof record + (description.empty() ? 0 : BytesOf(description)));
  if (size < *needed) return Fail(kErrorInsufficientBuffer);
  if (!description.empty()) record.lpDescription = Texts(buffer + sizeof record).Put(description);
  std::memcpy(buffer, &record, sizeof record);
  return 1;
}

BOOL SimulatedServiceControl::StartServiceW(SC_HANDLE service, DWORD, LPCWSTR*) {
  constexpr std::string_view kName = "StartServiceW";
  const Call call = session_.Begin(kName);
  if (const DWORD fault = call.fault()) return Fail(fault);
  const Open* const open = FindService(service, kServiceStart, kName);
  if (open == nullptr) return 0;
  if (open->computer->service_manager().is_locked) return Fail(kErrorServiceDatabaseLocked);
  if (open->service->StateAt(now()) != kServiceStopped) return Fail(kErrorServiceAlreadyRunning);
  std::vector<const Service*> starting;
  const DWORD error = Start(*open->computer, *open->service, starting);
  return error == 0 ? 1 : Fail(error);
}

BOOL SimulatedServiceControl::ControlService(SC_HANDLE service, DWORD control,
                                             SERVICE_STATUS* status) {
  constexpr std::string_view kName = "ControlService";
  const Call call = session_.Begin(kName, ToText(control));
  if (const DWORD fault = call.fault()) return Fail(fault);
  const DWORD rights = RightsFor(control);
  const Open* const open = FindService(service, rights, kName);
  if (open == nullptr) return 0;
  if (rights == 0) return Fail(kErrorInvalidParameter);
  Service& found = *open->service;
  const DWORD state = found.StateAt(now());
  *status = found.StatusAt(now());
  if (state == kServiceStopped) return Fail(kErrorServiceNotActive);
  if (control == kServiceControlInterrogate && state != kServiceStopPending) return 1;
  if (state == kServiceStartPending || state == kServiceStopPending) {
    return Fail(kErrorServiceCannotAcceptCtrl);
  }
  if (control < kFirstUserDefinedControl && (found.accepts & AcceptedBy(control)) == 0) {
    return Fail(kErrorInvalidServiceControl);
  }
  const auto move = [&](DWORD pending, DWORD to, DWORD milliseconds) {
    Move(*open->computer, found, pending, to, milliseconds);
  };
  switch (control) {
    case kServiceControlStop:
      if (HasActiveDependents(*open->computer, found)) return Fail(kErrorDependentServicesRunning);
      found.exit_code = found.specific_exit_code = 0;
      move(kServiceStopPending, kServiceStopped, found.stop_time);
      break;
    case kServiceControlPause:
      if (state == kServiceRunning) {
        move(kServicePausePending, kServicePaused, found.pause_time);
      }
      break;
    case kServiceControlContinue:
      if (state == kServicePaused) {
        move(kServiceContinuePending, kServiceRunning, found.continue_time);
      }
      break;
    default:
      break;
  }
  *status = found.StatusAt(now());
  return 1;
}

BOOL SimulatedServiceControl::ChangeServiceConfigW(SC_HANDLE service, DWORD service_type,
                                                   DWORD start_type, DWORD error_control,
                                                   LPCWSTR binary_path_name,
                                                   LPCWSTR load_order_group, DWORD* tag_id,
                                                   LPCWSTR dependencies, LPCWSTR service_start_name,
                                                   LPCWSTR password, LPCWSTR display_name) {
  constexpr std::string_view kName = "ChangeServiceConfigW";
  // kServiceNoChange reads as -1.
  const auto number = [](DWORD value) { return ToText(static_cast<std::int32_t>(value)); };
  const Call call = session_.Begin(
      kName, number(service_type) + u' ' + number(start_type) + u' ' + number(error_control) +
                 u' ' +
                 Noted(binary_path_name, OrDash(load_order_group), NotedList(dependencies),
                       OrDash(service_start_name), NotedPassword(password), OrDash(display_name)));
  if (const DWORD fault = call.fault()) return Fail(fault);
  const Open* const open = FindService(service, kServiceChangeConfig, kName);
  if (open == nullptr) return 0;
  Service& found = *open->service;
  if (found.is_marked_for_deletion) return Fail(kErrorServiceMarkedForDelete);
  const auto or_as_it_is = [](DWORD wanted, DWORD is) {
    return wanted == kServiceNoChange ? is : wanted;
  };
  const Wanted wanted{or_as_it_is(service_type, found.type),
                      or_as_it_is(start_type, found.start_type),
                      or_as_it_is(error_control, found.error_control),
                      binary_path_name,
                      load_order_group,
                      dependencies,
                      service_start_name,
                      password,
                      display_name};
  if (const DWORD error = WhyNot(*open->computer, found, wanted)) return Fail(error);
  wanted.ApplyTo(found);
  if (tag_id != nullptr) *tag_id = found.tag;
  return 1;
}

SC_HANDLE SimulatedServiceControl::CreateServiceW(SC_HANDLE manager, LPCWSTR service_name,
                                                  LPCWSTR display_name, DWORD desired_access,
                                                  DWORD service_type, DWORD start_type,
                                                  DWORD error_control, LPCWSTR binary_path_name,
                                                  LPCWSTR load_order_group, DWORD* tag_id,
                                                  LPCWSTR dependencies, LPCWSTR service_start_name,
                                                  LPCWSTR password) {
  constexpr std::string_view kName = "CreateServiceW";
  const Call call = session_.Begin(
      kName, Noted(service_name, OrDash(display_name), desired_access, service_type, start_type,
                   error_control, OrDash(binary_path_name), OrDash(load_order_group),
                   NotedList(dependencies), OrDash(service_start_name), NotedPassword(password)));
  if (const DWORD fault = call.fault()) return Fail(fault, SC_HANDLE{0});
  const Open* const open = FindManager(manager, kManagerCreateService, kName);
  if (open == nullptr) return SC_HANDLE{0};
  Computer& computer = *open->computer;
  const TextView name = ViewOf(service_name);
  if (!IsServiceName(name)) return Fail(kErrorInvalidName, SC_HANDLE{0});
  RemoveMarked(computer);
  if (const Service* const known = computer.FindService(name)) {
    return Fail(known->is_marked_for_deletion ? kErrorServiceMarkedForDelete : kErrorServiceExists,
                SC_HANDLE{0});
  }
  if (ViewOf(binary_path_name).empty()) return Fail(kErrorInvalidParameter, SC_HANDLE{0});
  Service& made = computer.AddService(name);
  const Wanted wanted{service_type,       start_type,       error_control,
                      binary_path_name,   load_order_group, dependencies,
                      service_start_name, password,         display_name};
  DWORD error = WhyNot(computer, made, wanted);
  DWORD granted = 0;
  if (error == 0) error = CheckService(computer, made, desired_access, granted);
  if (error != 0) {
    computer.services().erase(ToUpper(name));
    return Fail(error, SC_HANDLE{0});
  }
  wanted.ApplyTo(made);
  if (tag_id != nullptr) *tag_id = made.tag;
  return Hand({&computer, &made, granted}, kName, name);
}

BOOL SimulatedServiceControl::DeleteService(SC_HANDLE service) {
  constexpr std::string_view kName = "DeleteService";
  const Call call = session_.Begin(kName);
  if (const DWORD fault = call.fault()) return Fail(fault);
  const Open* const open = FindService(service, kDelete, kName);
  if (open == nullptr) return 0;
  if (open->service->is_marked_for_deletion) return Fail(kErrorServiceMarkedForDelete);
  open->service->is_marked_for_deletion = true;
  return 1;
}

SC_LOCK SimulatedServiceControl::LockServiceDatabase(SC_HANDLE manager) {
  constexpr std::string_view kName = "LockServiceDatabase";
  const Call call = session_.Begin(kName);
  if (const DWORD fault = call.fault()) return Fail(fault, SC_LOCK{0});
  const Open* const open = FindManager(manager, kManagerLock, kName);
  if (open == nullptr) return SC_LOCK{0};
  ServiceManager& locked = open->computer->service_manager();
  if (locked.is_locked) return Fail(kErrorServiceDatabaseLocked, SC_LOCK{0});
  locked.is_locked = true;
  const std::uintptr_t value = session_.NewHandle();
  locks_[value] = open->computer;
  session_.ledger.Opened(Resource::ServiceLock, value, kName, ToUtf8(open->computer->name()));
  return SC_LOCK{value};
}

BOOL SimulatedServiceControl::UnlockServiceDatabase(SC_LOCK lock) {
  const Call call = session_.Begin("UnlockServiceDatabase");
  const auto value = static_cast<std::uintptr_t>(lock);
  if (!session_.ledger.Closed(Resource::ServiceLock, value, "UnlockServiceDatabase")) {
    return Fail(kErrorInvalidServiceLock);
  }
  locks_.at(value)->service_manager().is_locked = false;
  locks_.erase(value);
  return call.fault() != 0 ? Fail(call.fault()) : 1;
}

std::size_t SimulatedServiceControl::Put(std::span<const Listed> listed,
                                         ENUM_SERVICE_STATUSW* services, DWORD size) {
  std::size_t count = 0;
  std::size_t bytes = 0;
  const std::size_t all = listed.empty() ? 0 : listed.front().size_from_here;
  for (; count < listed.size(); ++count) {
    const bool is_last = count + 1 == listed.size();
    bytes = all - (is_last ? 0 : listed[count + 1].size_from_here);
    if (bytes > size) break;
  }
  auto* const start = reinterpret_cast<BYTE*>(services);
  Texts texts(start + count * sizeof *services);
  for (std::size_t index = 0; index < count; ++index) {
    const ENUM_SERVICE_STATUSW record{texts.Put(listed[index].name),
                                      texts.Put(listed[index].display_name), listed[index].status};
    std::memcpy(start + index * sizeof record, &record, sizeof record);
  }
  return count;
}

BOOL SimulatedServiceControl::EnumServicesStatusW(SC_HANDLE manager, DWORD service_type,
                                                  DWORD service_state,
                                                  ENUM_SERVICE_STATUSW* services, DWORD size,
                                                  DWORD* needed, DWORD* returned,
                                                  DWORD* resume_handle) {
  constexpr std::string_view kName = "EnumServicesStatusW";
  const Call call = session_.Begin(
      kName, ToText(service_type) + u' ' + ToText(service_state) + u' ' + ToText(size) + u' ' +
                 ToText(resume_handle == nullptr ? DWORD{0} : *resume_handle));
  if (const DWORD fault = call.fault()) return Fail(fault);
  Open* const open = FindManager(manager, kManagerEnumerateService, kName);
  if (open == nullptr) return 0;
  const bool has_kinds = service_type != 0 && (service_type & ~kServiceTypeAll) == 0 &&
                         service_state != 0 && service_state <= kServiceStateAll;
  if (!has_kinds || needed == nullptr || returned == nullptr) return Fail(kErrorInvalidParameter);
  const std::size_t first = resume_handle == nullptr ? 0 : *resume_handle;
  if (first == 0) {
    RemoveMarked(*open->computer);
    std::vector<const Service*> asked;
    for (const auto& [key, service] : open->computer->services()) {
      DWORD granted = 0;
      if ((service.type & service_type) == 0) continue;
      if (CheckService(*open->computer, service, kServiceQueryStatus, granted) != 0) continue;
      asked.push_back(&service);
    }
    open->listed = List(std::move(asked), service_state);
  }
  const std::span<const Listed> rest =
      std::span<const Listed>(open->listed).subspan(std::min(first, open->listed.size()));
  const std::size_t count = Put(rest, services, size);
  *returned = static_cast<DWORD>(count);
  const bool is_all = count == rest.size();
  *needed = is_all ? 0 : static_cast<DWORD>(rest[count].size_from_here);
  if (resume_handle != nullptr) {
    *resume_handle = is_all || count == 0 ? 0 : static_cast<DWORD>(first + count);
  }
  return is_all ? 1 : Fail(kErrorMoreData);
}

BOOL SimulatedServiceControl::EnumDependentServicesW(SC_HANDLE service, DWORD service_state,
                                                     ENUM_SERVICE_STATUSW* services, DWORD size,
                                                     DWORD* needed, DWORD* returned) {
  constexpr std::string_view kName = "EnumDependentServicesW";
  const Call call = session_.Begin(kName, ToText(service_state) + u' ' + ToText(size));
  if (const DWORD fault = call.fault()) return Fail(fault);
  const Open* const open = FindService(service, kServiceEnumerateDependents, kName);
  if (open == nullptr) return 0;
  const bool has_states = service_state != 0 && service_state <= kServiceStateAll;
  if (!has_states || needed == nullptr || returned == nullptr) return Fail(kErrorInvalidParameter);
  std::vector<const Service*> dependents;
  CollectDependents(*open->computer, *open->service, dependents);
  const std::vector<Listed> listed = List(std::move(dependents), service_state);
  const std::size_t count = Put(listed, services, size);
  *returned = static_cast<DWORD>(count);
  *needed = count == listed.size() ? 0 : static_cast<DWORD>(listed[count].size_from_here);
  return count == listed.size() ? 1 : Fail(kErrorMoreData);
}

SimulatedServiceControl::Open* SimulatedServiceControl::FindManager(SC_HANDLE manager, DWORD access,
                                                                    std::string_view operation) {
  return Find(manager, true, access, operation);
}

SimulatedServiceControl::Open* SimulatedServiceControl::FindService(SC_HANDLE service, DWORD access,
                                                                    std::string_view operation) {
  return Find(service, false, access, operation);
}

SimulatedServiceControl::Open* SimulatedServiceControl::Find(SC_HANDLE handle, bool is_manager,
                                                             DWORD access,
                                                             std::string_view operation) {
  const auto value = static_cast<std::uintptr_t>(handle);
  const auto found = open_.find(value);
  if (found == open_.end() || (found->second.service == nullptr) != is_manager) {
    if (found == open_.end()) session_.ledger.Misused(Resource::ServiceHandle, value, operation);
    return Fail<Open*>(kErrorInvalidHandle, nullptr);
  }
  if ((access & ~found->second.access) != 0) return Fail<Open*>(kErrorAccessDenied, nullptr);
  return &found->second;
}

SC_HANDLE SimulatedServiceControl::Hand(Open open, std::string_view operation, TextView detail) {
  const std::uintptr_t value = session_.NewHandle();
  open_.insert({value, std::move(open)});
  session_.ledger.Opened(Resource::ServiceHandle, value, operation, ToUtf8(detail));
  return SC_HANDLE{value};
}

DWORD SimulatedServiceControl::CheckManager(Computer& computer, DWORD desired, DWORD& granted) {
  SecurityRef& security = computer.service_manager().security;
  if (security == nullptr) {
    security = SecurityBlock::Make(DescriptorOf(
        u"O:SYG:SYD:(A;;CC;;;AU)(A;;CCLCRPRC;;;IU)(A;;CCLCRPRC;;;SU)(A;;CCLCRPWPRC;;;SY)"
        u"(A;;KA;;;BA)"));
  }
  const AccessCheckOutcome outcome =
      CheckAccess(security->descriptor(), session_.estate.token(),
                  MapGeneric(desired, kManagerMapping), kManagerMapping);
  granted = outcome.granted;
  if (outcome.error != 0 || computer.may_be_administered()) return outcome.error;
  return (granted & ~kManagerOpenToAll) == 0 ? 0 : kErrorAccessDenied;
}

DWORD SimulatedServiceControl::CheckService(const Computer& computer, const Service& service,
                                            DWORD desired, DWORD& granted) {
  const AccessCheckOutcome outcome =
      CheckAccess(service.security->descriptor(), session_.estate.token(),
                  MapGeneric(desired, kServiceMapping), kServiceMapping);
  granted = outcome.granted;
  if (outcome.error != 0 || computer.may_be_administered()) return outcome.error;
  return (granted & ~kServiceOpenToAll) == 0 ? 0 : kErrorAccessDenied;
}

void SimulatedServiceControl::RemoveMarked(Computer& computer) {
  std::erase_if(computer.services(), [&](const auto& entry) {
    const Service& service = entry.second;
    return service.is_marked_for_deletion && service.StateAt(now()) == kServiceStopped &&
           std::ranges::none_of(open_,
                                [&](const auto& open) { return open.second.service == &service; });
  });
}

DWORD SimulatedServiceControl::WhyNot(Computer& computer, const Service& service,
                                      const Wanted& wanted) {
  const TextView account = wanted.has_account() ? TextView(wanted.account) : service.account;
  const bool is_systems = EqualNoCase(account, kLocalSystem);
  const bool is_interactive = (wanted.type & kServiceInteractiveProcess) != 0;
  const bool is_refused_of_old = computer.description().version_major < kFirstNewVersion &&
                                 wanted.has_account() && !is_systems &&
                                 (wanted.type & kServiceShareProcess) != 0;
  if (!IsServiceType(wanted.type) || wanted.start_type > kServiceDisabled ||
      wanted.error_control > kServiceErrorCritical || (is_interactive && !is_systems) ||
      is_refused_of_old) {
    return kErrorInvalidParameter;
  }
  if (wanted.has_account() && !is_systems) {
    Text full(account);
    if (full.starts_with(u"\\\\")) full.erase(0, 2);
    if (full.starts_with(u".\\")) full.replace(0, 1, computer.name());
    const auto known = full.find(u'\\') == Text::npos
                           ? std::nullopt
                           : FindAccount(session_.estate, computer, full);
    if (!known) return kErrorInvalidServiceAccount;
  }
  if (wanted.display_name != nullptr) {
    for (const auto& [key, other] : computer.services()) {
      if (&other == &service) continue;
      if (EqualNoCase(other.display_name, wanted.display_name) ||
          EqualNoCase(other.name, wanted.display_name)) {
        return kErrorDuplicateServiceName;
      }
    }
  }
  std::vector<Text> names = NamesOf(wanted.dependencies);
  for (std::size_t index = 0; index < names.size(); ++index) {
    if (EqualNoCase(names[index], service.name)) return kErrorCircularDependency;
    const Service* const needed = computer.FindService(names[index]);
    if (needed == nullptr) continue;
    for (const Text& name : needed->dependencies) {
      if (std::ranges::find(names, name) == names.end()) names.push_back(name);
    }
  }
  return 0;
}

bool SimulatedServiceControl::MayLogOn(Computer& computer, const Service& service) {
  const std::size_t start = service.account.starts_with(u"\\\\") ? 2 : 0;
  const std::size_t end = service.account.find(u'\\', start);
  if (end == Text::npos) return true;
  const TextView domain = TextView(service.account).substr(start, end - start);
  AccountDatabase* accounts = nullptr;
  if (domain == u"." || EqualNoCase(domain, computer.name())) accounts = &computer.own_accounts();
  if (Domain* const found = session_.estate.FindDomain(domain)) accounts = found->accounts.get();
  const UserAccount* const user =
      accounts == nullptr ? nullptr : accounts->FindUser(service.account.substr(end + 1));
  if (user == nullptr) return true;
  const bool has_password =
      !user->password || (service.password &&
                          TextView(user->password->c_str()) == TextView(service.password->c_str()));
  return has_password && (user->flags & (kAccountDisabled | kAccountLockout)) == 0;
}

DWORD SimulatedServiceControl::Start(Computer& computer, Service& service,
                                     std::vector<const Service*>& starting) {
  if (service.is_marked_for_deletion) return kErrorServiceMarkedForDelete;
  if (service.start_type == kServiceDisabled) return kErrorServiceDisabled;
  if (std::ranges::find(starting, &service) != starting.end()) return kErrorCircularDependency;
  starting.push_back(&service);
  Ticks begin = 0;
  for (const Text& name : service.dependencies) {
    if (name.starts_with(u'+')) continue;
    Service* const needed = computer.FindService(name);
    if (needed == nullptr) {
      Report(computer, now(), kEventDependencyMissing, {service.display_name, name});
      return kErrorServiceDependencyDeleted;
    }
    if (needed->is_marked_for_deletion) return kErrorServiceDependencyDeleted;
    if (needed->StateAt(now()) == kServiceStopped) {
      const DWORD error = Start(computer, *needed, starting);
      if (error == kErrorCircularDependency) return error;
      if (error != 0) {
        Report(computer, now(), kEventDependencyFailed,
               {service.display_name, needed->display_name, MessageOf(error)});
        return kErrorServiceDependencyFail;
      }
    }
    begin = std::max(begin, needed->settles());
  }
  DWORD error = service.start_error;
  if (error == 0 && !MayLogOn(computer, service)) error = kErrorServiceLogonFailed;
  if (error != 0) {
    Report(computer, now(), kEventStartFailed, {service.display_name, MessageOf(error)});
    return error;
  }
  service.exit_code = service.specific_exit_code = 0;
  Move(computer, service, kServiceStartPending, kServiceRunning, service.start_time, begin);
  return 0;
}

void SimulatedServiceControl::Move(Computer& computer, Service& service, DWORD pending, DWORD state,
                                   DWORD milliseconds, Ticks start) {
  const Ticks moment = now();
  // What it was on its way to it never enters.
  const auto log = computer.FindEventLog(kSystemEventLog);
  if (log != nullptr && moment < service.settles()) log->Cancel(service.scheduled);
  service.Move(pending, state, milliseconds, moment, std::max(start, moment));
  if (computer.description().version_major < kFirstVersionWithoutControls) {
    Report(computer, moment, kEventControlSent, {service.display_name, NameOf(pending)});
  }
  service.scheduled = Report(computer, service.settles(), kEventStateEntered,
                             {service.display_name, NameOf(state)});
}

RecordedLog::Scheduled SimulatedServiceControl::Report(Computer& computer, Ticks when, DWORD id,
                                                       std::vector<Text> strings) {
  const auto log = computer.FindEventLog(kSystemEventLog);
  if (log == nullptr) return {};
  Event event{.source = Text(kLogSource), .id = id};
  if (id >> 30 == kErrorSeverity) event.type = kErrorEvent;
  event.generated = event.written = UnixTimeOf(when);
  event.computer = computer.name();
  if (id == kEventControlSent) event.user = session_.estate.token().user();
  event.strings = std::move(strings);
  return log->Schedule(when, std::move(event));
}

bool SimulatedServiceControl::HasActiveDependents(Computer& computer, const Service& service) {
  std::vector<const Service*> dependents;
  CollectDependents(computer, service, dependents);
  return std::ranges::any_of(dependents, [&](const Service* dependent) {
    return dependent->StateAt(now()) != kServiceStopped;
  });
}

void SimulatedServiceControl::CollectDependents(Computer& computer, const Service& service,
                                                std::vector<const Service*>& dependents) {
  for (const auto& [key, other] : computer.services()) {
    const bool depends = std::ranges::any_of(
        other.dependencies, [&](const Text& name) { return EqualNoCase(name, service.name); });
    if (!depends || &other == &service) continue;
    if (std::ranges::find(dependents, &other) != dependents.end()) continue;
    // Noted before its own dependents, so that a circle ends; they go before it in the result.
    const auto place = static_cast<std::ptrdiff_t>(dependents.size());
    dependents.push_back(&other);
    CollectDependents(computer, other, dependents);
    std::rotate(dependents.begin() + place, dependents.begin() + place + 1, dependents.end());
  }
}

std::vector<SimulatedServiceControl::Listed> SimulatedServiceControl::List(
    std::vector<const Service*> services, DWORD state) const {
  std::vector<Listed> listed;
  for (const Service* const service : services) {
    const SERVICE_STATUS status = service->StatusAt(now());
    if (!IsIn(status.dwCurrentState, state)) continue;
    listed.push_back({service->name, service->display_name, status, 0});
  }
  std::size_t size = 0;
  for (auto item = listed.rbegin(); item != listed.rend(); ++item) {
    size += sizeof(ENUM_SERVICE_STATUSW) + BytesOf(item->name) + BytesOf(item->display_name);
    item->size_from_here = size;
  }
  return listed;
}

}  // namespace veldmark::simulated
