#include "eventlog/EventLogType.h"

#include "automation/Declare.h"

namespace veldmark {

const Enumeration& DescribeEnumeration(EventLogTypesEnum) {
  static const Enumeration table =
      DeclareEnumeration<EventLogTypesEnum>(u"EventLogTypesEnum", u"What kind of event it is.")
          .Value(u"EVENTLOG_SUCCESS", EVENTLOG_SUCCESS, u"A success.")
          .Value(u"EVENTLOG_ERROR_TYPE", EVENTLOG_ERROR_TYPE, u"An error.")
          .Value(u"EVENTLOG_WARNING_TYPE", EVENTLOG_WARNING_TYPE, u"A warning.")
          .Value(u"EVENTLOG_INFORMATION_TYPE", EVENTLOG_INFORMATION_TYPE, u"An information.")
          .Value(u"EVENTLOG_AUDIT_SUCCESS", EVENTLOG_AUDIT_SUCCESS, u"An audited success.")
          .Value(u"EVENTLOG_AUDIT_FAILURE", EVENTLOG_AUDIT_FAILURE, u"An audited failure.");
  return table;
}

}  // namespace veldmark
