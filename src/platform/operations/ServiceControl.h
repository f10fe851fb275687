#pragma once

#include "platform/operations/Types.h"

namespace veldmark {

// Services of a computer, kept by its service control manager.
class ServiceControl {
 public:
  virtual ~ServiceControl() = default;
};

}  // namespace veldmark
