#pragma once

#include "collections/CollectionClass.h"

namespace veldmark {

class CServer;

/// Servers, found by name.
class CServers : public KeyedCollectionClass<CServers, CServer>, Counted<Counter::kServers> {
 public:
  static const Interface& Describe();
  static CollectionKey KeyOf(CServer& server);

  /// False for every key, also that of a server in the list: callers rely on it. `ItemByKey` tells.
  bool ContainsKey(Variant& vntIndexKey);
};

}  // namespace veldmark
