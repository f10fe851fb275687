#include "registry/RegistryEnumerations.h"

#include "automation/Declare.h"

namespace veldmark {

const Enumeration& DescribeEnumeration(HKEY_VALUES) {
  static const Enumeration table =
      DeclareEnumeration<HKEY_VALUES>(u"HKEY_VALUES", u"The roots of a registry.")
          .Value(u"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT, u"File types and classes.")
          .Value(u"HKEY_CURRENT_USER", HKEY_CURRENT_USER, u"The user's own settings.")
          .Value(u"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE, u"The computer's settings.")
          .Value(u"HKEY_USERS", HKEY_USERS, u"The settings of all users.")
          .Value(u"HKEY_PERFORMANCE_DATA", HKEY_PERFORMANCE_DATA, u"Performance counters.")
          .Value(u"HKEY_CURRENT_CONFIG", HKEY_CURRENT_CONFIG, u"The hardware profile in use.")
          .Value(u"HKEY_DYN_DATA", HKEY_DYN_DATA, u"Of platforms of old.");
  return table;
}

const Enumeration& DescribeEnumeration(RegValueTypes) {
  static const Enumeration table =
      DeclareEnumeration<RegValueTypes>(u"RegValueTypes", u"The types of registry values.")
          .Value(u"REG_NONE", REG_NONE, u"No type.")
          .Value(u"REG_SZ", REG_SZ, u"A text.")
          .Value(u"REG_EXPAND_SZ", REG_EXPAND_SZ, u"A text with environment references.")
          .Value(u"REG_BINARY", REG_BINARY, u"Bytes.")
          .Value(u"REG_DWORD", REG_DWORD, u"A number of 32 bits.")
          .Value(u"REG_DWORD_LITTLE_ENDIAN", REG_DWORD_LITTLE_ENDIAN, u"The same.")
          .Value(u"REG_DWORD_BIG_ENDIAN", REG_DWORD_BIG_ENDIAN,
                 u"A number of 32 bits, its highest byte first.")
          .Value(u"REG_LINK", REG_LINK, u"A link to another key.")
          .Value(u"REG_MULTI_SZ", REG_MULTI_SZ, u"Several texts.")
          .Value(u"REG_RESOURCE_LIST", REG_RESOURCE_LIST, u"Resources of a device.")
          .Value(u"REG_FULL_RESOURCE_DESCRIPTOR", REG_FULL_RESOURCE_DESCRIPTOR,
                 u"Resources of the hardware.")
          .Value(u"REG_RESOURCE_REQUIREMENTS_LIST", REG_RESOURCE_REQUIREMENTS_LIST,
                 u"Resources that a device could use.");
  return table;
}

}  // namespace veldmark
