#include "accounts/GroupType.h"

#include "automation/Declare.h"

namespace veldmark {

const Enumeration& DescribeEnumeration(GroupTypeEnum) {
  static const Enumeration table =
      DeclareEnumeration<GroupTypeEnum>(u"GroupTypeEnum", u"The kinds of group.")
          .Value(u"GT_LocalGroup", GT_LocalGroup, u"A group of a computer.")
          .Value(u"GT_GlobalGroup", GT_GlobalGroup, u"A group of a domain.")
          .Value(u"GT_WellKnownGroup", GT_WellKnownGroup, u"A group that every computer has.")
          .Value(u"GT_AccountUnknown", GT_AccountUnknown, u"There is no such account.");
  return table;
}

}  // namespace veldmark
