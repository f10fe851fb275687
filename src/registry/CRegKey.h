#pragma once

#include "automation/Object.h"
#include "automation/Text.h"
#include "automation/Variant.h"
#include "registry/RegistryEnumerations.h"

namespace veldmark {

class CRegKeys;
class CRegValues;
class CSecurityDescriptor;

/// A registry key, told by its root, its path and its computer. It holds no handle: each member
/// opens the key and closes it again, and raises the platform's status where that fails.
class CRegKey : public Exported<CRegKey> {
 public:
  static const Interface& Describe();

  Ref<CRegKeys> GetSubKeys();
  Ref<CRegValues> GetValues();
  /// See `CSupport::GetRegValue`.
  Variant GetValue(const Text& ValueName, RegValueTypes ValueType);
  /// See `CSupport::GetRegKeySD`.
  Ref<CSecurityDescriptor> GetSecurityDescriptor();

  Text FullName;       ///< the path below the root; empty for the root itself
  HKEY_VALUES hKey{};  ///< the root
  Text Name;           ///< the last part of the path
  Text MachineName;    ///< "\\srv"; empty for this computer

  /// The default value as a text, read when the key was.
  Variant GetDefaultValue() const { return Variant(default_value_); }
  /// Takes any value that has a text. The registry isn't written.
  void PutDefaultValue(const Variant& value);

 private:
  Text default_value_;
};

}  // namespace veldmark
