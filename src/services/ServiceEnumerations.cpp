#include "services/ServiceEnumerations.h"

#include "automation/Declare.h"

namespace veldmark {

const Enumeration& DescribeEnumeration(ServiceStatesEnum) {
  static const Enumeration table =
      DeclareEnumeration<ServiceStatesEnum>(u"ServiceStatesEnum", u"What a service is doing.")
          .Value(u"SERVICE_STOPPED", SERVICE_STOPPED, u"It does not run.")
          .Value(u"SERVICE_START_PENDING", SERVICE_START_PENDING, u"It is starting.")
          .Value(u"SERVICE_STOP_PENDING", SERVICE_STOP_PENDING, u"It is stopping.")
          .Value(u"SERVICE_RUNNING", SERVICE_RUNNING, u"It runs.")
          .Value(u"SERVICE_CONTINUE_PENDING", SERVICE_CONTINUE_PENDING, u"It is leaving its pause.")
          .Value(u"SERVICE_PAUSE_PENDING", SERVICE_PAUSE_PENDING, u"It is pausing.")
          .Value(u"SERVICE_PAUSED", SERVICE_PAUSED, u"It pauses.");
  return table;
}

const Enumeration& DescribeEnumeration(ServiceAcceptEnum) {
  static const Enumeration table =
      DeclareEnumeration<ServiceAcceptEnum>(u"ServiceAcceptEnum",
                                            u"The controls that a service takes, to be combined.")
          .Value(u"SERVICE_ACCEPT_STOP", SERVICE_ACCEPT_STOP, u"It can be stopped.")
          .Value(u"SERVICE_ACCEPT_PAUSE_CONTINUE", SERVICE_ACCEPT_PAUSE_CONTINUE,
                 u"It can be paused and continued.")
          .Value(u"SERVICE_ACCEPT_SHUTDOWN", SERVICE_ACCEPT_SHUTDOWN,
                 u"It is told when the computer shuts down.")
          .Value(u"SERVICE_ACCEPT_PARAMCHANGE", SERVICE_ACCEPT_PARAMCHANGE,
                 u"It reads its parameters anew when told.")
          .Value(u"SERVICE_ACCEPT_NETBINDCHANGE", SERVICE_ACCEPT_NETBINDCHANGE,
                 u"It is told of changed network bindings.");
  return table;
}

const Enumeration& DescribeEnumeration(ServiceTypesEnum) {
  static const Enumeration table =
      DeclareEnumeration<ServiceTypesEnum>(u"ServiceTypesEnum",
                                           u"What kind of program a service is.")
          .Value(u"SERVICE_KERNEL_DRIVER", SERVICE_KERNEL_DRIVER, u"A device driver.")
          .Value(u"SERVICE_FILE_SYSTEM_DRIVER", SERVICE_FILE_SYSTEM_DRIVER,
                 u"A file system driver.")
          .Value(u"SERVICE_ADAPTER", SERVICE_ADAPTER, u"A driver of an adapter.")
          .Value(u"SERVICE_RECOGNIZER_DRIVER", SERVICE_RECOGNIZER_DRIVER,
                 u"A driver that recognizes file systems.")
          .Value(u"SERVICE_DRIVER", SERVICE_DRIVER, u"Any driver but those of adapters.")
          .Value(u"SERVICE_WIN32_OWN_PROCESS", SERVICE_WIN32_OWN_PROCESS, u"A program of its own.")
          .Value(u"SERVICE_WIN32_SHARE_PROCESS", SERVICE_WIN32_SHARE_PROCESS,
                 u"A part of a program with several services.")
          .Value(u"SERVICE_WIN32", SERVICE_WIN32, u"A program of either kind.")
          .Value(u"SERVICE_INTERACTIVE_PROCESS", SERVICE_INTERACTIVE_PROCESS,
                 u"A program that may use the desktop.")
          .Value(u"SERVICE_TYPE_ALL", SERVICE_TYPE_ALL, u"All of these.");
  return table;
}

const Enumeration& DescribeEnumeration(ServiceStartTypeEnum) {
  static const Enumeration table =
      DeclareEnumeration<ServiceStartTypeEnum>(u"ServiceStartTypeEnum",
                                               u"When a service is started.")
          .Value(u"SERVICE_BOOT_START", SERVICE_BOOT_START, u"By the boot loader; for drivers.")
          .Value(u"SERVICE_SYSTEM_START", SERVICE_SYSTEM_START,
                 u"While the system starts; for drivers.")
          .Value(u"SERVICE_AUTO_START", SERVICE_AUTO_START, u"When the system has started.")
          .Value(u"SERVICE_DEMAND_START", SERVICE_DEMAND_START, u"When somebody starts it.")
          .Value(u"SERVICE_DISABLED", SERVICE_DISABLED, u"Never.");
  return table;
}

const Enumeration& DescribeEnumeration(ServiceErrorControlEnum) {
  static const Enumeration table =
      DeclareEnumeration<ServiceErrorControlEnum>(
          u"ServiceErrorControlEnum",
          u"How serious it is that a service does not start with the system.")
          .Value(u"SERVICE_ERROR_IGNORE", SERVICE_ERROR_IGNORE, u"Not at all.")
          .Value(u"SERVICE_ERROR_NORMAL", SERVICE_ERROR_NORMAL, u"It is logged.")
          .Value(u"SERVICE_ERROR_SEVERE", SERVICE_ERROR_SEVERE,
                 u"The last good configuration is started.")
          .Value(u"SERVICE_ERROR_CRITICAL", SERVICE_ERROR_CRITICAL,
                 u"The same, and without one the start fails.");
  return table;
}

const Enumeration& DescribeEnumeration(ServiceStatesMaskEnum) {
  static const Enumeration table =
      DeclareEnumeration<ServiceStatesMaskEnum>(u"ServiceStatesMaskEnum",
                                                u"Which services are listed.")
          .Value(u"SERVICE_ACTIVE", SERVICE_ACTIVE, u"Those that are not stopped.")
          .Value(u"SERVICE_INACTIVE", SERVICE_INACTIVE, u"Those that are stopped.")
          .Value(u"SERVICE_STATE_ALL", SERVICE_STATE_ALL, u"All of them.");
  return table;
}

const Enumeration& DescribeEnumeration(ServiceControlsEnum) {
  static const Enumeration table =
      DeclareEnumeration<ServiceControlsEnum>(u"ServiceControlsEnum", u"What a service is told.")
          .Value(u"SERVICE_CONTROL_STOP", SERVICE_CONTROL_STOP, u"To stop.")
          .Value(u"SERVICE_CONTROL_PAUSE", SERVICE_CONTROL_PAUSE, u"To pause.")
          .Value(u"SERVICE_CONTROL_CONTINUE", SERVICE_CONTROL_CONTINUE, u"To go on after a pause.")
          .Value(u"SERVICE_CONTROL_INTERROGATE", SERVICE_CONTROL_INTERROGATE,
                 u"To tell its status.")
          .Value(u"SERVICE_CONTROL_SHUTDOWN", SERVICE_CONTROL_SHUTDOWN,
                 u"That the computer shuts down.")
          .Value(u"SERVICE_CONTROL_PARAMCHANGE", SERVICE_CONTROL_PARAMCHANGE,
                 u"To read its parameters anew.")
          .Value(u"SERVICE_CONTROL_NETBINDADD", SERVICE_CONTROL_NETBINDADD,
                 u"That a network binding came.")
          .Value(u"SERVICE_CONTROL_NETBINDREMOVE", SERVICE_CONTROL_NETBINDREMOVE,
                 u"That a network binding went.")
          .Value(u"SERVICE_CONTROL_NETBINDENABLE", SERVICE_CONTROL_NETBINDENABLE,
                 u"That a network binding was enabled.")
          .Value(u"SERVICE_CONTROL_NETBINDDISABLE", SERVICE_CONTROL_NETBINDDISABLE,
                 u"That a network binding was disabled.");
  return table;
}

}  // namespace veldmark
