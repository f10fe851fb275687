#pragma once

#include "apartment/Counted.h"
#include "automation/Object.h"
#include "automation/Text.h"

namespace veldmark {

/// A printer of a computer.
class CPrinter : public Exported<CPrinter>, Counted<Counter::kPrinter> {
 public:
  static const Interface& Describe();

  Text PrinterName;
};

}  // namespace veldmark
