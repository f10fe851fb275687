#include "registry/CRegKey.h"

#include "apartment/CSupport.h"
#include "apartment/Errors.h"
#include "automation/Conversion.h"
#include "automation/Declare.h"
#include "registry/CRegKeys.h"
#include "registry/CRegValues.h"
#include "security/CSecurityDescriptor.h"

namespace veldmark {
namespace {

constexpr TextView kClassName = u"CRegKey";

}  // namespace

const Interface& CRegKey::Describe() {
  static const Interface table =
      Declare<CRegKey>(u"CRegKey", u"A registry key.")
          .Method<&CRegKey::GetSubKeys>(u"GetSubKeys", u"The keys directly below.")
          .Method<&CRegKey::GetValues>(u"GetValues", u"The values of the key.")
          .Remark(
              u"A text of REG_EXPAND_SZ has its references replaced by the environment of the "
              u"calling program, also where the key is another computer's; other texts stay as "
              u"they are. GetValue asks that computer.")
          .Method<&CRegKey::GetValue>(u"GetValue", u"A value of the key.",
                                      {u"ValueName", u"ValueType"})
          .Remark(
              u"ValueType has no effect: the value comes by the type that it has. An empty "
              u"ValueName is the default value. Environment references are replaced in every "
              u"text, also in a plain one; of another computer's keys only the first reference "
              u"of a text is, and one that isn't %SystemRoot%, %ProgramFiles% or %CommonFiles% "
              u"is cut out. Several texts come as one, with a NUL between each two. A value of "
              u"a type from 8 on, a link and one without type come empty. Raises 2 for a "
              u"missing value.")
          .Method<&CRegKey::GetSecurityDescriptor>(u"GetSecurityDescriptor",
                                                   u"Who may do what with the key.")
          .Remark(
              u"Its Save can't write the key, whose ParentObjectPath is the root's number and "
              u"the path with \"|\" between them. To change a key's list take "
              u"SystemRoot.GetNamedSD(\"MACHINE\\SOFTWARE\\...\", 4).")
          .Stored<&CRegKey::FullName>(u"FullName", u"The path below the root.")
          .Stored<&CRegKey::hKey>(u"hKey", u"The root.")
          .Stored<&CRegKey::Name>(u"Name", u"The last part of the path.")
          .Property<&CRegKey::GetDefaultValue, &CRegKey::PutDefaultValue>(
              u"DefaultValue", u"The default value as a text.")
          .Remark(
              u"Read when the key was got, and empty where it can't be read. Putting another "
              u"one here writes nothing: CRegistry.SaveValue with an empty ValueName does.")
          .Stored<&CRegKey::MachineName>(u"MachineName",
                                         u"The computer, \\\\SRV; empty for this one.");
  return table;
}

Ref<CRegKeys> CRegKey::GetSubKeys() {
  return ReRaisingAs(kClassName,
                     [&] { return Engine().GetRegSubKeys(hKey, FullName, MachineName); });
}

Ref<CRegValues> CRegKey::GetValues() {
  return ReRaisingAs(kClassName,
                     [&] { return Engine().GetRegValues(hKey, FullName, MachineName); });
}

Variant CRegKey::GetValue(const Text& ValueName, RegValueTypes ValueType) {
  return ReRaisingAs(kClassName, [&] {
    return Engine().GetRegValue(hKey, FullName, ValueName, ValueType, MachineName);
  });
}

Ref<CSecurityDescriptor> CRegKey::GetSecurityDescriptor() {
  return ReRaisingAs(kClassName,
                     [&] { return Engine().GetRegKeySD(hKey, FullName, MachineName, *this); });
}

void CRegKey::PutDefaultValue(const Variant& value) { default_value_ = ToText(value); }

}  // namespace veldmark
