#pragma once

#include "collections/CollectionClass.h"

namespace veldmark {

class CPrinter;

/// Printers, found by name.
class CPrinters : public KeyedCollectionClass<CPrinters, CPrinter>, Counted<Counter::kPrinters> {
 public:
  static const Interface& Describe();
  static CollectionKey KeyOf(CPrinter& printer);

  /// As in the other classes, with `Err` cleared before and after.
  Ref<CPrinter> Add(CPrinter* oPrinter);
};

}  // namespace veldmark
