#pragma once

#include "frame/Counted.h"
#include "platform/automation/Object.h"

namespace veldmark {

/// A discretionary access control list.
class CAcl : public Exported<CAcl>, Counted<Counter::kAcl> {
 public:
  static const Interface& Describe();
};

}  // namespace veldmark
