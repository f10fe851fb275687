#include "platform/windows/WindowsServiceControl.h"

#include <windows.h>

#include "platform/operations/ErrorCodes.h"
#include "platform/windows/Recorded.h"
#include "platform/windows/Sdk.h"
#include "platform/windows/WineDifferences.h"
#include "platform/windows/WineServices.h"

namespace veldmark {
namespace {

::SC_HANDLE Handle(SC_HANDLE handle) { return reinterpret_cast<::SC_HANDLE>(handle); }
SC_HANDLE Handle(::SC_HANDLE handle) { return SC_HANDLE{reinterpret_cast<std::uintptr_t>(handle)}; }

BOOL Bridged(DWORD code) {
  SetLastPlatformError(code);
  return code == kErrorSuccess ? 1 : 0;
}

}  // namespace

SC_HANDLE WindowsServiceControl::OpenSCManagerW(LPCWSTR machine_name, LPCWSTR database_name,
                                                DWORD desired_access) {
  // Wine looks for another computer's service manager for a long time, and tells another code.
  if (machine_name != nullptr && RunsUnderWine() && IsOtherServer(machine_name)) {
    Bridged(kErrorRpcServerUnavailable);
    return SC_HANDLE{0};
  }
  return Handle(Recorded(
      [&] { return ::OpenSCManagerW(Sdk(machine_name), Sdk(database_name), desired_access); }));
}

SC_HANDLE WindowsServiceControl::OpenServiceW(SC_HANDLE manager, LPCWSTR service_name,
                                              DWORD desired_access) {
  const ::SC_HANDLE service =
      Recorded([&] { return ::OpenServiceW(Handle(manager), Sdk(service_name), desired_access); });
  if (service != nullptr && RunsUnderWine()) RememberService(service, service_name);
  return Handle(service);
}

BOOL WindowsServiceControl::CloseServiceHandle(SC_HANDLE object) {
  if (RunsUnderWine()) ForgetService(Handle(object));
  return Recorded([&] { return ::CloseServiceHandle(Handle(object)); });
}

BOOL WindowsServiceControl::QueryServiceStatus(SC_HANDLE service, SERVICE_STATUS* status) {
  return Recorded([&] {
    return ::QueryServiceStatus(Handle(service), reinterpret_cast<::SERVICE_STATUS*>(status));
  });
}

BOOL WindowsServiceControl::QueryServiceConfigW(SC_HANDLE service, QUERY_SERVICE_CONFIGW* config,
                                                DWORD size, DWORD* needed) {
  if (RunsUnderWine()) return Bridged(WineConfig(Handle(service), config, size, needed));
  return Recorded([&] {
    return ::QueryServiceConfigW(
        Handle(service), reinterpret_cast<::QUERY_SERVICE_CONFIGW*>(config), size, Sdk(needed));
  });
}

BOOL WindowsServiceControl::QueryServiceConfig2W(SC_HANDLE service, DWORD level, BYTE* buffer,
                                                 DWORD size, DWORD* needed) {
  return Recorded(
      [&] { return ::QueryServiceConfig2W(Handle(service), level, buffer, size, Sdk(needed)); });
}

BOOL WindowsServiceControl::StartServiceW(SC_HANDLE service, DWORD argument_count,
                                          LPCWSTR* arguments) {
  return Recorded([&] {
    return ::StartServiceW(Handle(service), argument_count,
                           reinterpret_cast<const wchar_t**>(arguments));
  });
}

BOOL WindowsServiceControl::ControlService(SC_HANDLE service, DWORD control,
                                           SERVICE_STATUS* status) {
  auto* const place = reinterpret_cast<::SERVICE_STATUS*>(status);
  const BOOL sent = Recorded([&] { return ::ControlService(Handle(service), control, place); });
  // Wine answers no interrogation while a service starts.
  if (!sent && control == kServiceControlInterrogate && RunsUnderWine() &&
      LastPlatformError() == kErrorServiceCannotAcceptCtrl &&
      status->dwCurrentState == kServiceStartPending) {
    return Bridged(kErrorSuccess);
  }
  return sent;
}

BOOL WindowsServiceControl::ChangeServiceConfigW(SC_HANDLE service, DWORD service_type,
                                                 DWORD start_type, DWORD error_control,
                                                 LPCWSTR binary_path_name, LPCWSTR load_order_group,
                                                 DWORD* tag_id, LPCWSTR dependencies,
                                                 LPCWSTR service_start_name, LPCWSTR password,
                                                 LPCWSTR display_name) {
  return Recorded([&] {
    return ::ChangeServiceConfigW(Handle(service), service_type, start_type, error_control,
                                  Sdk(binary_path_name), Sdk(load_order_group), Sdk(tag_id),
                                  Sdk(dependencies), Sdk(service_start_name), Sdk(password),
                                  Sdk(display_name));
  });
}

SC_HANDLE WindowsServiceControl::CreateServiceW(SC_HANDLE manager, LPCWSTR service_name,
                                                LPCWSTR display_name, DWORD desired_access,
                                                DWORD service_type, DWORD start_type,
                                                DWORD error_control, LPCWSTR binary_path_name,
                                                LPCWSTR load_order_group, DWORD* tag_id,
                                                LPCWSTR dependencies, LPCWSTR service_start_name,
                                                LPCWSTR password) {
  // Wine takes an empty account for one, and not for none.
  const bool has_account = service_start_name != nullptr && *service_start_name != u'\0';
  if (!has_account && RunsUnderWine()) service_start_name = nullptr;
  const ::SC_HANDLE service = Recorded([&] {
    return ::CreateServiceW(Handle(manager), Sdk(service_name), Sdk(display_name), desired_access,
                            service_type, start_type, error_control, Sdk(binary_path_name),
                            Sdk(load_order_group), Sdk(tag_id), Sdk(dependencies),
                            Sdk(service_start_name), Sdk(password));
  });
  if (service != nullptr && RunsUnderWine()) RememberService(service, service_name);
  return Handle(service);
}

BOOL WindowsServiceControl::DeleteService(SC_HANDLE service) {
  return Recorded([&] { return ::DeleteService(Handle(service)); });
}

SC_LOCK WindowsServiceControl::LockServiceDatabase(SC_HANDLE manager) {
  return SC_LOCK{reinterpret_cast<std::uintptr_t>(
      Recorded([&] { return ::LockServiceDatabase(Handle(manager)); }))};
}

BOOL WindowsServiceControl::UnlockServiceDatabase(SC_LOCK lock) {
  return Recorded([&] { return ::UnlockServiceDatabase(reinterpret_cast<::SC_LOCK>(lock)); });
}

BOOL WindowsServiceControl::EnumServicesStatusW(SC_HANDLE manager, DWORD service_type,
                                                DWORD service_state, ENUM_SERVICE_STATUSW* services,
                                                DWORD size, DWORD* needed, DWORD* returned,
                                                DWORD* resume_handle) {
  if (RunsUnderWine()) {
    return Bridged(WineServicesFrom(Handle(manager), service_type, service_state, services, size,
                                    needed, returned, resume_handle));
  }
  return Recorded([&] {
    return ::EnumServicesStatusW(Handle(manager), service_type, service_state,
                                 reinterpret_cast<::ENUM_SERVICE_STATUSW*>(services), size,
                                 Sdk(needed), Sdk(returned), Sdk(resume_handle));
  });
}

BOOL WindowsServiceControl::EnumDependentServicesW(SC_HANDLE service, DWORD service_state,
                                                   ENUM_SERVICE_STATUSW* services, DWORD size,
                                                   DWORD* needed, DWORD* returned) {
  if (RunsUnderWine()) {
    return Bridged(
        WineDependents(Handle(service), service_state, services, size, needed, returned));
  }
  return Recorded([&] {
    return ::EnumDependentServicesW(Handle(service), service_state,
                                    reinterpret_cast<::ENUM_SERVICE_STATUSW*>(services), size,
                                    Sdk(needed), Sdk(returned));
  });
}

}  // namespace veldmark
