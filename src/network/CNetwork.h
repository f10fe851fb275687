#pragma once

#include "apartment/AsyncFetching.h"
#include "apartment/Counted.h"
#include "automation/Object.h"
#include "automation/Text.h"
#include "network/NetworkType.h"
#include "platform/operations/NetworkProvider.h"

namespace veldmark {

class CDomains;

/// A network of the network neighbourhood. With `AsyncFetch` on it passes on, by the event
/// DomainFound, what any walk of the apartment delivers by events.
class CNetwork : public AsyncFetching<CNetwork>, Counted<Counter::kNetwork> {
 public:
  static const Interface& Describe();

  /// The domains of the network of this name, which is looked up among the networks anew. With
  /// `AsyncFetch` they go out by DomainFound, and the list is empty. Raises 5 for a name that no
  /// network has, and the platform's error.
  Ref<CDomains> GetDomains();

  Text NetworkName;
  Text Comment;
  NetworkTypeEnum NetworkType{};  ///< 0 where the provider doesn't tell

  /// What the platform's record says of the network, without its texts.
  const NETRESOURCEW& Resource() const { return resource_; }
  void SetResource(const NETRESOURCEW& resource);

 private:
  /// Raises 13 for an object that is no `CDomain`.
  void OnObjectFound(Object& object, bool& cancel) override;

  NETRESOURCEW resource_{};
};

}  // namespace veldmark
