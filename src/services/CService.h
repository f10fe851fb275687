#pragma once

#include <optional>

#include "apartment/Counted.h"
#include "automation/Object.h"
#include "automation/Secret.h"
#include "automation/Setting.h"
#include "automation/Text.h"
#include "services/ServiceEnumerations.h"

namespace veldmark {

class CSecurityDescriptor;
class CServices;
struct SERVICE_STATUS;

/// What the service manager keeps of a service: the record QUERY_SERVICE_CONFIGW, and the
/// description.
struct ServiceConfiguration {
  Setting<Text> display_name;
  Setting<ServiceTypesEnum> type;
  Setting<ServiceErrorControlEnum> error_control;
  Setting<ServiceStartTypeEnum> start_type;
  std::int32_t tag = 0;
  Setting<Text> binary_path;
  Setting<Text> load_order_group;
  Setting<Text> account;
  Setting<Text> dependencies;  ///< joined by "|"
  Setting<Text> description;

  /// Takes back all marks but that of the type.
  void ForgetChanges();
};

/// A service of a computer: its status, its configuration, and what can be done with it.
///
/// Whoever makes the object fills its status. The configuration is fetched when it is first asked
/// for; a fetch never raises, and a service that doesn't exist reads as empty. What a caller
/// changes stays in the object until `SaveServiceInfo` writes it. The members that work on the
/// service raise the platform's error.
class CService : public Exported<CService>, Counted<Counter::kService> {
 public:
  static const Interface& Describe();

  Ref<CSecurityDescriptor> GetSecurityDescriptor();

  const Text& DisplayName() const { return configuration_.display_name.Get(); }
  void PutDisplayName(const Text& value) { configuration_.display_name.PutIfDifferent(value); }
  Text ServiceName;
  Text ServerName;
  Text DomainName;
  ServiceTypesEnum ServiceType() const { return configuration_.type.Get(); }
  void PutServiceType(ServiceTypesEnum value) { configuration_.type.PutIfDifferent(value); }

  ServiceStatesEnum CurrentState{};
  ServiceAcceptEnum ControlsAccepted{};
  std::int32_t Win32ExitCode = 0;
  std::int32_t ServiceSpecificExitCode = 0;
  std::int32_t CheckPoint = 0;
  std::int32_t WaitHint = 0;  ///< milliseconds

  // These fetch; those that are put count as changed, but for the tag.
  ServiceErrorControlEnum ErrorControl() { return Loaded().error_control.Get(); }
  void PutErrorControl(ServiceErrorControlEnum value) { configuration_.error_control.Put(value); }
  ServiceStartTypeEnum StartType() { return Loaded().start_type.Get(); }
  void PutStartType(ServiceStartTypeEnum value) { configuration_.start_type.Put(value); }
  std::int32_t TagId() { return Loaded().tag; }
  void PutTagId(std::int32_t value) { configuration_.tag = value; }
  Text BinaryPathName() { return Loaded().binary_path.Get(); }
  void PutBinaryPathName(const Text& value) { configuration_.binary_path.Put(value); }
  Text LoadOrderGroup() { return Loaded().load_order_group.Get(); }
  void PutLoadOrderGroup(const Text& value) {
    configuration_.load_order_group.PutIfDifferent(value);
  }
  Text ServiceStartName() { return Loaded().account.Get(); }
  /// Another name than the stored one is stored without a leading "\\".
  void PutServiceStartName(const Text& value);
  Text Dependencies() { return Loaded().dependencies.Get(); }
  void PutDependencies(const Text& value) { configuration_.dependencies.PutIfDifferent(value); }
  Text Description() { return Loaded().description.Get(); }
  void PutDescription(const Text& value) { configuration_.description.PutIfDifferent(value); }
  /// Lives until the next fetch or the account's change.
  void PutPassword(const Secret& value);

  bool OwnProcess() const { return Has(ServiceType(), SERVICE_WIN32_OWN_PROCESS); }
  bool ShareProcess() const { return Has(ServiceType(), SERVICE_WIN32_SHARE_PROCESS); }
  bool DeviceDriver() const { return Has(ServiceType(), SERVICE_KERNEL_DRIVER); }
  bool FileSystemDriver() const { return Has(ServiceType(), SERVICE_FILE_SYSTEM_DRIVER); }
  bool InteractsWithDesktop() { return Has(Loaded().type.Get(), SERVICE_INTERACTIVE_PROCESS); }
  void PutInteractsWithDesktop(bool value);
  bool Stopped() const { return CurrentState == SERVICE_STOPPED; }
  bool StartPending() const { return CurrentState == SERVICE_START_PENDING; }
  bool StopPending() const { return CurrentState == SERVICE_STOP_PENDING; }
  bool Running() const { return CurrentState == SERVICE_RUNNING; }
  bool ContinuePending() const { return CurrentState == SERVICE_CONTINUE_PENDING; }
  bool PausePending() const { return CurrentState == SERVICE_PAUSE_PENDING; }
  bool Paused() const { return CurrentState == SERVICE_PAUSED; }
  bool AcceptStop() const { return Has(ControlsAccepted, SERVICE_ACCEPT_STOP); }
  bool AcceptPauseContinue() const { return Has(ControlsAccepted, SERVICE_ACCEPT_PAUSE_CONTINUE); }
  bool AcceptShutdown() const { return Has(ControlsAccepted, SERVICE_ACCEPT_SHUTDOWN); }

  /// Fetches configuration and status anew, which drops changes. Never raises.
  void Refresh();
  /// Starts the service and waits until it runs, a minute at most (1053). Always True.
  bool Start();
  /// Sends a control and waits for the state that it leads to, a minute at most (1053). Always
  /// True.
  bool SetServiceControl(ServiceControlsEnum control);
  /// Writes what was changed, and the password if there is one.
  void SaveServiceInfo();
  /// Makes the service. Raises 87 without a path, a name, a type or a start type.
  void Install();
  void Remove();
  /// The services that this one depends on.
  Ref<CServices> GetMyDependentServices();
  Ref<CServices> GetServicesDependentOnMe(ServiceStatesMaskEnum state);

  /// For the library's own use: the fields as they stand, without a fetch.
  ServiceConfiguration& Configuration() { return configuration_; }
  /// Takes over what the platform tells of the state; the type only where there is none yet.
  void TakeStatus(const SERVICE_STATUS& status);
  /// Null where there is none.
  const Secret* Password() const { return password_ ? &*password_ : nullptr; }
  void ForgetPassword() { password_.reset(); }

 private:
  static bool Has(std::int32_t value, std::int32_t bit) { return (value | bit) == value; }
  /// The configuration, fetched unless it has been before.
  const ServiceConfiguration& Loaded();
  /// Calls `work` with the engine; the object outlives it, whatever a listener lets go.
  template <class Work>
  auto WithEngine(Work&& work);

  ServiceConfiguration configuration_;
  std::optional<Secret> password_;
  bool loaded_ = false;
};

}  // namespace veldmark
