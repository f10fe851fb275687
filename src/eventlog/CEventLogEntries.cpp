#include "eventlog/CEventLogEntries.h"

#include "collections/CollectionTable.h"
#include "eventlog/CEventLogEntry.h"

namespace veldmark {

const Interface& CEventLogEntries::Describe() {
  static const Interface table =
      CollectionTable<CEventLogEntries>(
          u"CEventLogEntries",
          u"The entries of an event log, in the order in which they were read.")
          .Plain(u"oEventLogEntry");
  return table;
}

}  // namespace veldmark
