#pragma once

#include "automation/Object.h"
#include "automation/Text.h"

namespace veldmark {

/// A scheduled task.
class CTask : public Exported<CTask> {
 public:
  static const Interface& Describe();

  Text Name;
};

}  // namespace veldmark
