#pragma once

#include "collections/CollectionClass.h"

namespace veldmark {

class CRegKey;

/// Registry keys, found by their own name, the last part of the path.
class CRegKeys : public KeyedCollectionClass<CRegKeys, CRegKey> {
 public:
  static const Interface& Describe();
  static CollectionKey KeyOf(CRegKey& reg_key);

  Ref<CRegKey> Add(Ref<CRegKey>& oRegKey);
};

}  // namespace veldmark
