#include "eventlog/CEventLogs.h"

#include "collections/CollectionTable.h"
#include "eventlog/CEventLog.h"
#include "eventlog/MessageModules.h"

namespace veldmark {

const Interface& CEventLogs::Describe() {
  static const Interface table =
      CollectionTable<CEventLogs>(u"CEventLogs", u"The event logs of a computer, found by name.")
          .Keyed(u"oEventLog");
  return table;
}

CollectionKey CEventLogs::KeyOf(CEventLog& event_log) {
  return CollectionKey::Encoded(event_log.LogName());
}

CEventLogs::~CEventLogs() {
  items_ = nullptr;
  ReleaseMessageModulesOfLastLog();
}

}  // namespace veldmark
