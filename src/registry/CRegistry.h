#pragma once

#include "automation/Object.h"
#include "automation/Text.h"
#include "automation/Variant.h"
#include "registry/RegistryEnumerations.h"

namespace veldmark {

class CRegKey;
class CRegKeys;

/// The registry of a computer, of this one until it is told another. Its members raise the
/// platform's status; see the methods of `CSupport` that they stand for.
class CRegistry : public Exported<CRegistry> {
 public:
  static const Interface& Describe();

  /// Stores the name alone, with "\\" before it: nothing is connected to yet.
  void ConnectToRemoteRegistry(const Text& MachineName);
  Ref<CRegKeys> GetRegKeys(HKEY_VALUES hKey);
  Ref<CRegKey> GetRegKey(HKEY_VALUES hKey, const Text& KeyName);
  Variant GetValue(HKEY_VALUES hKey, const Text& KeyName, const Text& ValueName,
                   RegValueTypes ValueType);
  bool SaveValue(HKEY_VALUES hKey, const Text& KeyName, const Text& ValueName,
                 RegValueTypes ValueType, const Variant& vntValue);

 private:
  Text machine_name_;
};

}  // namespace veldmark
