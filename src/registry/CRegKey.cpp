#include "registry/CRegKey.h"

#include "automation/Declare.h"

namespace veldmark {

const Interface& CRegKey::Describe() {
  static const Interface table =
      Declare<CRegKey>(u"CRegKey", u"A registry key.")
          .Stored<&CRegKey::Name>(u"Name", u"The last part of the path.");
  return table;
}

}  // namespace veldmark
