#pragma once

#include "automation/Object.h"
#include "automation/Text.h"

namespace veldmark {

/// A value of a registry key.
class CRegValue : public Exported<CRegValue> {
 public:
  static const Interface& Describe();

  Text Name;
};

}  // namespace veldmark
