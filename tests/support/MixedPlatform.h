#pragma once

#include "platform/operations/Platform.h"

namespace veldmark {

/// The platform with another provider of network connections, or another security.
inline Platform Mixed(const Platform& whole, NetworkProvider& provider, Security& security) {
  return {whole.files,
          provider,
          whole.messages,
          whole.registry,
          whole.system,
          whole.timers,
          security,
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
inline Platform WithProvider(const Platform& whole, NetworkProvider& provider) {
  return Mixed(whole, provider, whole.security);
}
inline Platform WithSecurity(const Platform& whole, Security& security) {
  return Mixed(whole, whole.network_provider, security);
}

}  // namespace veldmark
