#pragma once

#include "platform/operations/Types.h"

namespace veldmark {

// Printers of a computer.
class Printing {
 public:
  virtual ~Printing() = default;
};

}  // namespace veldmark
