#pragma once

#include <map>
#include <span>
#include <string_view>
#include <vector>

#include "platform/operations/ServiceControl.h"
#include "platform/simulated/families/Session.h"

namespace veldmark::simulated {

// The service managers of an estate's computers. Services take their time by the estate's clock.
// The journal notes what a call was given but for handles, "-" for null; of a password only
// whether there is one.
class SimulatedServiceControl final : public ServiceControl {
 public:
  explicit SimulatedServiceControl(Session& session) : session_(session) {}

  SC_HANDLE OpenSCManagerW(LPCWSTR machine_name, LPCWSTR database_name,
                           DWORD desired_access) override;
  SC_HANDLE OpenServiceW(SC_HANDLE manager, LPCWSTR service_name, DWORD desired_access) override;
  BOOL CloseServiceHandle(SC_HANDLE object) override;
  BOOL QueryServiceStatus(SC_HANDLE service, SERVICE_STATUS* status) override;
  BOOL QueryServiceConfigW(SC_HANDLE service, QUERY_SERVICE_CONFIGW* config, DWORD size,
                           DWORD* needed) override;
  BOOL QueryServiceConfig2W(SC_HANDLE service, DWORD level, BYTE* buffer, DWORD size,
                            DWORD* needed) override;
  BOOL StartServiceW(SC_HANDLE service, DWORD argument_count, LPCWSTR* arguments) override;
  BOOL ControlService(SC_HANDLE service, DWORD control, SERVICE_STATUS* status) override;
  BOOL ChangeServiceConfigW(SC_HANDLE service, DWORD service_type, DWORD start_type,
                            DWORD error_control, LPCWSTR binary_path_name, LPCWSTR load_order_group,
                            DWORD* tag_id, LPCWSTR dependencies, LPCWSTR service_start_name,
                            LPCWSTR password, LPCWSTR display_name) override;
  SC_HANDLE CreateServiceW(SC_HANDLE manager, LPCWSTR service_name, LPCWSTR display_name,
                           DWORD desired_access, DWORD service_type, DWORD start_type,
                           DWORD error_control, LPCWSTR binary_path_name, LPCWSTR load_order_group,
                           DWORD* tag_id, LPCWSTR dependencies, LPCWSTR service_start_name,
                           LPCWSTR password) override;
  BOOL DeleteService(SC_HANDLE service) override;
  SC_LOCK LockServiceDatabase(SC_HANDLE manager) override;
  BOOL UnlockServiceDatabase(SC_LOCK lock) override;
  BOOL EnumServicesStatusW(SC_HANDLE manager, DWORD service_type, DWORD service_state,
                           ENUM_SERVICE_STATUSW* services, DWORD size, DWORD* needed,
                           DWORD* returned, DWORD* resume_handle) override;
  BOOL EnumDependentServicesW(SC_HANDLE service, DWORD service_state,
                              ENUM_SERVICE_STATUSW* services, DWORD size, DWORD* needed,
                              DWORD* returned) override;

 private:
  // A service as an enumeration lists it, with the bytes that it and all behind it take.
  struct Listed {
    Text name;
    Text display_name;
    SERVICE_STATUS status;
    std::size_t size_from_here;
  };
  struct Open {
    Computer* computer;
    Service* service;  // null for a manager
    DWORD access;
    std::vector<Listed> listed{};  // what a walk that is resumed goes on with
  };
  // What a change or a new service says of the configuration.
  struct Wanted;

  // What a handle stands for that was opened for this access; else null, with the last error.
  Open* FindManager(SC_HANDLE manager, DWORD access, std::string_view operation);
  Open* FindService(SC_HANDLE service, DWORD access, std::string_view operation);
  Open* Find(SC_HANDLE handle, bool is_manager, DWORD access, std::string_view operation);
  SC_HANDLE Hand(Open open, std::string_view operation, TextView detail);
  // The code that the caller is refused this access with, or 0 and what he is granted.
  DWORD CheckManager(Computer& computer, DWORD desired, DWORD& granted);
  DWORD CheckService(const Computer& computer, const Service& service, DWORD desired,
                     DWORD& granted);
  // Takes out the services that are stopped, marked for deletion and not opened.
  void RemoveMarked(Computer& computer);

  DWORD WhyNot(Computer& computer, const Service& service, const Wanted& wanted);
  bool MayLogOn(Computer& computer, const Service& service);
  // Starts a service and what it depends on. Returns 0 or why it can't be.
  DWORD Start(Computer& computer, Service& service, std::vector<const Service*>& starting);
  // Sends a service on its way to another state, which takes its milliseconds from now on, or from
  // `start` if that is later.
  void Move(Computer& computer, Service& service, DWORD pending, DWORD state, DWORD milliseconds,
            Ticks start = 0);
  // Has the computer's system log, if there is one, tell of an event at its moment.
  RecordedLog::Scheduled Report(Computer& computer, Ticks when, DWORD id,
                                std::vector<Text> strings);
  bool HasActiveDependents(Computer& computer, const Service& service);
  void CollectDependents(Computer& computer, const Service& service,
                         std::vector<const Service*>& dependents);
  // Puts as many of them as fit into a buffer, and returns how many those are.
  static std::size_t Put(std::span<const Listed> listed, ENUM_SERVICE_STATUSW* services,
                         DWORD size);
  std::vector<Listed> List(std::vector<const Service*> services, DWORD state) const;
  Ticks now() const { return session_.estate.now(); }

  Session& session_;
  std::map<std::uintptr_t, Open> open_;
  std::map<std::uintptr_t, Computer*> locks_;
};

}  // namespace veldmark::simulated
