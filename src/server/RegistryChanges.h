#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace veldmark {

/// Writes registry values, all of them or none: what has been written is taken back unless the
/// changes are kept. Each call returns the platform's status.
class RegistryChanges {
 public:
  /// All keys are told from `root`, which must outlive this.
  explicit RegistryChanges(HKEY root) : root_(root) {}
  RegistryChanges(const RegistryChanges&) = delete;
  RegistryChanges& operator=(const RegistryChanges&) = delete;
  ~RegistryChanges();

  /// Makes a key with those above it.
  LSTATUS MakeKey(const std::wstring& key);
  /// Writes a text; an empty name is the key's own value. Makes the key where it is missing.
  LSTATUS Write(const std::wstring& key, const std::wstring& name, const std::wstring& text);
  void Keep() { undo_.clear(); }

 private:
  struct Value {
    DWORD type = REG_NONE;
    std::vector<std::byte> data;
  };
  /// One step back: the end of a key that was made, or a value as it was.
  struct Undo {
    std::wstring key;
    std::optional<std::wstring> name;
    std::optional<Value> value;
  };

  HKEY root_;
  std::unordered_set<std::wstring> known_keys_;
  std::vector<Undo> undo_;
};

}  // namespace veldmark
