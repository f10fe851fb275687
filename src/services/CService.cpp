#include "services/CService.h"

#include <algorithm>

#include "apartment/CSupport.h"
#include "apartment/Errors.h"
#include "automation/Declare.h"
#include "network/ServerNames.h"
#include "platform/operations/ServiceControl.h"
#include "security/CSecurityDescriptor.h"
#include "security/ObjectType.h"
#include "services/CServices.h"

namespace veldmark {
namespace {

constexpr TextView kClassName = u"CService";
constexpr std::int32_t kAllStates = SERVICE_STATE_ALL;

constexpr TextView kWaits =
    u"Waits for the new state, a minute at most; then it raises 1053, and the service may get "
    u"there all the same. Each pass posts a status text with the last checkpoint.";

}  // namespace

const Interface& CService::Describe() {
  static const Interface table =
      Declare<CService>(u"CService", u"A service of a computer.")
          .Method<&CService::GetSecurityDescriptor>(u"GetSecurityDescriptor",
                                                    u"Who may do what with the service.")
          .Property<&CService::DisplayName, &CService::PutDisplayName>(u"DisplayName",
                                                                       u"The name that people see.")
          .Stored<&CService::ServiceName>(u"ServiceName",
                                          u"The short name, by which the service manager knows it.")
          .Stored<&CService::ServerName>(u"ServerName", u"Its computer.")
          .Property<&CService::ServiceType, &CService::PutServiceType>(
              u"ServiceType", u"What kind of program it is.")
          .Stored<&CService::CurrentState>(u"CurrentState", u"What it is doing.")
          .Stored<&CService::ControlsAccepted>(u"ControlsAccepted", u"What it can be told.")
          .Stored<&CService::Win32ExitCode>(u"Win32ExitCode", u"What it left when it ended.")
          .Stored<&CService::ServiceSpecificExitCode>(u"ServiceSpecificExitCode",
                                                      u"Its own code, where the exit code is 1066.")
          .Stored<&CService::CheckPoint>(
              u"CheckPoint", u"A number that counts up while a change of state takes its time.")
          .Stored<&CService::WaitHint>(u"WaitHint", u"Milliseconds until the next checkpoint.")
          .Property<&CService::ErrorControl, &CService::PutErrorControl>(
              u"ErrorControl", u"How serious it is that it doesn't start; may fetch.")
          .Property<&CService::StartType, &CService::PutStartType>(
              u"StartType", u"When it is started; may fetch.")
          .Property<&CService::TagId, &CService::PutTagId>(
              u"TagId", u"Its number in the load order group; may fetch.")
          .Property<&CService::BinaryPathName, &CService::PutBinaryPathName>(
              u"BinaryPathName", u"Its program, with arguments; may fetch.")
          .Property<&CService::LoadOrderGroup, &CService::PutLoadOrderGroup>(
              u"LoadOrderGroup", u"The group that it is started with; may fetch.")
          .Property<&CService::ServiceStartName, &CService::PutServiceStartName>(
              u"ServiceStartName", u"The account that it runs as; may fetch.")
          .Get<&CService::OwnProcess>(u"OwnProcess", u"True for a program of its own.")
          .Get<&CService::ShareProcess>(u"ShareProcess",
                                        u"True for a part of a program with several services.")
          .Get<&CService::DeviceDriver>(u"DeviceDriver", u"True for a device driver.")
          .Get<&CService::FileSystemDriver>(u"FileSystemDriver", u"True for a file system driver.")
          .Get<&CService::InteractsWithDesktop>(u"InteractsWithDesktop",
                                                u"True if it may use the desktop; may fetch.")
          .Get<&CService::Stopped>(u"Stopped", u"True if it doesn't run.")
          .Get<&CService::StartPending>(u"StartPending", u"True while it starts.")
          .Get<&CService::StopPending>(u"StopPending", u"True while it stops.")
          .Get<&CService::Running>(u"Running", u"True if it runs.")
          .Get<&CService::ContinuePending>(u"ContinuePending", u"True while it leaves its pause.")
          .Get<&CService::PausePending>(u"PausePending", u"True while it goes into a pause.")
          .Get<&CService::Paused>(u"Paused", u"True if it pauses.")
          .Get<&CService::AcceptStop>(u"AcceptStop", u"True if it can be stopped.")
          .Get<&CService::AcceptPauseContinue>(u"AcceptPauseContinue",
                                               u"True if it can be paused and continued.")
          .Get<&CService::AcceptShutdown>(u"AcceptShutdown",
                                          u"True if it is told when the computer shuts down.")
          .Stored<&CService::DomainName>(u"DomainName", u"Its computer's domain.")
          .Put<&CService::PutPassword>(u"Password", u"The account's password, for the next write.")
          .Remark(
              u"Kept until the next fetch, also that by another property, or the account's "
              u"change: put it last.")
          .Property<&CService::Dependencies, &CService::PutDependencies>(
              u"Dependencies", u"The services that it depends on, joined by \"|\"; may fetch.")
          .Remark(
              u"Written as it stands: a \"|\" isn't taken apart on the way out. Names to be "
              u"written are joined by NULs.")
          .Property<&CService::Description, &CService::PutDescription>(
              u"Description", u"What it is for; may fetch.")
          .Remark(u"Nothing writes it to the service.")
          .Put<&CService::PutInteractsWithDesktop>(u"InteractsWithDesktop",
                                                   u"True to let it use the desktop.")
          .Method<&CService::Refresh>(u"Refresh", u"Fetches configuration and status anew.")
          .Remark(
              u"Drops changes that weren't saved, and the password. Never raises: what can't be "
              u"fetched stays as it was.")
          .Method<&CService::Start>(u"Start", u"Starts it and waits until it runs.")
          .Remark(kWaits)
          .Method<&CService::SetServiceControl>(
              u"SetServiceControl", u"Stops, pauses or continues it, or tells it something else.",
              {u"eControl"})
          .Remark(kWaits)
          .Method<&CService::SaveServiceInfo>(u"SaveServiceInfo", u"Writes what was changed.")
          .Remark(
              u"Other changes than the account's are written again by the next call, until "
              u"Refresh. A service from a list writes its type and display name, too.")
          .Method<&CService::Install>(u"Install", u"Makes the service.")
          .Remark(
              u"Raises 87 without a path, a name, a type or a start type, so that none can be "
              u"made that the boot loader starts.")
          .Method<&CService::Remove>(u"Remove", u"Deletes the service.")
          .Remark(u"One that runs goes when it stops; until then its name stays taken (1072).")
          .Method<&CService::GetMyDependentServices>(u"GetMyDependentServices",
                                                     u"The services that this one depends on.")
          .Method<&CService::GetServicesDependentOnMe>(
              u"GetServicesDependentOnMe",
              u"The services that depend on this one, also indirectly.",
              {{u"eServiceState", kAllStates}});
  return table;
}

void ServiceConfiguration::ForgetChanges() {
  for (Setting<Text>* const text :
       {&display_name, &binary_path, &load_order_group, &account, &dependencies, &description}) {
    text->ClearChanged();
  }
  error_control.ClearChanged();
  start_type.ClearChanged();
}

template <class Work>
auto CService::WithEngine(Work&& work) {
  const Ref<CService> keep_alive(this);
  return ReRaisingAs(kClassName, [&] { return work(Engine()); });
}

Ref<CSecurityDescriptor> CService::GetSecurityDescriptor() {
  return WithEngine([&](CSupport& engine) {
    const Text name = Text(kServerNameStart) + PlainServerName(ServerName) + u"\\" + ServiceName;
    return engine.GetNamedSD(name, SE_SERVICE, this, {}, {}, {}, {});
  });
}

void CService::PutServiceStartName(const Text& value) {
  Setting<Text>& account = configuration_.account;
  if (value != account.Get()) account.Put(PlainServerName(value));
}

void CService::PutPassword(const Secret& value) {
  ForgetPassword();
  if (*value.c_str() != u'\0') password_.emplace(value.c_str());
}

void CService::PutInteractsWithDesktop(bool value) {
  if (value == Has(ServiceType(), SERVICE_INTERACTIVE_PROCESS)) return;
  configuration_.type.Put(
      static_cast<ServiceTypesEnum>(ServiceType() ^ SERVICE_INTERACTIVE_PROCESS));
}

void CService::Refresh() {
  const Ref<CService> keep_alive(this);
  Swallow([&] { Engine().LoadServiceConfig(*this); });
  loaded_ = true;
  ForgetPassword();
}

bool CService::Start() {
  WithEngine([&](CSupport& engine) { engine.StartService(*this); });
  return true;
}

bool CService::SetServiceControl(ServiceControlsEnum control) {
  WithEngine([&](CSupport& engine) { engine.ControlService(*this, control); });
  return true;
}

void CService::SaveServiceInfo() {
  WithEngine([&](CSupport& engine) { engine.SaveServiceInfo(*this); });
}

void CService::Install() {
  WithEngine([&](CSupport& engine) { engine.InstallService(*this); });
}

void CService::Remove() {
  WithEngine([&](CSupport& engine) { engine.RemoveService(*this); });
}

Ref<CServices> CService::GetMyDependentServices() {
  return WithEngine([&](CSupport&) {
    auto services = Make<CServices>();
    const Text names = Dependencies();
    for (std::size_t start = 0; start <= names.size() && !names.empty();) {
      const std::size_t end = std::min(names.find(u'|', start), names.size());
      const auto service = Make<CService>();
      service->DomainName = DomainName;
      service->ServerName = ServerName;
      service->ServiceName = names.substr(start, end - start);
      service->Refresh();
      services->Add(service.Get());
      start = end + 1;
    }
    return services;
  });
}

Ref<CServices> CService::GetServicesDependentOnMe(ServiceStatesMaskEnum state) {
  return WithEngine([&](CSupport& engine) { return engine.GetDependentServices(*this, state); });
}

void CService::TakeStatus(const SERVICE_STATUS& status) {
  CurrentState = static_cast<ServiceStatesEnum>(status.dwCurrentState);
  ControlsAccepted = static_cast<ServiceAcceptEnum>(status.dwControlsAccepted);
  Win32ExitCode = static_cast<std::int32_t>(status.dwWin32ExitCode);
  ServiceSpecificExitCode = static_cast<std::int32_t>(status.dwServiceSpecificExitCode);
  CheckPoint = static_cast<std::int32_t>(status.dwCheckPoint);
  WaitHint = static_cast<std::int32_t>(status.dwWaitHint);
  // A caller's change of the type stays marked; what is told here is none.
  if (ServiceType() == 0) {
    configuration_.type.Load(static_cast<ServiceTypesEnum>(status.dwServiceType));
  }
}

const ServiceConfiguration& CService::Loaded() {
  if (!loaded_) Refresh();
  return configuration_;
}

}  // namespace veldmark
