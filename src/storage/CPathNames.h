#pragma once

#include "collections/CollectionClass.h"

namespace veldmark {

class CPathName;

/// The lines of a folder listing, found by path.
class CPathNames : public KeyedCollectionClass<CPathNames, CPathName>,
                   Counted<Counter::kPathNames> {
 public:
  static const Interface& Describe();
  static CollectionKey KeyOf(CPathName& path_name);
};

}  // namespace veldmark
