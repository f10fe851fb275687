#pragma once

#include "frame/Counted.h"
#include "platform/automation/Object.h"

namespace veldmark {

/// One event of an event log.
class CEventLogEntry : public Exported<CEventLogEntry>, Counted<Counter::kEventLogEntry> {
 public:
  static const Interface& Describe();
};

}  // namespace veldmark
