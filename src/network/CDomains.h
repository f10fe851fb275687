#pragma once

#include "collections/CollectionClass.h"

namespace veldmark {

class CDomain;

/// Domains, found by name.
class CDomains : public KeyedCollectionClass<CDomains, CDomain>, Counted<Counter::kDomains> {
 public:
  static const Interface& Describe();
  static CollectionKey KeyOf(CDomain& domain);
};

}  // namespace veldmark
