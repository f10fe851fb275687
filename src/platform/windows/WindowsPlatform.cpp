#include "platform/windows/WindowsPlatform.h"

#include "platform/windows/WindowsAccountManagement.h"
#include "platform/windows/WindowsEventLog.h"
#include "platform/windows/WindowsFileSystem.h"
#include "platform/windows/WindowsLocalSecurityAuthority.h"
#include "platform/windows/WindowsMessages.h"
#include "platform/windows/WindowsMultimedia.h"
#include "platform/windows/WindowsNetworkManagement.h"
#include "platform/windows/WindowsNetworkProvider.h"
#include "platform/windows/WindowsPrinting.h"
#include "platform/windows/WindowsRegistry.h"
#include "platform/windows/WindowsSecurity.h"
#include "platform/windows/WindowsServiceControl.h"
#include "platform/windows/WindowsSockets.h"
#include "platform/windows/WindowsSystem.h"
#include "platform/windows/WindowsTaskScheduler.h"
#include "platform/windows/WindowsTimers.h"
#include "platform/windows/WindowsVersionInformation.h"

namespace veldmark {

Platform& WindowsPlatform() {
  static WindowsFileSystem files;
  static WindowsNetworkProvider network_provider;
  static WindowsMessages messages;
  static WindowsRegistry registry;
  static WindowsSystem system;
  static WindowsTimers timers;
  static WindowsSecurity security;
  static WindowsNetworkManagement network_management;
  static WindowsVersionInformation version_information;
  static WindowsMultimedia multimedia;
  static WindowsAccountManagement accounts;
  static WindowsLocalSecurityAuthority authority;
  static WindowsSockets sockets;
  static WindowsServiceControl services;
  static WindowsPrinting printers;
  static WindowsEventLog event_logs;
  static WindowsTaskScheduler tasks;
  static Platform platform{files,
                           network_provider,
                           messages,
                           registry,
                           system,
                           timers,
                           security,
                           network_management,
                           version_information,
                           multimedia,
                           accounts,
                           authority,
                           sockets,
                           services,
                           printers,
                           event_logs,
                           tasks};
  return platform;
}

}  // namespace veldmark
