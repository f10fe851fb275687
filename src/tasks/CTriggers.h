#pragma once

#include "collections/CollectionClass.h"

namespace veldmark {

class CTrigger;

/// The triggers of a task, found by their description.
class CTriggers : public KeyedCollectionClass<CTriggers, CTrigger> {
 public:
  static const Interface& Describe();
  static CollectionKey KeyOf(CTrigger& trigger);
};

}  // namespace veldmark
