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

}  // namespace veldmark
