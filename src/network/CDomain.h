#pragma once

#include "apartment/Counted.h"
#include "automation/Object.h"
#include "automation/Text.h"

namespace veldmark {

/// A domain or workgroup.
class CDomain : public Exported<CDomain>, Counted<Counter::kDomain> {
 public:
  static const Interface& Describe();

  Text DomainName;
};

}  // namespace veldmark
