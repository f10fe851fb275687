#pragma once

#include "automation/Object.h"
#include "automation/Text.h"
#include "automation/Variant.h"
#include "registry/RegistryEnumerations.h"

namespace veldmark {

/// A value of a registry key, as it was when the key's values were listed.
class CRegValue : public Exported<CRegValue> {
 public:
  static const Interface& Describe();

  Text ParentKey;  ///< the path of its key
  Text Name;       ///< empty for the default value of the key
  RegValueTypes ValueType = REG_NONE;
  Variant Value;  ///< see `ListedValueOf`
};

}  // namespace veldmark
