#include "security/AceFlags.h"

#include "automation/Declare.h"

namespace veldmark {

const Enumeration& DescribeEnumeration(AceFlagsEnum) {
  static const Enumeration table =
      DeclareEnumeration<AceFlagsEnum>(u"AceFlagsEnum",
                                       u"Where an entry of an access control list applies.")
          .Value(u"OBJECT_INHERIT_ACE", OBJECT_INHERIT_ACE, u"Files and their like inherit it.")
          .Value(u"CONTAINER_INHERIT_ACE", CONTAINER_INHERIT_ACE,
                 u"Folders and their like inherit it.")
          .Value(u"NO_PROPAGATE_INHERIT_ACE", NO_PROPAGATE_INHERIT_ACE,
                 u"It is inherited one level deep.")
          .Value(u"INHERIT_ONLY_ACE", INHERIT_ONLY_ACE, u"It does not apply to the object itself.")
          .Value(u"INHERITED_ACE", INHERITED_ACE, u"It was inherited.")
          .Value(u"VALID_INHERIT_FLAGS", VALID_INHERIT_FLAGS, u"All of these.");
  return table;
}

}  // namespace veldmark
