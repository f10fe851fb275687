#pragma once

#include <windows.h>

#include "platform/operations/ServiceControl.h"

namespace veldmark {

/// What the service manager answers on this computer where Wine's doesn't, or does it otherwise
/// than published. Each returns 0 or its published code.

/// A slice of the services. Wine's walk can't be resumed: it answers 234 with a resume handle of 0
/// unless everything fits.
DWORD WineServicesFrom(::SC_HANDLE manager, DWORD service_type, DWORD service_state,
                       ENUM_SERVICE_STATUSW* services, DWORD size, DWORD* needed, DWORD* returned,
                       DWORD* resume_handle);

/// The services that depend on one. Wine says that nothing depends on anything.
DWORD WineDependents(::SC_HANDLE service, DWORD service_state, ENUM_SERVICE_STATUSW* services,
                     DWORD size, DWORD* needed, DWORD* returned);

/// The configuration. Wine tells of no dependencies, and shows nothing for a service without a
/// display name.
DWORD WineConfig(::SC_HANDLE service, QUERY_SERVICE_CONFIGW* config, DWORD size, DWORD* needed);

/// Remembers what service a handle stands for, which Wine doesn't tell, and forgets it.
void RememberService(::SC_HANDLE service, LPCWSTR name);
void ForgetService(::SC_HANDLE service);

}  // namespace veldmark
