#pragma once

#include "frame/Counted.h"
#include "platform/automation/Object.h"

namespace veldmark {

/// One entry of an access control list.
class CAce : public Exported<CAce>, Counted<Counter::kAce> {
 public:
  static const Interface& Describe();
};

}  // namespace veldmark
