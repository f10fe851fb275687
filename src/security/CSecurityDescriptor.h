#pragma once

#include "frame/Counted.h"
#include "platform/automation/Object.h"

namespace veldmark {

/// Owner and discretionary access control list of a securable object.
class CSecurityDescriptor : public Exported<CSecurityDescriptor>,
                            Counted<Counter::kSecurityDescriptor> {
 public:
  static const Interface& Describe();
};

}  // namespace veldmark
