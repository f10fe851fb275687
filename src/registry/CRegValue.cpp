#include "registry/CRegValue.h"

#include "automation/Declare.h"

namespace veldmark {

const Interface& CRegValue::Describe() {
  static const Interface table =
      Declare<CRegValue>(u"CRegValue", u"A value of a registry key.")
          .Stored<&CRegValue::ParentKey>(u"ParentKey", u"The path of its key below the root.")
          .Stored<&CRegValue::Name>(u"Name", u"Its name; empty for the default value of the key.")
          .Stored<&CRegValue::ValueType>(u"ValueType", u"The type that it is stored as.")
          .Stored<&CRegValue::Value>(u"Value", u"What it held when it was listed.");
  return table;
}

}  // namespace veldmark
