#pragma once

#include "platform/operations/Platform.h"

namespace veldmark {

/// The platform with another provider of network connections.
inline Platform WithProvider(const Platform& whole, NetworkProvider& provider) {
  return {whole.files,
          provider,
          whole.messages,
          whole.registry,
          whole.system,
          whole.timers,
          whole.security,
          whole.network_management,
          whole.version_information,
          whole.multimedia,
          whole.accounts,
          whole.authority,
          whole.sockets};
}

/// The platform with another account database.
inline Platform WithAccounts(const Platform& whole, AccountManagement& accounts) {
  return {whole.files,
          whole.network_provider,
          whole.messages,
          whole.registry,
          whole.system,
          whole.timers,
          whole.security,
          whole.network_management,
          whole.version_information,
          whole.multimedia,
          accounts,
          whole.authority,
          whole.sockets};
}

}  // namespace veldmark
