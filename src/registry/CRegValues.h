#pragma once

#include "collections/CollectionClass.h"

namespace veldmark {

class CRegValue;

/// The values of a registry key, found by name.
class CRegValues : public KeyedCollectionClass<CRegValues, CRegValue> {
 public:
  static const Interface& Describe();
  static CollectionKey KeyOf(CRegValue& reg_value);

  Ref<CRegValue> Add(Ref<CRegValue>& oRegValue);
};

}  // namespace veldmark
