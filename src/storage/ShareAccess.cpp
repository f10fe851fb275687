#include "storage/ShareAccess.h"

#include "automation/Declare.h"

namespace veldmark {

const Enumeration& DescribeEnumeration(ShareAccessEnum) {
  static const Enumeration table =
      DeclareEnumeration<ShareAccessEnum>(u"ShareAccessEnum",
                                          u"The rights of a share with a password of its own.")
          .Value(u"SA_ACCESS_NONE", SA_ACCESS_NONE, u"No access.")
          .Value(u"SA_ACCESS_READ", SA_ACCESS_READ, u"Reading.")
          .Value(u"SA_ACCESS_WRITE", SA_ACCESS_WRITE, u"Writing.")
          .Value(u"SA_ACCESS_CREATE", SA_ACCESS_CREATE, u"Creating.")
          .Value(u"SA_ACCESS_EXEC", SA_ACCESS_EXEC, u"Running programs.")
          .Value(u"SA_ACCESS_DELETE", SA_ACCESS_DELETE, u"Deleting.")
          .Value(u"SA_ACCESS_ATRIB", SA_ACCESS_ATRIB, u"Changing attributes.")
          .Value(u"SA_ACCESS_PERM", SA_ACCESS_PERM, u"Changing permissions.")
          .Value(u"SA_ACCESS_ALL", SA_ACCESS_ALL, u"All of these.")
          .Value(u"SA_ACCESS_GROUP", SA_ACCESS_GROUP, u"The rights are a group's.");
  return table;
}

}  // namespace veldmark
