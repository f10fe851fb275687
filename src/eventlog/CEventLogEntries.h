#pragma once

#include "collections/CollectionClass.h"

namespace veldmark {

class CEventLogEntry;

/// The entries of an event log, in the order in which they were read.
class CEventLogEntries : public CollectionClass<CEventLogEntries, CEventLogEntry>,
                         Counted<Counter::kEventLogEntries> {
 public:
  static const Interface& Describe();
};

}  // namespace veldmark
