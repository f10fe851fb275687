#include "platform/operations/ServiceControl.h"

#include <windows.h>

#include "platform/windows/layout/SameLayout.h"

namespace veldmark {

VELDMARK_SAME_LAYOUT(SERVICE_STATUS, dwServiceType, dwCurrentState, dwControlsAccepted,
                     dwWin32ExitCode, dwServiceSpecificExitCode, dwCheckPoint, dwWaitHint);
VELDMARK_SAME_LAYOUT(ENUM_SERVICE_STATUSW, lpServiceName, lpDisplayName, ServiceStatus);
VELDMARK_SAME_LAYOUT(QUERY_SERVICE_CONFIGW, dwServiceType, dwStartType, dwErrorControl,
                     lpBinaryPathName, lpLoadOrderGroup, dwTagId, lpDependencies,
                     lpServiceStartName, lpDisplayName);
VELDMARK_SAME_LAYOUT(SERVICE_DESCRIPTIONW, lpDescription);

static_assert(kManagerConnect == SC_MANAGER_CONNECT);
static_assert(kManagerCreateService == SC_MANAGER_CREATE_SERVICE);
static_assert(kManagerEnumerateService == SC_MANAGER_ENUMERATE_SERVICE);
static_assert(kManagerLock == SC_MANAGER_LOCK);
static_assert(kManagerAllAccess == SC_MANAGER_ALL_ACCESS);
static_assert(kServiceQueryConfig == SERVICE_QUERY_CONFIG);
static_assert(kServiceChangeConfig == SERVICE_CHANGE_CONFIG);
static_assert(kServiceQueryStatus == SERVICE_QUERY_STATUS);
static_assert(kServiceEnumerateDependents == SERVICE_ENUMERATE_DEPENDENTS);
static_assert(kServiceStart == SERVICE_START);
static_assert(kServiceStop == SERVICE_STOP);
static_assert(kServicePauseContinue == SERVICE_PAUSE_CONTINUE);
static_assert(kServiceInterrogate == SERVICE_INTERROGATE);
static_assert(kServiceUserDefinedControl == SERVICE_USER_DEFINED_CONTROL);
static_assert(kServiceAllAccess == SERVICE_ALL_ACCESS);
static_assert(kServiceWin32 == SERVICE_WIN32);
static_assert(kServiceTypeAll == SERVICE_TYPE_ALL);
static_assert(kServiceDisabled == SERVICE_DISABLED);
static_assert(kServiceErrorCritical == SERVICE_ERROR_CRITICAL);
static_assert(kServiceStopped == SERVICE_STOPPED);
static_assert(kServicePaused == SERVICE_PAUSED);
static_assert(kServiceAcceptNetBindChange == SERVICE_ACCEPT_NETBINDCHANGE);
static_assert(kServiceControlStop == SERVICE_CONTROL_STOP);
static_assert(kServiceControlInterrogate == SERVICE_CONTROL_INTERROGATE);
static_assert(kServiceControlNetBindDisable == SERVICE_CONTROL_NETBINDDISABLE);
static_assert(kServiceStateAll == SERVICE_STATE_ALL);
static_assert(kServiceNoChange == SERVICE_NO_CHANGE);
static_assert(kServiceConfigDescription == SERVICE_CONFIG_DESCRIPTION);

}  // namespace veldmark
