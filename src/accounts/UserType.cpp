#include "accounts/UserType.h"

#include "automation/Declare.h"

namespace veldmark {

const Enumeration& DescribeEnumeration(UserTypeEnum) {
  static const Enumeration table =
      DeclareEnumeration<UserTypeEnum>(u"UserTypeEnum", u"The kinds of user account.")
          .Value(u"UT_LocalUser", UT_LocalUser, u"An account of a computer.")
          .Value(u"UT_GlobalUser", UT_GlobalUser, u"An account of a domain.")
          .Value(u"UT_AccountUnknown", UT_AccountUnknown, u"There is no such account.");
  return table;
}

}  // namespace veldmark
