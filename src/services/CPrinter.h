#pragma once

#include "frame/Counted.h"
#include "platform/automation/Object.h"
#include "platform/automation/Text.h"

namespace veldmark {

/// A printer of a computer.
class CPrinter : public Exported<CPrinter>, Counted<Counter::kPrinter> {
 public:
  static const Interface& Describe();

  Text PrinterName;
};

}  // namespace veldmark
