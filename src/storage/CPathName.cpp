#include "storage/CPathName.h"

#include "automation/Declare.h"

namespace veldmark {

const Interface& CPathName::Describe() {
  static const Interface table =
      Declare<CPathName>(u"CPathName", u"One line of a folder listing.")
          .Stored<&CPathName::PathName>(u"PathName", u"Full plain path.")
          .Stored<&CPathName::IsDirectory>(u"IsDirectory", u"True for a folder.");
  return table;
}

}  // namespace veldmark
