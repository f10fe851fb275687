#pragma once

#include "platform/operations/Types.h"

namespace veldmark {

// Scheduled tasks of a computer.
class TaskScheduler {
 public:
  virtual ~TaskScheduler() = default;
};

}  // namespace veldmark
