#include "eventlog/CEventLog.h"

#include "automation/Declare.h"
#include "eventlog/MessageModules.h"

namespace veldmark {

const Interface& CEventLog::Describe() {
  static const Interface table =
      Declare<CEventLog>(u"CEventLog", u"An event log of a computer.")
          .Get<&CEventLog::LogName>(u"LogName", u"Its name, \"System\".");
  return table;
}

CEventLog::~CEventLog() { ReleaseMessageModulesOfLastLog(); }

}  // namespace veldmark
