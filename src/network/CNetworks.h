#pragma once

#include "collections/CollectionClass.h"

namespace veldmark {

class CNetwork;

/// Networks, found by name in any case.
class CNetworks : public CollectionClass<CNetworks, CNetwork>, Counted<Counter::kNetworks> {
 public:
  static const Interface& Describe();
  static CollectionKey KeyOf(CNetwork& network);
};

}  // namespace veldmark
