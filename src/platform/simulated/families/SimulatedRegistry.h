#pragma once

#include <map>
#include <memory>

#include "platform/operations/Registry.h"
#include "platform/simulated/families/Session.h"

namespace veldmark::simulated {

// The registries of an estate's computers.
class SimulatedRegistry : public Registry {
 public:
  explicit SimulatedRegistry(Session& session) : session_(session) {}

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

 private:
  struct OpenKey {
    std::shared_ptr<RegistryNode> node;
    DWORD access = kKeyAllAccess;
  };

  // The key behind a handle, with the code that says why it can't be used so.
  LSTATUS Lookup(HKEY key, std::string_view operation, DWORD needed, OpenKey& found);
  HKEY Hand(std::shared_ptr<RegistryNode> node, DWORD access, std::string_view operation,
            TextView detail);

  Session& session_;
  std::map<std::uintptr_t, OpenKey> keys_;
};

}  // namespace veldmark::simulated
