#pragma once

#include <cstdint>

namespace veldmark {

struct Enumeration;

/// What a service is doing.
enum ServiceStatesEnum : std::int32_t {
  SERVICE_STOPPED = 1,
  SERVICE_START_PENDING = 2,
  SERVICE_STOP_PENDING = 3,
  SERVICE_RUNNING = 4,
  SERVICE_CONTINUE_PENDING = 5,
  SERVICE_PAUSE_PENDING = 6,
  SERVICE_PAUSED = 7,
};

/// The controls that a service takes, to be combined.
enum ServiceAcceptEnum : std::int32_t {
  SERVICE_ACCEPT_STOP = 1,
  SERVICE_ACCEPT_PAUSE_CONTINUE = 2,
  SERVICE_ACCEPT_SHUTDOWN = 4,
  SERVICE_ACCEPT_PARAMCHANGE = 8,
  SERVICE_ACCEPT_NETBINDCHANGE = 16,
};

/// What kind of program a service is.
enum ServiceTypesEnum : std::int32_t {
  SERVICE_KERNEL_DRIVER = 1,
  SERVICE_FILE_SYSTEM_DRIVER = 2,
  SERVICE_ADAPTER = 4,
  SERVICE_RECOGNIZER_DRIVER = 8,
  SERVICE_DRIVER = 11,
  SERVICE_WIN32_OWN_PROCESS = 16,
  SERVICE_WIN32_SHARE_PROCESS = 32,
  SERVICE_WIN32 = 48,
  SERVICE_INTERACTIVE_PROCESS = 256,
  SERVICE_TYPE_ALL = 319,
};

/// When a service is started.
enum ServiceStartTypeEnum : std::int32_t {
  SERVICE_BOOT_START = 0,
  SERVICE_SYSTEM_START = 1,
  SERVICE_AUTO_START = 2,
  SERVICE_DEMAND_START = 3,
  SERVICE_DISABLED = 4,
};

/// How serious it is that a service does not start with the system.
enum ServiceErrorControlEnum : std::int32_t {
  SERVICE_ERROR_IGNORE = 0,
  SERVICE_ERROR_NORMAL = 1,
  SERVICE_ERROR_SEVERE = 2,
  SERVICE_ERROR_CRITICAL = 3,
};

/// Which services are listed.
enum ServiceStatesMaskEnum : std::int32_t {
  SERVICE_ACTIVE = 1,
  SERVICE_INACTIVE = 2,
  SERVICE_STATE_ALL = 3,
};

/// What a service is told.
enum ServiceControlsEnum : std::int32_t {
  SERVICE_CONTROL_STOP = 1,
  SERVICE_CONTROL_PAUSE = 2,
  SERVICE_CONTROL_CONTINUE = 3,
  SERVICE_CONTROL_INTERROGATE = 4,
  SERVICE_CONTROL_SHUTDOWN = 5,
  SERVICE_CONTROL_PARAMCHANGE = 6,
  SERVICE_CONTROL_NETBINDADD = 7,
  SERVICE_CONTROL_NETBINDREMOVE = 8,
  SERVICE_CONTROL_NETBINDENABLE = 9,
  SERVICE_CONTROL_NETBINDDISABLE = 10,
};

const Enumeration& DescribeEnumeration(ServiceStatesEnum);
const Enumeration& DescribeEnumeration(ServiceAcceptEnum);
const Enumeration& DescribeEnumeration(ServiceTypesEnum);
const Enumeration& DescribeEnumeration(ServiceStartTypeEnum);
const Enumeration& DescribeEnumeration(ServiceErrorControlEnum);
const Enumeration& DescribeEnumeration(ServiceStatesMaskEnum);
const Enumeration& DescribeEnumeration(ServiceControlsEnum);

}  // namespace veldmark
