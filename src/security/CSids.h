#pragma once

#include "collections/CollectionClass.h"

namespace veldmark {

class CSid;

/// Security identifiers, found by their text in any case.
class CSids : public CollectionClass<CSids, CSid>, Counted<Counter::kSids> {
 public:
  static const Interface& Describe();
  static CollectionKey KeyOf(CSid& sid);
};

}  // namespace veldmark
