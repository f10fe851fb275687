#pragma once

#include "platform/operations/Types.h"

namespace veldmark {

// A service manager or service that was opened, and the lock of a service database: neither passes
// for another handle.
enum class SC_HANDLE : std::uintptr_t {};
enum class SC_LOCK : std::uintptr_t {};

// What an opened manager may be used for. Connecting is always among it.
inline constexpr DWORD kManagerConnect = 0x0001;
inline constexpr DWORD kManagerCreateService = 0x0002;
inline constexpr DWORD kManagerEnumerateService = 0x0004;
inline constexpr DWORD kManagerLock = 0x0008;
inline constexpr DWORD kManagerAllAccess = 0xF003F;

// What an opened service may be used for.
inline constexpr DWORD kServiceQueryConfig = 0x0001;
inline constexpr DWORD kServiceChangeConfig = 0x0002;
inline constexpr DWORD kServiceQueryStatus = 0x0004;
inline constexpr DWORD kServiceEnumerateDependents = 0x0008;
inline constexpr DWORD kServiceStart = 0x0010;
inline constexpr DWORD kServiceStop = 0x0020;
inline constexpr DWORD kServicePauseContinue = 0x0040;
inline constexpr DWORD kServiceInterrogate = 0x0080;
inline constexpr DWORD kServiceUserDefinedControl = 0x0100;
inline constexpr DWORD kServiceAllAccess = 0xF01FF;

inline constexpr DWORD kServiceKernelDriver = 0x01;
inline constexpr DWORD kServiceOwnProcess = 0x10;
inline constexpr DWORD kServiceShareProcess = 0x20;
inline constexpr DWORD kServiceWin32 = 0x30;
inline constexpr DWORD kServiceInteractiveProcess = 0x100;
inline constexpr DWORD kServiceTypeAll = 0x13F;

inline constexpr DWORD kServiceAutoStart = 2;
inline constexpr DWORD kServiceDemandStart = 3;
inline constexpr DWORD kServiceDisabled = 4;

inline constexpr DWORD kServiceErrorNormal = 1;
inline constexpr DWORD kServiceErrorCritical = 3;

inline constexpr DWORD kServiceStopped = 1;
inline constexpr DWORD kServiceStartPending = 2;
inline constexpr DWORD kServiceStopPending = 3;
inline constexpr DWORD kServiceRunning = 4;
inline constexpr DWORD kServiceContinuePending = 5;
inline constexpr DWORD kServicePausePending = 6;
inline constexpr DWORD kServicePaused = 7;

inline constexpr DWORD kServiceAcceptStop = 0x01;
inline constexpr DWORD kServiceAcceptPauseContinue = 0x02;
inline constexpr DWORD kServiceAcceptShutdown = 0x04;
inline constexpr DWORD kServiceAcceptParamChange = 0x08;
inline constexpr DWORD kServiceAcceptNetBindChange = 0x10;

inline constexpr DWORD kServiceControlStop = 1;
inline constexpr DWORD kServiceControlPause = 2;
inline constexpr DWORD kServiceControlContinue = 3;
inline constexpr DWORD kServiceControlInterrogate = 4;
inline constexpr DWORD kServiceControlShutdown = 5;
inline constexpr DWORD kServiceControlParamChange = 6;
inline constexpr DWORD kServiceControlNetBindDisable = 10;

// States of services to be listed: those that are stopped, and all others.
inline constexpr DWORD kServiceActive = 1;
inline constexpr DWORD kServiceInactive = 2;
inline constexpr DWORD kServiceStateAll = 3;

// Leaves a number of the configuration as it is.
inline constexpr DWORD kServiceNoChange = 0xFFFFFFFF;

inline constexpr DWORD kServiceConfigDescription = 1;

struct SERVICE_STATUS {
  DWORD dwServiceType;
  DWORD dwCurrentState;
  DWORD dwControlsAccepted;
  DWORD dwWin32ExitCode;
  DWORD dwServiceSpecificExitCode;  // where the exit code is 1066
  DWORD dwCheckPoint;               // counts up while a start or another change takes its time
  DWORD dwWaitHint;                 // milliseconds until the next of it
};

struct ENUM_SERVICE_STATUSW {
  LPWSTR lpServiceName;
  LPWSTR lpDisplayName;
  SERVICE_STATUS ServiceStatus;
};

struct QUERY_SERVICE_CONFIGW {
  DWORD dwServiceType;
  DWORD dwStartType;
  DWORD dwErrorControl;
  LPWSTR lpBinaryPathName;
  LPWSTR lpLoadOrderGroup;
  DWORD dwTagId;
  LPWSTR lpDependencies;  // a list of names, each with its NUL, that ends in an empty one
  LPWSTR lpServiceStartName;
  LPWSTR lpDisplayName;
};

struct SERVICE_DESCRIPTIONW {
  LPWSTR lpDescription;  // null where there is none
};

// Services of a computer, kept by its service control manager. The operations return non-zero, a
// handle or a lock on success, and 0 with the last error on failure. The codes common to all:
//    5  denied, or the handle was opened without the access that the operation needs
//    6  the handle is none of this kind
//   87  a parameter is none that the operation knows
// Names of services are compared without regard to case. Texts that a record names lie in the
// buffer behind the records.
class ServiceControl {
 public:
  virtual ~ServiceControl() = default;

  // Opens the service manager of a computer ("\\srv" or "srv"; null or empty: this one) for
  // kManager... rights. `database_name` is null or "ServicesActive". Closed with
  // CloseServiceHandle. 1722: the computer can't be reached; 1065: there is no such database; 123:
  // it can't have such a name.
  virtual SC_HANDLE OpenSCManagerW(LPCWSTR machine_name, LPCWSTR database_name,
                                   DWORD desired_access) = 0;

  // Opens a service by its short name for kService... rights. Closed with CloseServiceHandle. 1060:
  // there is no such service; 123: no service can have such a name.
  virtual SC_HANDLE OpenServiceW(SC_HANDLE manager, LPCWSTR service_name, DWORD desired_access) = 0;

  // Closes a manager or a service. A service marked for deletion goes with its last handle, if it
  // is stopped.
  virtual BOOL CloseServiceHandle(SC_HANDLE object) = 0;

  // What the service manager was last told of the service. Needs kServiceQueryStatus.
  virtual BOOL QueryServiceStatus(SC_HANDLE service, SERVICE_STATUS* status) = 0;

  // The configuration, in `size` bytes. 122: too small, `*needed` receives the bytes needed. Needs
  // kServiceQueryConfig.
  virtual BOOL QueryServiceConfigW(SC_HANDLE service, QUERY_SERVICE_CONFIGW* config, DWORD size,
                                   DWORD* needed) = 0;

  // With kServiceConfigDescription the description, as SERVICE_DESCRIPTIONW. 122 as above; 124: an
  // unknown level; 127: this platform doesn't have the operation. Needs kServiceQueryConfig.
  virtual BOOL QueryServiceConfig2W(SC_HANDLE service, DWORD level, BYTE* buffer, DWORD size,
                                    DWORD* needed) = 0;

  // Starts a service and what it depends on, and returns once its program has been told; that the
  // service runs is for its status to tell. Needs kServiceStart. 1055: the database is locked;
  // 1056: it isn't stopped; 1058: it is disabled; 1059: it depends on itself; 1068, 1075: what it
  // depends on can't be started, or isn't there; 1069: its account can't log on; 1072: it is marked
  // for deletion; 2, 3, 1053: its program is missing, or doesn't answer.
  virtual BOOL StartServiceW(SC_HANDLE service, DWORD argument_count, LPCWSTR* arguments) = 0;

  // Sends a control and receives the latest status, also with the codes 1052 (the service doesn't
  // take this control), 1061 (it can't now) and 1062 (it is stopped). kServiceControlInterrogate
  // is answered in every state but the stopped ones, also while the service starts. Needs
  // kServiceStop, kServicePauseContinue (also for changes of parameters and bindings),
  // kServiceInterrogate or, from 128 to 255, kServiceUserDefinedControl. 1051: others that run
  // depend on it.
  virtual BOOL ControlService(SC_HANDLE service, DWORD control, SERVICE_STATUS* status) = 0;

  // Changes what isn't kServiceNoChange or null; an empty text empties it, but for the account,
  // which stays. `dependencies` is a list of names, each with its NUL, that ends in an empty one.
  // An account is "DOMAIN\name", ".\name" or "LocalSystem". Needs kServiceChangeConfig. 1057: no
  // such account; 1059: the service would depend on itself; 1072: it is marked for deletion; 1078:
  // another one has this name; 87: also for an interactive service of another account than
  // LocalSystem.
  virtual BOOL ChangeServiceConfigW(SC_HANDLE service, DWORD service_type, DWORD start_type,
                                    DWORD error_control, LPCWSTR binary_path_name,
                                    LPCWSTR load_order_group, DWORD* tag_id, LPCWSTR dependencies,
                                    LPCWSTR service_start_name, LPCWSTR password,
                                    LPCWSTR display_name) = 0;

  // Makes a service and opens it for `desired_access`; closed with CloseServiceHandle. Without an
  // account (null or empty) it is LocalSystem's, without a display name its name is shown. Needs
  // kManagerCreateService. 1073: there is a service of this name; 1072: and it is marked for
  // deletion; 123: no service can have such a name; 1057, 1059, 1078, 87 as for a change.
  virtual SC_HANDLE CreateServiceW(SC_HANDLE manager, LPCWSTR service_name, LPCWSTR display_name,
                                   DWORD desired_access, DWORD service_type, DWORD start_type,
                                   DWORD error_control, LPCWSTR binary_path_name,
                                   LPCWSTR load_order_group, DWORD* tag_id, LPCWSTR dependencies,
                                   LPCWSTR service_start_name, LPCWSTR password) = 0;

  // Marks a service for deletion: it goes when it is stopped and its last handle closed. 1072: it
  // is marked already. Needs kDelete.
  virtual BOOL DeleteService(SC_HANDLE service) = 0;

  // Keeps services from being started until the lock is given back with UnlockServiceDatabase.
  // 1055: somebody has it. Needs kManagerLock.
  virtual SC_LOCK LockServiceDatabase(SC_HANDLE manager) = 0;
  // 1071: it is no lock.
  virtual BOOL UnlockServiceDatabase(SC_LOCK lock) = 0;

  // The services of these types and states (kServiceActive ...) whose status the caller may query,
  // by name, from `*resume_handle` on (0: the first): as many as fit into `size` bytes with their
  // texts. 234: there are more, or not even one fits; `*needed` receives the bytes for the rest and
  // `*resume_handle` where to go on, which is 0 after the last and where nothing fits. Needs
  // kManagerEnumerateService.
  virtual BOOL EnumServicesStatusW(SC_HANDLE manager, DWORD service_type, DWORD service_state,
                                   ENUM_SERVICE_STATUSW* services, DWORD size, DWORD* needed,
                                   DWORD* returned, DWORD* resume_handle) = 0;

  // The services of these states that depend on a service, also through others, in the order in
  // which they have to be stopped. 234: they don't all fit into `size` bytes, `*needed` receives
  // the bytes for the rest. Needs kServiceEnumerateDependents.
  virtual BOOL EnumDependentServicesW(SC_HANDLE service, DWORD service_state,
                                      ENUM_SERVICE_STATUSW* services, DWORD size, DWORD* needed,
                                      DWORD* returned) = 0;
};

}  // namespace veldmark
