#pragma once

#include "platform/operations/Platform.h"

namespace veldmark {

/// Families of a test's own; null where the platform keeps its own.
struct Replacements {
  NetworkProvider* network_provider = nullptr;
  Security* security = nullptr;
  AccountManagement* accounts = nullptr;
  Printing* printers = nullptr;
  EventLog* event_logs = nullptr;
};

/// The platform with other families in these places.
inline Platform Mixed(const Platform& whole, const Replacements& own) {
  return {whole.files,
          own.network_provider == nullptr ? whole.network_provider : *own.network_provider,
          whole.messages,
          whole.registry,
          whole.system,
          whole.timers,
          own.security == nullptr ? whole.security : *own.security,
          whole.network_management,
          whole.version_information,
          whole.multimedia,
          own.accounts == nullptr ? whole.accounts : *own.accounts,
          whole.authority,
          whole.sockets,
          whole.services,
          own.printers == nullptr ? whole.printers : *own.printers,
          own.event_logs == nullptr ? whole.event_logs : *own.event_logs,
          whole.tasks};
}

}  // namespace veldmark
