#pragma once

#include "apartment/Counted.h"
#include "automation/Object.h"

namespace veldmark {

class CDomains;
class CNetworks;

/// The network neighbourhood: where a walk from networks to domains and servers begins.
class CNetHood : public Exported<CNetHood>, Counted<Counter::kNetHood> {
 public:
  static const Interface& Describe();

  /// The domains of the first network of type `NET_LANMAN`. Raises 800402BD where there is none,
  /// and the platform's error as `CSupport::GetNetworks` and `GetDomains` do.
  Ref<CDomains> GetDomains();
  /// The networks that this computer knows; see `CSupport::GetNetworks`.
  Ref<CNetworks> GetNetworks();
};

}  // namespace veldmark
