#pragma once

#include "collections/CollectionClass.h"

namespace veldmark {

class CEventLog;

/// The event logs of a computer, found by name.
class CEventLogs : public KeyedCollectionClass<CEventLogs, CEventLog>,
                   Counted<Counter::kEventLogs> {
 public:
  static const Interface& Describe();
  static CollectionKey KeyOf(CEventLog& event_log);

  /// Ends the message files' stay too when one last log is left alive.
  ~CEventLogs() override;
};

}  // namespace veldmark
