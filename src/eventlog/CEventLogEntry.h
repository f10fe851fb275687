#pragma once

#include "apartment/Counted.h"
#include "automation/Object.h"

namespace veldmark {

/// One event of an event log.
class CEventLogEntry : public Exported<CEventLogEntry>, Counted<Counter::kEventLogEntry> {
 public:
  static const Interface& Describe();
};

}  // namespace veldmark
