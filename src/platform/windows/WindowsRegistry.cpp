#include "platform/windows/WindowsRegistry.h"

#include "platform/windows/Recorded.h"
#include "platform/windows/Sdk.h"

namespace veldmark {

LSTATUS WindowsRegistry::RegConnectRegistryW(LPCWSTR machine_name, HKEY key, HKEY* result) {
  return Recorded([&] { return ::RegConnectRegistryW(Sdk(machine_name), Sdk(key), Sdk(result)); });
}

LSTATUS WindowsRegistry::RegOpenKeyExW(HKEY key, LPCWSTR sub_key, DWORD options, DWORD access,
                                       HKEY* result) {
  return Recorded(
      [&] { return ::RegOpenKeyExW(Sdk(key), Sdk(sub_key), options, access, Sdk(result)); });
}

LSTATUS WindowsRegistry::RegCreateKeyExW(HKEY key, LPCWSTR sub_key, DWORD reserved,
                                         LPWSTR key_class, DWORD options, DWORD access,
                                         const SECURITY_ATTRIBUTES* security, HKEY* result,
                                         DWORD* disposition) {
  return Recorded([&] {
    return ::RegCreateKeyExW(Sdk(key), Sdk(sub_key), reserved, Sdk(key_class), options, access,
                             SdkReadOnly(security), Sdk(result), Sdk(disposition));
  });
}

LSTATUS WindowsRegistry::RegCloseKey(HKEY key) {
  return Recorded([&] { return ::RegCloseKey(Sdk(key)); });
}

LSTATUS WindowsRegistry::RegQueryInfoKeyW(HKEY key, LPWSTR key_class, DWORD* class_length,
                                          DWORD* reserved, DWORD* sub_keys,
                                          DWORD* max_sub_key_length, DWORD* max_class_length,
                                          DWORD* values, DWORD* max_value_name_length,
                                          DWORD* max_value_size, DWORD* security_descriptor_size,
                                          FILETIME* last_write) {
  return Recorded([&] {
    return ::RegQueryInfoKeyW(Sdk(key), Sdk(key_class), Sdk(class_length), Sdk(reserved),
                              Sdk(sub_keys), Sdk(max_sub_key_length), Sdk(max_class_length),
                              Sdk(values), Sdk(max_value_name_length), Sdk(max_value_size),
                              Sdk(security_descriptor_size), Sdk(last_write));
  });
}

LSTATUS WindowsRegistry::RegEnumKeyW(HKEY key, DWORD index, LPWSTR name, DWORD name_length) {
  return Recorded([&] { return ::RegEnumKeyW(Sdk(key), index, Sdk(name), name_length); });
}

LSTATUS WindowsRegistry::RegEnumValueW(HKEY key, DWORD index, LPWSTR name, DWORD* name_length,
                                       DWORD* reserved, DWORD* type, BYTE* data, DWORD* data_size) {
  return Recorded([&] {
    return ::RegEnumValueW(Sdk(key), index, Sdk(name), Sdk(name_length), Sdk(reserved), Sdk(type),
                           data, Sdk(data_size));
  });
}

LSTATUS WindowsRegistry::RegQueryValueExW(HKEY key, LPCWSTR value_name, DWORD* reserved,
                                          DWORD* type, BYTE* data, DWORD* data_size) {
  return Recorded([&] {
    return ::RegQueryValueExW(Sdk(key), Sdk(value_name), Sdk(reserved), Sdk(type), data,
                              Sdk(data_size));
  });
}

LSTATUS WindowsRegistry::RegSetValueExW(HKEY key, LPCWSTR value_name, DWORD reserved, DWORD type,
                                        const BYTE* data, DWORD data_size) {
  return Recorded(
      [&] { return ::RegSetValueExW(Sdk(key), Sdk(value_name), reserved, type, data, data_size); });
}

LSTATUS WindowsRegistry::RegDeleteValueW(HKEY key, LPCWSTR value_name) {
  return Recorded([&] { return ::RegDeleteValueW(Sdk(key), Sdk(value_name)); });
}

LSTATUS WindowsRegistry::RegDeleteKeyW(HKEY key, LPCWSTR sub_key) {
  return Recorded([&] { return ::RegDeleteKeyW(Sdk(key), Sdk(sub_key)); });
}

LSTATUS WindowsRegistry::RegGetKeySecurity(HKEY key, DWORD information, void* descriptor,
                                           DWORD* size) {
  return Recorded(
      [&] { return ::RegGetKeySecurity(Sdk(key), information, descriptor, Sdk(size)); });
}

}  // namespace veldmark
