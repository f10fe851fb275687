#pragma once

#include "collections/CollectionClass.h"

namespace veldmark {

class CVolume;

/// Volumes, found by name.
class CVolumes : public KeyedCollectionClass<CVolumes, CVolume>, Counted<Counter::kVolumes> {
 public:
  static const Interface& Describe();
  static CollectionKey KeyOf(CVolume& volume);
};

}  // namespace veldmark
