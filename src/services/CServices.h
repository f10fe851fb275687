#pragma once

#include "collections/CollectionClass.h"

namespace veldmark {

class CService;

/// Services, found by their short name.
class CServices : public KeyedCollectionClass<CServices, CService>, Counted<Counter::kServices> {
 public:
  static const Interface& Describe();
  static CollectionKey KeyOf(CService& service);
};

}  // namespace veldmark
