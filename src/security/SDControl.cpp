#include "security/SDControl.h"

#include "automation/Declare.h"

namespace veldmark {

const Enumeration& DescribeEnumeration(SDControlEnum) {
  static const Enumeration table =
      DeclareEnumeration<SDControlEnum>(u"SDControlEnum",
                                        u"The bits of the control word of a security descriptor.")
          .Value(u"SDC_OWNER_DEFAULTED", SDC_OWNER_DEFAULTED, u"The owner came by default.")
          .Value(u"SDC_GROUP_DEFAULTED", SDC_GROUP_DEFAULTED, u"The group came by default.")
          .Value(u"SDC_DACL_PRESENT", SDC_DACL_PRESENT,
                 u"It has a discretionary list, which may be null.")
          .Value(u"SDC_DACL_DEFAULTED", SDC_DACL_DEFAULTED,
                 u"The discretionary list came by default.")
          .Value(u"SDC_SACL_PRESENT", SDC_SACL_PRESENT, u"It has a system list.")
          .Value(u"SDC_SACL_DEFAULTED", SDC_SACL_DEFAULTED, u"The system list came by default.")
          .Value(u"SDC_DACL_AUTO_INHERIT_REQ", SDC_DACL_AUTO_INHERIT_REQ,
                 u"The discretionary list is to be handed down.")
          .Value(u"SDC_SACL_AUTO_INHERIT_REQ", SDC_SACL_AUTO_INHERIT_REQ,
                 u"The system list is to be handed down.")
          .Value(u"SDC_DACL_AUTO_INHERITED", SDC_DACL_AUTO_INHERITED,
                 u"The discretionary list was handed down.")
          .Value(u"SDC_SACL_AUTO_INHERITED", SDC_SACL_AUTO_INHERITED,
                 u"The system list was handed down.")
          .Value(u"SDC_DACL_PROTECTED", SDC_DACL_PROTECTED,
                 u"The discretionary list inherits nothing.")
          .Value(u"SDC_SACL_PROTECTED", SDC_SACL_PROTECTED, u"The system list inherits nothing.")
          .Value(u"SDC_SELF_RELATIVE", SDC_SELF_RELATIVE, u"All parts lie in one block.");
  return table;
}

}  // namespace veldmark
