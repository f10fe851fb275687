#include "registry/CRegValue.h"

#include "automation/Declare.h"

namespace veldmark {

const Interface& CRegValue::Describe() {
  static const Interface table =
      Declare<CRegValue>(u"CRegValue", u"A value of a registry key.")
          .Stored<&CRegValue::Name>(u"Name", u"Its name; empty for the default value of the key.");
  return table;
}

}  // namespace veldmark
