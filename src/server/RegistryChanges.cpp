#include "server/RegistryChanges.h"

#include <ranges>

#include "server/RegistryKey.h"

namespace veldmark {

RegistryChanges::~RegistryChanges() {
  for (const Undo& step : undo_ | std::views::reverse) {
    if (!step.name) {
      RegDeleteKeyW(root_, step.key.c_str());
      continue;
    }
    RegistryKey key;
    if (key.Open(root_, step.key, KEY_SET_VALUE) != ERROR_SUCCESS) continue;
    if (!step.value) {
      RegDeleteValueW(key.Get(), step.name->c_str());
      continue;
    }
    RegSetValueExW(key.Get(), step.name->c_str(), 0, step.value->type,
                   reinterpret_cast<const BYTE*>(step.value->data.data()),
                   static_cast<DWORD>(step.value->data.size()));
  }
}

LSTATUS RegistryChanges::MakeKey(const std::wstring& key) {
  // Level by level, so that each new one is known.
  for (std::size_t end = 0; end != std::wstring::npos;) {
    end = key.find(L'\\', end + 1);
    const std::wstring level = key.substr(0, end);
    if (known_keys_.contains(level)) continue;
    known_keys_.insert(level);
    undo_.push_back({.key = level, .name = {}, .value = {}});
    RegistryKey opened;
    bool made = false;
    const LSTATUS status = opened.Create(root_, level, KEY_READ, made);
    if (!made) undo_.pop_back();
    if (status != ERROR_SUCCESS) return status;
  }
  return ERROR_SUCCESS;
}

LSTATUS RegistryChanges::Write(const std::wstring& key, const std::wstring& name,
                               const std::wstring& text) {
  if (const LSTATUS status = MakeKey(key); status != ERROR_SUCCESS) return status;
  RegistryKey opened;
  if (const LSTATUS status = opened.Open(root_, key, KEY_QUERY_VALUE | KEY_SET_VALUE);
      status != ERROR_SUCCESS) {
    return status;
  }

  Undo step{.key = key, .name = name, .value = {}};
  Value former;
  DWORD size = 0;
  if (RegQueryValueExW(opened.Get(), name.c_str(), nullptr, &former.type, nullptr, &size) ==
      ERROR_SUCCESS) {
    former.data.resize(size);
    if (const LSTATUS status = RegQueryValueExW(opened.Get(), name.c_str(), nullptr, &former.type,
                                                reinterpret_cast<BYTE*>(former.data.data()), &size);
        status != ERROR_SUCCESS) {
      return status;
    }
    step.value = std::move(former);
  }
  undo_.push_back(std::move(step));
  return RegSetValueExW(opened.Get(), name.c_str(), 0, REG_SZ,
                        reinterpret_cast<const BYTE*>(text.c_str()),
                        static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

}  // namespace veldmark
