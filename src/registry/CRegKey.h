#pragma once

#include "automation/Object.h"
#include "automation/Text.h"

namespace veldmark {

/// A registry key.
class CRegKey : public Exported<CRegKey> {
 public:
  static const Interface& Describe();

  Text Name;
};

}  // namespace veldmark
