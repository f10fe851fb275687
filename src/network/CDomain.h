#pragma once

#include "frame/Counted.h"
#include "platform/automation/Object.h"
#include "platform/automation/Text.h"

namespace veldmark {

/// A domain or workgroup.
class CDomain : public Exported<CDomain>, Counted<Counter::kDomain> {
 public:
  static const Interface& Describe();

  Text DomainName;
};

}  // namespace veldmark
