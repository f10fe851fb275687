#include "security/AceType.h"

#include "automation/Declare.h"

namespace veldmark {

const Enumeration& DescribeEnumeration(AceTypeEnum) {
  static const Enumeration table =
      DeclareEnumeration<AceTypeEnum>(u"AceTypeEnum",
                                      u"What an entry of an access control list does.")
          .Value(u"ACCESS_ALLOWED_ACE_TYPE", ACCESS_ALLOWED_ACE_TYPE, u"Allows.")
          .Value(u"ACCESS_DENIED_ACE_TYPE", ACCESS_DENIED_ACE_TYPE, u"Denies.")
          .Value(u"SYSTEM_AUDIT_ACE_TYPE", SYSTEM_AUDIT_ACE_TYPE, u"Has accesses logged.")
          .Value(u"SYSTEM_ALARM_ACE_TYPE", SYSTEM_ALARM_ACE_TYPE, u"Has accesses raise an alarm.")
          .Value(u"ACCESS_ALLOWED_COMPOUND_ACE_TYPE", ACCESS_ALLOWED_COMPOUND_ACE_TYPE,
                 u"Allows a server on behalf of a client.")
          .Value(u"ACCESS_ALLOWED_OBJECT_ACE_TYPE", ACCESS_ALLOWED_OBJECT_ACE_TYPE,
                 u"Allows for one kind of object or property.")
          .Value(u"ACCESS_DENIED_OBJECT_ACE_TYPE", ACCESS_DENIED_OBJECT_ACE_TYPE,
                 u"Denies for one kind of object or property.")
          .Value(u"SYSTEM_AUDIT_OBJECT_ACE_TYPE", SYSTEM_AUDIT_OBJECT_ACE_TYPE,
                 u"Has accesses to one kind of object logged.")
          .Value(u"SYSTEM_ALARM_OBJECT_ACE_TYPE", SYSTEM_ALARM_OBJECT_ACE_TYPE,
                 u"Has accesses to one kind of object raise an alarm.");
  return table;
}

}  // namespace veldmark
