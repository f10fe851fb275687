#pragma once

#include "platform/operations/ServiceControl.h"

namespace veldmark {

/// Services of a computer, kept by its service control manager.
class WindowsServiceControl final : public ServiceControl {
 public:
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
};

}  // namespace veldmark
