#include "security/SidType.h"

#include "automation/Declare.h"

namespace veldmark {

const Enumeration& DescribeEnumeration(SidTypeEnum) {
  static const Enumeration table =
      DeclareEnumeration<SidTypeEnum>(u"SidTypeEnum", u"What a SID stands for.")
          .Value(u"SidTypeUser", SidTypeUser, u"A user.")
          .Value(u"SidTypeGroup", SidTypeGroup, u"A global group.")
          .Value(u"SidTypeDomain", SidTypeDomain, u"A domain.")
          .Value(u"SidTypeAlias", SidTypeAlias, u"A local group.")
          .Value(u"SidTypeWellKnownGroup", SidTypeWellKnownGroup,
                 u"A group that every computer has.")
          .Value(u"SidTypeDeletedAccount", SidTypeDeletedAccount, u"An account that was deleted.")
          .Value(u"SidTypeInvalid", SidTypeInvalid, u"No SID of any account.")
          .Value(u"SidTypeUnknown", SidTypeUnknown, u"Not known.")
          .Value(u"SidTypeComputer", SidTypeComputer, u"A computer.");
  return table;
}

}  // namespace veldmark
