#include "storage/ShareType.h"

#include "automation/Declare.h"

namespace veldmark {

const Enumeration& DescribeEnumeration(ShareTypeEnum) {
  static const Enumeration table =
      DeclareEnumeration<ShareTypeEnum>(u"ShareTypeEnum", u"What is shared.")
          .Value(u"ST_DISKTREE", ST_DISKTREE, u"A folder.")
          .Value(u"ST_PRINTQ", ST_PRINTQ, u"A printer.")
          .Value(u"ST_DEVICE", ST_DEVICE, u"A communication device.")
          .Value(u"ST_IPC", ST_IPC, u"The share for calls between programs.")
          .Value(u"ST_SPECIAL", ST_SPECIAL,
                 u"A flag beside the others: shared for administration.");
  return table;
}

}  // namespace veldmark
