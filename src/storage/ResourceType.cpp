#include "storage/ResourceType.h"

#include "automation/Declare.h"

namespace veldmark {

const Enumeration& DescribeEnumeration(ResourceTypeEnum) {
  static const Enumeration table =
      DeclareEnumeration<ResourceTypeEnum>(u"ResourceTypeEnum", u"The kinds of network resource.")
          .Value(u"RESOURCETYPE_ANY", RESOURCETYPE_ANY, u"Any resource.")
          .Value(u"RESOURCETYPE_DISK", RESOURCETYPE_DISK, u"A share of files.")
          .Value(u"RESOURCETYPE_PRINT", RESOURCETYPE_PRINT, u"A printer.")
          .Value(u"RESOURCETYPE_RESERVED", RESOURCETYPE_RESERVED, u"Reserved.")
          .Value(u"RESOURCETYPE_UNKNOWN", RESOURCETYPE_UNKNOWN, u"Not known.");
  return table;
}

}  // namespace veldmark
