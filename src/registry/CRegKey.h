#pragma once

#include "platform/automation/Object.h"
#include "platform/automation/Text.h"

namespace veldmark {

/// A registry key.
class CRegKey : public Exported<CRegKey> {
 public:
  static const Interface& Describe();

  Text Name;
};

}  // namespace veldmark
