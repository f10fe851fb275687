#include "platform/windows/WindowsPlatform.h"

#include "platform/windows/WindowsFileSystem.h"
#include "platform/windows/WindowsMessages.h"
#include "platform/windows/WindowsNetworkProvider.h"
#include "platform/windows/WindowsRegistry.h"
#include "platform/windows/WindowsSystem.h"
#include "platform/windows/WindowsTimers.h"

namespace veldmark {

Platform& WindowsPlatform() {
  static WindowsFileSystem files;
  static WindowsNetworkProvider network_provider;
  static WindowsMessages messages;
  static WindowsRegistry registry;
  static WindowsSystem system;
  static WindowsTimers timers;
  static Platform platform{files, network_provider, messages, registry, system, timers};
  return platform;
}

}  // namespace veldmark
