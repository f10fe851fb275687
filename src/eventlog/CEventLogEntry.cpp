#include "eventlog/CEventLogEntry.h"

#include "automation/Declare.h"

namespace veldmark {

const Interface& CEventLogEntry::Describe() {
  static const Interface table =
      Declare<CEventLogEntry>(u"CEventLogEntry", u"One event of an event log.");
  return table;
}

}  // namespace veldmark
