#pragma once

#include <utility>

#include "apartment/Counted.h"
#include "automation/Object.h"
#include "automation/Text.h"

namespace veldmark {

/// An event log of a computer.
class CEventLog : public Exported<CEventLog>, Counted<Counter::kEventLog> {
 public:
  static const Interface& Describe();
  /// The last log alive ends the message files' stay.
  ~CEventLog() override;

  /// As put by the library itself; clients only read it.
  const Text& LogName() const { return log_name_; }
  void SetLogName(Text log_name) { log_name_ = std::move(log_name); }

 private:
  Text log_name_;
};

}  // namespace veldmark
