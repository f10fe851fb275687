#pragma once

#include "automation/Object.h"

namespace veldmark {

/// The registry of a computer.
class CRegistry : public Exported<CRegistry> {
 public:
  static const Interface& Describe();
};

}  // namespace veldmark
