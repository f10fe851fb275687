#include "storage/DriveType.h"

#include "automation/Declare.h"

namespace veldmark {

const Enumeration& DescribeEnumeration(DriveTypeConst) {
  static const Enumeration table =
      DeclareEnumeration<DriveTypeConst>(u"DriveTypeConst", u"The kinds of drive.")
          .Value(u"DT_Unknown", DT_Unknown, u"There is no such drive.")
          .Value(u"DT_Removable", DT_Removable, u"Its medium can be taken out.")
          .Value(u"DT_Fixed", DT_Fixed, u"A fixed disk.")
          .Value(u"DT_Remote", DT_Remote, u"A share under a drive letter.")
          .Value(u"DT_CDRom", DT_CDRom, u"A drive for compact discs.")
          .Value(u"DT_RamDisk", DT_RamDisk, u"A disk in memory.");
  return table;
}

}  // namespace veldmark
