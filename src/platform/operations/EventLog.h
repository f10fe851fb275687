#pragma once

#include "platform/operations/Types.h"

namespace veldmark {

// Event logs: live ones of any computer, and backup files.
class EventLog {
 public:
  virtual ~EventLog() = default;
};

}  // namespace veldmark
