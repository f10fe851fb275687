#pragma once

#include <windows.h>

#include <string>
#include <utility>

namespace veldmark {

/// An open registry key.
class RegistryKey {
 public:
  RegistryKey() = default;
  RegistryKey(RegistryKey&& other) noexcept : key_(std::exchange(other.key_, nullptr)) {}
  RegistryKey& operator=(RegistryKey&& other) noexcept {
    std::swap(key_, other.key_);
    return *this;
  }
  ~RegistryKey() { Close(); }

  LSTATUS Open(HKEY parent, const std::wstring& name, REGSAM access) {
    Close();
    return RegOpenKeyExW(parent, name.c_str(), 0, access, &key_);
  }
  /// `made` tells whether the key is new.
  LSTATUS Create(HKEY parent, const std::wstring& name, REGSAM access, bool& made) {
    Close();
    DWORD disposition = 0;
    const LSTATUS status =
        RegCreateKeyExW(parent, name.c_str(), 0, nullptr, 0, access, nullptr, &key_, &disposition);
    made = status == ERROR_SUCCESS && disposition == REG_CREATED_NEW_KEY;
    return status;
  }
  HKEY Get() const { return key_; }

 private:
  void Close() {
    if (key_) RegCloseKey(std::exchange(key_, nullptr));
  }

  HKEY key_ = nullptr;
};

}  // namespace veldmark
