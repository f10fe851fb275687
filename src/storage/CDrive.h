#pragma once

#include "frame/Counted.h"
#include "platform/automation/Object.h"
#include "platform/automation/Text.h"

namespace veldmark {

/// A drive of this computer.
class CDrive : public Exported<CDrive>, Counted<Counter::kDrive> {
 public:
  static const Interface& Describe();

  Text DriveLetter;
};

}  // namespace veldmark
