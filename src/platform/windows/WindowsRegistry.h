#pragma once

#include "platform/operations/Registry.h"

namespace veldmark {

/// The registry of the operating system that this process runs on.
class WindowsRegistry final : public Registry {
 public:
  LSTATUS RegConnectRegistryW(LPCWSTR machine_name, HKEY key, HKEY* result) override;
  LSTATUS RegOpenKeyExW(HKEY key, LPCWSTR sub_key, DWORD options, DWORD access,
                        HKEY* result) override;
  LSTATUS RegCreateKeyExW(HKEY key, LPCWSTR sub_key, DWORD reserved, LPWSTR key_class,
                          DWORD options, DWORD access, const SECURITY_ATTRIBUTES* security,
                          HKEY* result, DWORD* disposition) override;
  LSTATUS RegCloseKey(HKEY key) override;
  LSTATUS RegQueryInfoKeyW(HKEY key, LPWSTR key_class, DWORD* class_length, DWORD* reserved,
                           DWORD* sub_keys, DWORD* max_sub_key_length, DWORD* max_class_length,
                           DWORD* values, DWORD* max_value_name_length, DWORD* max_value_size,
                           DWORD* security_descriptor_size, FILETIME* last_write) override;
  LSTATUS RegEnumKeyW(HKEY key, DWORD index, LPWSTR name, DWORD name_length) override;
  LSTATUS RegEnumValueW(HKEY key, DWORD index, LPWSTR name, DWORD* name_length, DWORD* reserved,
                        DWORD* type, BYTE* data, DWORD* data_size) override;
  LSTATUS RegQueryValueExW(HKEY key, LPCWSTR value_name, DWORD* reserved, DWORD* type, BYTE* data,
                           DWORD* data_size) override;
  LSTATUS RegSetValueExW(HKEY key, LPCWSTR value_name, DWORD reserved, DWORD type, const BYTE* data,
                         DWORD data_size) override;
  LSTATUS RegDeleteValueW(HKEY key, LPCWSTR value_name) override;
  LSTATUS RegDeleteKeyW(HKEY key, LPCWSTR sub_key) override;
  LSTATUS RegGetKeySecurity(HKEY key, DWORD information, void* descriptor, DWORD* size) override;
};

}  // namespace veldmark
