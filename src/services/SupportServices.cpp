#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "automation/CivilTime.h"
#include "collections/Deliver.h"
#include "network/CServer.h"
#include "network/ServerNames.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"
#include "services/CService.h"
#include "services/CServices.h"
#include "services/RecordBuffer.h"

namespace veldmark {
namespace {

constexpr TextView kActiveDatabase = u"ServicesActive";
constexpr TextView kLocalSystem = u"LocalSystem";
// The walk over the database goes in slices of this many bytes.
constexpr DWORD kSlice = 256;
constexpr std::size_t kTableRecords = 257;
// How long a service may take to get into a state.
constexpr std::int64_t kLongestWaitSeconds = 60;
constexpr DWORD kLongestSleep = 1000;

constexpr DWORD kQueryAccess = kServiceQueryConfig | kServiceQueryStatus;
constexpr DWORD kStartAccess = kServiceQueryStatus | kServiceStart | kServiceInterrogate;
constexpr DWORD kDependentsAccess = kServiceChangeConfig | kServiceEnumerateDependents;

constexpr std::int32_t kNtPlatform = 500;
constexpr std::int32_t kLastOldVersion = 4;

ServiceControl& Services() { return Apartment::Current().platform.services; }

[[noreturn]] void RaiseLastError() { RaisePlatformError(Err().LastDllError()); }

/// Passes a result of the service manager on; raises the last error for none.
template <class Result>
Result Checked(Result result) {
  if (result == Result{}) RaiseLastError();
  return result;
}

ServiceHandle OpenManager(const CService& service, DWORD access) {
  const Text server = Text(kServerNameStart) + PlainServerName(service.ServerName);
  return ServiceHandle(Services(),
                       Checked(Services().OpenSCManagerW(server.c_str(), nullptr, access)));
}

/// A service and the manager that it was opened by.
struct OpenedService {
  OpenedService(const CService& service, DWORD manager_access, DWORD access)
      : manager(OpenManager(service, manager_access)),
        handle(Services(), Checked(Services().OpenServiceW(manager.Get(),
                                                           service.ServiceName.c_str(), access))) {}

  ServiceHandle manager;
  ServiceHandle handle;
};

/// The lock of a service database, if the platform gives one; given back at the latest when it
/// goes.
class DatabaseLock {
 public:
  explicit DatabaseLock(const ServiceHandle& manager)
      : lock_(Services(), Services().LockServiceDatabase(manager.Get())) {
    if (!lock_ && Err().LastDllError() != 0) RaiseLastError();
  }
  void GiveBack() {
    if (lock_) Checked(Services().UnlockServiceDatabase(lock_.Release()));
  }

 private:
  ServiceDatabaseLock lock_;
};

Date LocalNow() {
  SYSTEMTIME now{};
  Apartment::Current().platform.system.GetLocalTime(&now);
  return FromCivilTime({now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond})
      .value_or(Date());
}

/// Waits until a service is in a state. Raises 1053 when that takes longer than a minute, and the
/// platform's error.
void WaitForState(const ServiceHandle& service, DWORD state, SERVICE_STATUS& status) {
  const Ref<CStatus> progress(&StatusObject());
  const Date end = AddSeconds(LocalNow(), kLongestWaitSeconds);
  for (;;) {
    Checked(Services().QueryServiceStatus(service.Get(), &status));
    if (status.dwCurrentState != kServiceStopped && status.dwCurrentState != kServiceStopPending) {
      Checked(Services().ControlService(service.Get(), kServiceControlInterrogate, &status));
    }
    if (status.dwCurrentState == state) return;
    if (LocalNow() >= end) RaisePlatformError(kErrorServiceRequestTimeout);
    Apartment::Current().platform.system.Sleep(std::min(status.dwWaitHint, kLongestSleep));
    progress->RaiseStatus([&] {
      return u"Last Checkpoint = " + ToText(static_cast<std::int32_t>(status.dwCheckPoint));
    });
  }
}

DWORD AccessFor(ServiceControlsEnum control) {
  switch (control) {
    case SERVICE_CONTROL_STOP:
      return kServiceQueryStatus | kServiceStop | kServiceInterrogate;
    case SERVICE_CONTROL_PAUSE:
    case SERVICE_CONTROL_CONTINUE:
      return kServiceQueryStatus | kServicePauseContinue | kServiceInterrogate;
    case SERVICE_CONTROL_INTERROGATE:
      return kServiceInterrogate;
    default:
      return kServiceAllAccess;
  }
}

/// The state that a control leads to; 0 for none.
DWORD StateAfter(ServiceControlsEnum control) {
  switch (control) {
    case SERVICE_CONTROL_STOP:
      return kServiceStopped;
    case SERVICE_CONTROL_PAUSE:
      return kServicePaused;
    case SERVICE_CONTROL_CONTINUE:
      return kServiceRunning;
    default:
      return 0;
  }
}

/// Whether what a control left as the last error, though it was sent, lets the state be waited for.
bool IsHarmless(DWORD error) {
  constexpr std::array<DWORD, 5> kHarmless = {kErrorServiceNotActive, kErrorServiceCannotAcceptCtrl,
                                              kErrorInvalidServiceControl, kErrorIoPending,
                                              kErrorSuccess};
  return std::ranges::find(kHarmless, error) != kHarmless.end();
}

/// Asks `ask(buffer, size, needed)` for the size of an answer and then for the answer. Empty where
/// there is nothing to be had. `too_small` is the code that tells the size.
template <class Ask>
std::vector<std::uint8_t> Fetch(DWORD too_small, Ask&& ask) {
  std::vector<std::uint8_t> buffer(1);
  DWORD needed = 0;
  if (!ask(buffer.data(), 0, &needed) && LastPlatformError() != too_small) RaiseLastError();
  if (needed == 0) return {};
  buffer.resize(std::size_t{needed} + 1);
  Checked(ask(buffer.data(), needed, &needed));
  return buffer;
}

Text FetchDescription(const ServiceHandle& service) {
  const std::vector<std::uint8_t> buffer =
      Fetch(kErrorInsufficientBuffer, [&](BYTE* bytes, DWORD size, DWORD* needed) {
        return Services().QueryServiceConfig2W(service.Get(), kServiceConfigDescription, bytes,
                                               size, needed);
      });
  const RecordBuffer records(buffer);
  return records.TextOf(records.RecordAt<SERVICE_DESCRIPTIONW>(0).lpDescription);
}

/// A text for the platform; null where there is none to be given.
LPCWSTR OrNull(const Text& text, bool given) { return given ? text.c_str() : nullptr; }
LPCWSTR OrNull(const Text& text) { return OrNull(text, !text.empty()); }

/// A list of names as the platform takes it: the text as it stands, and two NULs behind it.
Text AsList(const Text& names) { return names + u'\0'; }

/// A field as the platform takes it in a change.
LPCWSTR OrNoChange(const Setting<Text>& field) { return OrNull(field.Get(), field.is_changed()); }
template <class Value>
DWORD OrNoChange(const Setting<Value>& field) {
  return field.is_changed() ? static_cast<DWORD>(field.Get()) : kServiceNoChange;
}

void ChangeType(const ServiceHandle& service, DWORD type) {
  Checked(Services().ChangeServiceConfigW(service.Get(), type, kServiceNoChange, kServiceNoChange,
                                          nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                          nullptr));
}

void ChangeAccount(const ServiceHandle& opened, CService& service) {
  const Secret* const password = service.Password();
  Checked(Services().ChangeServiceConfigW(opened.Get(), kServiceNoChange, kServiceNoChange,
                                          kServiceNoChange, nullptr, nullptr, nullptr, nullptr,
                                          service.Configuration().account.Get().c_str(),
                                          password ? password->c_str() : u"", nullptr));
  service.ForgetPassword();
}

/// Fills a service of a list from its record, as a caller would.
void Fill(CService& service, const ENUM_SERVICE_STATUSW& record, const RecordBuffer& records) {
  service.ServiceName = records.TextOf(record.lpServiceName);
  service.PutDisplayName(records.TextOf(record.lpDisplayName));
  service.PutServiceType(static_cast<ServiceTypesEnum>(record.ServiceStatus.dwServiceType));
  service.TakeStatus(record.ServiceStatus);
}

}  // namespace

Ref<CServices> CSupport::GetServices(CServer& server, ServiceTypesEnum types,
                                     ServiceStatesMaskEnum states, bool async) {
  return ReRaising([&] {
    const Ref<CStatus> status(&StatusObject());
    auto services = Make<CServices>();
    status->RaiseStatus([&] { return u"Retrieving Services for Server " + server.ServerName; });
    const ServiceHandle manager(
        Services(),
        Checked(Services().OpenSCManagerW((Text(kServerNameStart) + server.ServerName).c_str(),
                                          kActiveDatabase.data(), kManagerEnumerateService)));
    std::vector<std::uint8_t> table(kTableRecords * sizeof(ENUM_SERVICE_STATUSW));
    const RecordBuffer records(table);
    DWORD resume = 0;
    for (bool goes_on = true; goes_on;) {
      const DWORD before = resume;
      DWORD needed = 0;
      DWORD returned = 0;
      goes_on = Services().EnumServicesStatusW(
                    manager.Get(), static_cast<DWORD>(types), static_cast<DWORD>(states),
                    reinterpret_cast<ENUM_SERVICE_STATUSW*>(table.data()), kSlice, &needed,
                    &returned, &resume) != 0 ||
                LastPlatformError() == kErrorMoreData;
      for (DWORD index = 0; goes_on && index < returned; ++index) {
        const auto service = Make<CService>();
        service->ServerName = server.ServerName;
        service->DomainName = server.DomainName;
        Fill(*service, records.RecordAt<ENUM_SERVICE_STATUSW>(index), records);
        if (!Deliver(*this, services, service, async)) return services;
        status->RaiseStatus([&] { return u"Retrieved Service " + service->ServiceName; });
      }
      // A service that fits into no slice is the last one, also where the platform stays at it.
      if (resume == 0 || (returned == 0 && resume == before)) goes_on = false;
    }
    return services;
  });
}

void CSupport::LoadServiceConfig(CService& service) {
  ReRaising([&] {
    const OpenedService opened(service, kManagerEnumerateService, kQueryAccess);
    const std::vector<std::uint8_t> buffer =
        Fetch(kErrorInsufficientBuffer, [&](BYTE* bytes, DWORD size, DWORD* needed) {
          return Services().QueryServiceConfigW(
              opened.handle.Get(), reinterpret_cast<QUERY_SERVICE_CONFIGW*>(bytes), size, needed);
        });
    const RecordBuffer records(buffer);
    const auto record = records.RecordAt<QUERY_SERVICE_CONFIGW>(0);
    ServiceConfiguration& fields = service.Configuration();
    fields.error_control.Load(static_cast<ServiceErrorControlEnum>(record.dwErrorControl));
    fields.type.Load(static_cast<ServiceTypesEnum>(record.dwServiceType));
    fields.start_type.Load(static_cast<ServiceStartTypeEnum>(record.dwStartType));
    fields.tag = static_cast<std::int32_t>(record.dwTagId);
    fields.binary_path.Load(records.TextOf(record.lpBinaryPathName));
    fields.display_name.Load(records.TextOf(record.lpDisplayName));
    fields.load_order_group.Load(records.TextOf(record.lpLoadOrderGroup));
    Text account = records.TextOf(record.lpServiceStartName);
    if (account.starts_with(u'.')) {
      account = Text(kServerNameStart) + PlainServerName(service.ServerName) + u"\\" +
                account.substr(std::min<std::size_t>(account.size(), 2));
    }
    fields.account.Load(std::move(account));
    fields.dependencies.Load(records.NamesOf(record.lpDependencies));
    SERVICE_STATUS status{};
    Checked(Services().QueryServiceStatus(opened.handle.Get(), &status));
    service.TakeStatus(status);
    const bool is_described =
        Swallow([&] { fields.description.Load(FetchDescription(opened.handle)); });
    if (!is_described) {
      // Older platforms have no descriptions, and that is no error.
      if (Err().Number() != static_cast<std::int32_t>(kErrorProcNotFound)) {
        Raise(Err().Number(), Err().Source(), Err().Description());
      }
      fields.description.Load({});
      Err().Clear();
    }
    fields.ForgetChanges();
  });
}

void CSupport::StartService(CService& service) {
  ReRaising([&] {
    const Ref<CService> keep_alive(&service);
    const OpenedService opened(service, kManagerEnumerateService, kStartAccess);
    Checked(Services().StartServiceW(opened.handle.Get(), 0, nullptr));
    SERVICE_STATUS status{};
    WaitForState(opened.handle, kServiceRunning, status);
    service.TakeStatus(status);
  });
}

void CSupport::ControlService(CService& service, ServiceControlsEnum control) {
  ReRaising([&] {
    const Ref<CService> keep_alive(&service);
    {
      const OpenedService opened(service, kManagerEnumerateService, AccessFor(control));
      SERVICE_STATUS status{};
      Checked(Services().ControlService(opened.handle.Get(), static_cast<DWORD>(control), &status));
      if (IsHarmless(LastPlatformError())) {
        service.TakeStatus(status);
        if (const DWORD state = StateAfter(control)) {
          WaitForState(opened.handle, state, status);
          service.TakeStatus(status);
        }
      }
    }
    service.Refresh();
  });
}

void CSupport::SaveServiceInfo(CService& service) {
  ReRaising([&] {
    const Ref<CService> keep_alive(&service);
    const Ref<CServer> server = GetServer(service.ServerName, service.DomainName);
    const OpenedService opened(service, kManagerAllAccess, kServiceChangeConfig);
    ServiceConfiguration& fields = service.Configuration();
    Setting<Text>& account = fields.account;
    const bool is_systems = account.Get() == kLocalSystem;
    const DWORD type = OrNoChange(fields.type);
    const Text dependencies = AsList(fields.dependencies.Get());
    DatabaseLock lock(opened.manager);

    // Older systems change the account of a service with a process of its own only.
    const bool is_old =
        server->PlatformId() == kNtPlatform && server->VersionMajor() <= kLastOldVersion;
    if (is_old && account.is_changed() && !is_systems) {
      ChangeType(opened.handle, kServiceOwnProcess);
      ChangeAccount(opened.handle, service);
      account.ClearChanged();
      ChangeType(opened.handle, kServiceShareProcess);
    }
    // A service that interacts must be LocalSystem's before.
    const bool is_interactive =
        fields.type.is_changed() && (type & kServiceInteractiveProcess) != 0;
    if (is_systems && account.is_changed() && is_interactive) {
      ChangeAccount(opened.handle, service);
      account.ClearChanged();
    }
    if (fields.type.is_changed() || fields.start_type.is_changed() ||
        fields.error_control.is_changed() || fields.binary_path.is_changed() ||
        fields.load_order_group.is_changed() || fields.dependencies.is_changed() ||
        fields.display_name.is_changed()) {
      Checked(Services().ChangeServiceConfigW(
          opened.handle.Get(), type, OrNoChange(fields.start_type),
          OrNoChange(fields.error_control), OrNoChange(fields.binary_path),
          OrNoChange(fields.load_order_group), nullptr,
          OrNull(dependencies, fields.dependencies.is_changed()), nullptr, nullptr,
          OrNoChange(fields.display_name)));
    }
    if (service.Password() || account.is_changed()) ChangeAccount(opened.handle, service);
    lock.GiveBack();
  });
}

void CSupport::InstallService(CService& service) {
  ReRaising([&] {
    const ServiceConfiguration& fields = service.Configuration();
    if (fields.binary_path.Get().empty() || service.ServiceName.empty() || fields.type.Get() == 0 ||
        fields.start_type.Get() == SERVICE_BOOT_START) {
      RaisePlatformError(kErrorInvalidParameter);
    }
    const ServiceHandle manager = OpenManager(service, kManagerCreateService);
    const Text dependencies = AsList(fields.dependencies.Get());
    const Secret* const password = service.Password();
    const ServiceHandle made(
        Services(),
        Checked(Services().CreateServiceW(
            manager.Get(), service.ServiceName.c_str(), OrNull(fields.display_name.Get()),
            kServiceAllAccess, static_cast<DWORD>(fields.type.Get()),
            static_cast<DWORD>(fields.start_type.Get()),
            static_cast<DWORD>(fields.error_control.Get()), fields.binary_path.Get().c_str(),
            OrNull(fields.load_order_group.Get()), nullptr,
            OrNull(dependencies, !fields.dependencies.Get().empty()), fields.account.Get().c_str(),
            password ? password->c_str() : u"")));
  });
}

void CSupport::RemoveService(CService& service) {
  ReRaising([&] {
    const OpenedService opened(service, kManagerAllAccess, kDelete);
    DatabaseLock lock(opened.manager);
    Checked(Services().DeleteService(opened.handle.Get()));
    lock.GiveBack();
  });
}

Ref<CServices> CSupport::GetDependentServices(CService& service, ServiceStatesMaskEnum states) {
  return ReRaising([&] {
    auto services = Make<CServices>();
    const OpenedService opened(service, kManagerAllAccess, kDependentsAccess);
    DWORD returned = 0;
    const std::vector<std::uint8_t> buffer =
        Fetch(kErrorMoreData, [&](BYTE* bytes, DWORD size, DWORD* needed) {
          return Services().EnumDependentServicesW(opened.handle.Get(), static_cast<DWORD>(states),
                                                   reinterpret_cast<ENUM_SERVICE_STATUSW*>(bytes),
                                                   size, needed, &returned);
        });
    if (buffer.empty()) return services;
    const RecordBuffer records(buffer);
    for (DWORD index = 0; index < returned; ++index) {
      const auto dependent = Make<CService>();
      dependent->DomainName = service.DomainName;
      dependent->ServerName = service.ServerName;
      Fill(*dependent, records.RecordAt<ENUM_SERVICE_STATUSW>(index), records);
      services->Add(dependent.Get());
    }
    return services;
  });
}

}  // namespace veldmark
