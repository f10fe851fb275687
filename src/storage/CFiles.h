#pragma once

#include "collections/CollectionClass.h"

namespace veldmark {

class CFile;

/// Files, found by name.
class CFiles : public KeyedCollectionClass<CFiles, CFile>, Counted<Counter::kFiles> {
 public:
  static const Interface& Describe();
  static CollectionKey KeyOf(CFile& file);
};

}  // namespace veldmark
