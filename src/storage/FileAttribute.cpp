#include "storage/FileAttribute.h"

#include "automation/Declare.h"

namespace veldmark {

const Enumeration& DescribeEnumeration(FileAttribute) {
  static const Enumeration table =
      DeclareEnumeration<FileAttribute>(u"FileAttribute", u"The attributes of a file or folder.")
          .Value(u"FA_Normal", FA_Normal, u"None.")
          .Value(u"FA_ReadOnly", FA_ReadOnly, u"Can't be written or deleted.")
          .Value(u"FA_Hidden", FA_Hidden, u"Left out of ordinary listings.")
          .Value(u"FA_System", FA_System, u"Belongs to the operating system.")
          .Value(u"FA_Directory", FA_Directory, u"A folder.")
          .Value(u"FA_Archive", FA_Archive, u"Changed since the last backup.")
          .Value(u"FA_Alias", FA_Alias, u"A link or junction.")
          .Value(u"FA_Compressed", FA_Compressed, u"Stored compressed.");
  return table;
}

}  // namespace veldmark
