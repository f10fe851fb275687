#pragma once

#include "frame/Counted.h"
#include "platform/automation/Object.h"
#include "platform/automation/Text.h"

namespace veldmark {

/// A service of a computer.
class CService : public Exported<CService>, Counted<Counter::kService> {
 public:
  static const Interface& Describe();

  Text ServiceName;
};

}  // namespace veldmark
