#pragma once

#include "collections/CollectionClass.h"

namespace veldmark {

class CTask;

/// Scheduled tasks, found by name.
class CTasks : public KeyedCollectionClass<CTasks, CTask> {
 public:
  static const Interface& Describe();
  static CollectionKey KeyOf(CTask& task);
};

}  // namespace veldmark
