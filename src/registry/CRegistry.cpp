#include "registry/CRegistry.h"

#include "apartment/CSupport.h"
#include "apartment/Errors.h"
#include "automation/Declare.h"
#include "registry/CRegKey.h"
#include "registry/CRegKeys.h"

namespace veldmark {
namespace {

constexpr TextView kClassName = u"CRegistry";
constexpr TextView kNetworkStart = u"\\\\";

}  // namespace

const Interface& CRegistry::Describe() {
  static const Interface table =
      Declare<CRegistry>(u"CRegistry", u"The registry of a computer.")
          .Method<&CRegistry::ConnectToRemoteRegistry>(
              u"ConnectToRemoteRegistry", u"Makes this the registry of another computer.",
              {u"MachineName"})
          .Remark(
              u"The computer isn't asked before a key is: the members below raise 53 for one "
              u"that isn't there. Another computer's HKEY_CLASSES_ROOT and HKEY_CURRENT_USER "
              u"can't be reached, and raise 2.")
          .Method<&CRegistry::GetRegKeys>(u"GetRegKeys", u"The keys below a root.", {u"hKey"})
          .Method<&CRegistry::GetRegKey>(u"GetRegKey", u"The key of a path.", {u"hKey", u"KeyName"})
          .Remark(
              u"An empty path, or \"*\", is the root. Raises 2 for a missing key and 5 for one "
              u"that may not be read.")
          .Method<&CRegistry::GetValue>(u"GetValue", u"A value of a key.",
                                        {u"hKey", u"KeyName", u"ValueName", u"ValueType"})
          .Remark(
              u"As CRegKey.GetValue: the value comes by the type that it has, whatever "
              u"ValueType says.")
          .Method<&CRegistry::SaveValue>(
              u"SaveValue", u"Stores a value in a key that exists.",
              {u"hKey", u"KeyName", u"ValueName", u"ValueType", u"vntValue"})
          .Remark(
              u"Replaces a value of that name, whatever its type. Several texts are one with a "
              u"NUL between each two. REG_BINARY takes an array of bytes. REG_NONE, REG_LINK "
              u"and the types from 8 on write nothing, and the result is True all the same. "
              u"Raises 2 for a missing key, 13 for a value that the type can't hold, and 6 for "
              u"a number from 2147483648 on, which is written as the negative one of its "
              u"bits.");
  return table;
}

void CRegistry::ConnectToRemoteRegistry(const Text& MachineName) {
  machine_name_ =
      MachineName.starts_with(kNetworkStart) ? MachineName : Text(kNetworkStart) + MachineName;
}

Ref<CRegKeys> CRegistry::GetRegKeys(HKEY_VALUES hKey) {
  return ReRaisingAs(kClassName,
                     [&] { return Engine().GetRegSubKeys(hKey, Text(), machine_name_); });
}

Ref<CRegKey> CRegistry::GetRegKey(HKEY_VALUES hKey, const Text& KeyName) {
  return ReRaisingAs(kClassName, [&] { return Engine().GetRegKey(hKey, KeyName, machine_name_); });
}

Variant CRegistry::GetValue(HKEY_VALUES hKey, const Text& KeyName, const Text& ValueName,
                            RegValueTypes ValueType) {
  return ReRaisingAs(kClassName, [&] {
    return Engine().GetRegValue(hKey, KeyName, ValueName, ValueType, machine_name_);
  });
}

bool CRegistry::SaveValue(HKEY_VALUES hKey, const Text& KeyName, const Text& ValueName,
                          RegValueTypes ValueType, const Variant& vntValue) {
  return ReRaisingAs(kClassName, [&] {
    return Engine().SaveRegValue(hKey, KeyName, ValueName, ValueType, vntValue, machine_name_);
  });
}

}  // namespace veldmark
