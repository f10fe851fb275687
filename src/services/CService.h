#pragma once

#include "apartment/Counted.h"
#include "automation/Object.h"
#include "automation/Text.h"

namespace veldmark {

/// A service of a computer.
class CService : public Exported<CService>, Counted<Counter::kService> {
 public:
  static const Interface& Describe();

  Text ServiceName;
};

}  // namespace veldmark
