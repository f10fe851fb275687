#include "registry/CRegSettings.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"

namespace veldmark {
namespace {

constexpr LSTATUS kMissing = kErrorFileNotFound;
constexpr LSTATUS kDenied = kErrorAccessDenied;

bool AnyFailure(LSTATUS) { return true; }
bool Denial(LSTATUS status) { return status == kDenied; }

LPCWSTR ValueName(const Text& key) { return key.empty() || key == u"*" ? nullptr : key.c_str(); }

[[noreturn]] void RaiseConnecting(LSTATUS status) {
  Raise(status, SourceOf(u"CRegSettings"), Text(u"Error connecting to remote registry"));
}

BYTE* Bytes(Text& text) { return reinterpret_cast<BYTE*>(text.data()); }

}  // namespace

struct CRegSettings::Root {
  HKEY Get() const { return IsRemote() ? remote.Get() : local; }
  bool IsRemote() const { return static_cast<bool>(remote); }

  HKEY local;
  RegistryKey remote;
};

CRegSettings::CRegSettings() : registry_(Apartment::Current().platform.registry) {}

HKEY CRegSettings::LocalRoot() const { return PredefinedKey(static_cast<std::uint32_t>(HKeyRoot)); }

CRegSettings::Root CRegSettings::ConnectRoot() const {
  Root root{LocalRoot(), RegistryKey(registry_)};
  if (MachineName.empty() || (root.local != kHkeyLocalMachine && root.local != kHkeyUsers)) {
    return root;
  }
  const LSTATUS status =
      registry_.RegConnectRegistryW(MachineName.c_str(), root.local, root.remote.Receive());
  if (status != 0) RaiseConnecting(status);
  return root;
}

Text CRegSettings::GetSettingKeyPath(const Text& section) const {
  return section.empty() ? Path : Path + u"\\" + section;
}

Text CRegSettings::GetSettingErrorText(std::int32_t number) const {
  return GetAPIErrorText(number);
}

void CRegSettings::RaiseStatus(LSTATUS status) const {
  Raise(status, SourceOf(u"CRegSettings"), GetSettingErrorText(status));
}

template <class Read>
void CRegSettings::ReadValue(const Text& section, const Text& key,
                             bool (*raises_connecting)(LSTATUS), Read&& read) const {
  const Root root = ConnectRoot();
  const auto raise = [&](LSTATUS status) {
    if (root.IsRemote() && raises_connecting(status)) RaiseConnecting(status);
    RaiseStatus(status);
  };
  RegistryKey opened(registry_);
  LSTATUS status = registry_.RegOpenKeyExW(root.Get(), GetSettingKeyPath(section).c_str(), 0,
                                           kKeyRead, opened.Receive());
  if (status == kMissing && !(root.IsRemote() && raises_connecting(status))) return;
  if (status != 0) raise(status);
  DWORD size = 0;
  status =
      registry_.RegQueryValueExW(opened.Get(), ValueName(key), nullptr, nullptr, nullptr, &size);
  if (status == kMissing) return;
  if (status != 0) raise(status);
  if (size > 0) read(opened.Get(), ValueName(key), size);
}

template <class Write>
bool CRegSettings::WriteValue(const Text& section, const Text& key,
                              bool (*raises_connecting)(LSTATUS), Write&& write) const {
  LSTATUS status = 0;
  {
    const Root root = ConnectRoot();
    RegistryKey opened(registry_);
    DWORD disposition = 0;
    status = registry_.RegCreateKeyExW(root.Get(), GetSettingKeyPath(section).c_str(), 0, nullptr,
                                       kRegOptionNonVolatile, kKeyAllAccess, nullptr,
                                       opened.Receive(), &disposition);
    if (status != 0 && root.IsRemote() && raises_connecting(status)) RaiseConnecting(status);
    if (status == 0) status = write(opened.Get(), ValueName(key));
  }
  if (status != 0) RaiseStatus(status);
  return true;
}

bool CRegSettings::DeleteSetting(const Text& section, const Text& key) {
  return ReRaising([&] {
    LSTATUS status = 0;
    {
      RegistryKey opened(registry_);
      const Text path = key.empty() ? Path : GetSettingKeyPath(section);
      if (registry_.RegOpenKeyExW(LocalRoot(), path.c_str(), 0, kKeyAllAccess, opened.Receive()) !=
          0) {
        return false;
      }
      status = key.empty() ? registry_.RegDeleteKeyW(opened.Get(), section.c_str())
                           : registry_.RegDeleteValueW(opened.Get(), ValueName(key));
    }
    if (status != 0) RaiseStatus(status);
    return true;
  });
}

Variant CRegSettings::GetAllSettings(const Text& section) {
  RegistryKey opened(registry_);
  if (registry_.RegOpenKeyExW(LocalRoot(), GetSettingKeyPath(section).c_str(), 0, kKeyRead,
                              opened.Receive()) != 0) {
    return {};
  }
  DWORD longest_name = 0;
  DWORD longest_value = 0;
  if (registry_.RegQueryInfoKeyW(opened.Get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                 nullptr, &longest_name, &longest_value, nullptr, nullptr) != 0) {
    return {};
  }
  std::vector<std::pair<Text, Text>> settings;
  for (DWORD index = 0;; ++index) {
    // A unit for every byte of data: the value's text is cut by the count of its bytes.
    Text name(std::size_t{longest_name} + 1, u'\0');
    Text value(std::size_t{longest_value} + 1, u'\0');
    auto name_length = static_cast<DWORD>(name.size());
    auto value_size = static_cast<DWORD>(value.size());
    DWORD type = kRegNone;
    if (registry_.RegEnumValueW(opened.Get(), index, name.data(), &name_length, nullptr, &type,
                                Bytes(value), &value_size) != 0) {
      break;
    }
    if (type != kRegSz) continue;
    name.resize(std::min<std::size_t>(name_length, name.size()));
    value.resize(std::min<std::size_t>(value_size > 0 ? value_size - 1 : 0, value.size()));
    settings.emplace_back(std::move(name), std::move(value));
  }
  if (settings.empty()) return {};
  TextArray rows(static_cast<std::uint32_t>(settings.size()), 2);
  for (std::uint32_t row = 0; row < settings.size(); ++row) {
    rows.At(row, 0) = std::move(settings[row].first);
    rows.At(row, 1) = std::move(settings[row].second);
  }
  return rows;
}

Text CRegSettings::GetString(const Text& section, const Text& key, const Text& default_value) {
  return ReRaising([&] {
    Text result = default_value;
    ReadValue(section, key, AnyFailure, [&](HKEY opened, LPCWSTR name, DWORD size) {
      Text buffer((std::size_t{size} + 1) / sizeof(char16_t), u'\0');
      const std::size_t room = size;
      if (registry_.RegQueryValueExW(opened, name, nullptr, nullptr, Bytes(buffer), &size) != 0) {
        return;
      }
      const std::size_t units = std::min<std::size_t>(size, room) / sizeof(char16_t);
      buffer.resize(units > 0 ? units - 1 : 0);
      result = std::move(buffer);
    });
    return result;
  });
}

bool CRegSettings::SaveString(const Text& section, const Text& key, const Text& value) {
  return ReRaising([&] {
    return WriteValue(section, key, Denial, [&](HKEY opened, LPCWSTR name) {
      if (value.empty()) {
        const LSTATUS status = registry_.RegDeleteValueW(opened, name);
        return status == kMissing ? LSTATUS{0} : status;
      }
      return registry_.RegSetValueExW(opened, name, 0, kRegSz,
                                      reinterpret_cast<const BYTE*>(value.data()),
                                      static_cast<DWORD>(value.size() * sizeof(char16_t)));
    });
  });
}

std::int32_t CRegSettings::GetDWord(const Text& section, const Text& key,
                                    std::int32_t default_value) {
  return ReRaising([&] {
    std::int32_t result = default_value;
    ReadValue(section, key, Denial, [&](HKEY opened, LPCWSTR name, DWORD) {
      BYTE buffer[sizeof result] = {};
      DWORD size = sizeof buffer;
      if (registry_.RegQueryValueExW(opened, name, nullptr, nullptr, buffer, &size) == 0) {
        result = ReadLongAt(buffer);
      }
    });
    return result;
  });
}

bool CRegSettings::SaveDWord(const Text& section, const Text& key, std::int32_t value) {
  return ReRaising([&] {
    return WriteValue(section, key, AnyFailure, [&](HKEY opened, LPCWSTR name) {
      return registry_.RegSetValueExW(opened, name, 0, kRegDword,
                                      reinterpret_cast<const BYTE*>(&value), sizeof value);
    });
  });
}

}  // namespace veldmark
