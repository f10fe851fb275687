#pragma once

#include "collections/CollectionClass.h"

namespace veldmark {

class CShare;

/// The shares of a computer, found by name.
class CShares : public KeyedCollectionClass<CShares, CShare>, Counted<Counter::kShares> {
 public:
  static const Interface& Describe();
  static CollectionKey KeyOf(CShare& share);
};

}  // namespace veldmark
