#pragma once

#include "apartment/Counted.h"
#include "automation/Object.h"

namespace veldmark {

/// The network neighbourhood.
class CNetHood : public Exported<CNetHood>, Counted<Counter::kNetHood> {
 public:
  static const Interface& Describe();
};

}  // namespace veldmark
