#pragma once

#include "frame/Counted.h"
#include "platform/automation/Object.h"

namespace veldmark {

/// The network neighbourhood.
class CNetHood : public Exported<CNetHood>, Counted<Counter::kNetHood> {
 public:
  static const Interface& Describe();
};

}  // namespace veldmark
