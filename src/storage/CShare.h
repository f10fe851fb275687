#pragma once

#include "frame/Counted.h"
#include "platform/automation/Object.h"
#include "platform/automation/Text.h"

namespace veldmark {

/// A shared folder or device of a computer.
class CShare : public Exported<CShare>, Counted<Counter::kShare> {
 public:
  static const Interface& Describe();

  Text ShareName;
};

}  // namespace veldmark
