#pragma once

#include "collections/CollectionClass.h"

namespace veldmark {

class CDrive;

/// The drives of a computer, found by letter in any case.
class CDrives : public CollectionClass<CDrives, CDrive>, Counted<Counter::kDrives> {
 public:
  static const Interface& Describe();
  static CollectionKey KeyOf(CDrive& drive);

  /// Nothing where there is no such drive; `Err` tells.
  Ref<CDrive> Item(Variant& vntIndexKey);
};

}  // namespace veldmark
