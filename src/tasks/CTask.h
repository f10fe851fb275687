#pragma once

#include "platform/automation/Object.h"
#include "platform/automation/Text.h"

namespace veldmark {

/// A scheduled task.
class CTask : public Exported<CTask> {
 public:
  static const Interface& Describe();

  Text Name;
};

}  // namespace veldmark
