#include <algorithm>
#include <limits>
#include <vector>

#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "automation/Boundary.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"
#include "registry/CRegKey.h"
#include "registry/CRegKeys.h"
#include "registry/CRegValue.h"
#include "registry/CRegValues.h"
#include "registry/ValueData.h"

namespace veldmark {
namespace {

constexpr LSTATUS kDenied = kErrorAccessDenied;
constexpr LSTATUS kMoreData = kErrorMoreData;
constexpr LSTATUS kNoMoreItems = kErrorNoMoreItems;

constexpr std::size_t kKeyNameUnits = 1024;
constexpr DWORD kLongestValueName = 32767;

HKEY RootHandle(HKEY_VALUES root) { return PredefinedKey(static_cast<std::uint32_t>(root)); }

bool HasRemoteForm(HKEY_VALUES root) {
  return root == HKEY_LOCAL_MACHINE || root == HKEY_USERS || root == HKEY_PERFORMANCE_DATA ||
         root == HKEY_CURRENT_CONFIG || root == HKEY_DYN_DATA;
}

/// A key opened for reading, with the root of its computer. The root is closed first.
struct KeyForReading {
  KeyForReading(HKEY_VALUES root, const Text& key_name, const Text& machine_name)
      : registry(Apartment::Current().platform.registry), key(registry), remote_root(registry) {
    Engine().OpenRegKey(root, key_name, machine_name, kKeyRead, key, remote_root);
  }

  Registry& registry;
  RegistryKey key;
  RegistryKey remote_root;
};

/// A value as it was found: what is known of it, and the data once that is read.
struct FoundValue {
  RegValueTypes type;
  DWORD size;
  std::vector<std::uint8_t> data{};
};

/// Reads the data, and type and size anew, as often as it has grown since its size was told.
LSTATUS ReadData(const KeyForReading& opened, const Text& name, FoundValue& value) {
  for (;;) {
    if (!IsReadType(value.type)) return 0;
    const std::size_t room =
        IsTextType(value.type) ? std::size_t{value.size} * 2 + 1 : std::size_t{value.size};
    value.data.resize(room);
    auto type = static_cast<DWORD>(value.type);
    auto size = static_cast<DWORD>(std::min<std::size_t>(room, std::numeric_limits<DWORD>::max()));
    const LSTATUS status = opened.registry.RegQueryValueExW(opened.key.Get(), name.c_str(), nullptr,
                                                            &type, value.data.data(), &size);
    value.type = static_cast<RegValueTypes>(type);
    value.size = size;
    if (status == kMoreData && size > room) continue;
    value.data.resize(std::min<std::size_t>(room, status == 0 ? size : 0));
    return status;
  }
}

/// Reads a value by name; the status tells whether it could be.
LSTATUS ReadValue(const KeyForReading& opened, const Text& name, FoundValue& value) {
  DWORD type = kRegNone;
  DWORD size = 0;
  const LSTATUS status = opened.registry.RegQueryValueExW(opened.key.Get(), name.c_str(), nullptr,
                                                          &type, nullptr, &size);
  if (status != 0 && status != kMoreData) return status;
  value = {static_cast<RegValueTypes>(type), size};
  return ReadData(opened, name, value);
}

/// The default value of a key as text; empty where there is none or it can't be read.
void LoadDefaultValue(CRegKey& key, const Text& machine_name) {
  Swallow([&] {
    const KeyForReading opened(key.hKey, key.FullName, machine_name);
    FoundValue value{};
    // Most keys have none, which is no matter for an error.
    if (ReadValue(opened, Text(), value) != 0) return;
    key.PutDefaultValue(ValueOf(value.type, value.data, machine_name));
  });
  Err().Clear();
}

}  // namespace

void CSupport::OpenRegKey(HKEY_VALUES root, const Text& key_name, const Text& machine_name,
                          DWORD access, RegistryKey& key, RegistryKey& remote_root) {
  ReRaising([&] {
    Registry& registry = Apartment::Current().platform.registry;
    if (access == 0) access = kKeyAllAccess;
    HKEY parent = RootHandle(root);
    if (!machine_name.empty() && HasRemoteForm(root)) {
      const LSTATUS status =
          registry.RegConnectRegistryW(machine_name.c_str(), parent, remote_root.Receive());
      if (status != 0) RaisePlatformError(status);
      parent = remote_root.Get();
    } else if (!machine_name.empty() && machine_name != ComputerName()) {
      RaisePlatformError(kErrorFileNotFound);
    }
    LSTATUS status = registry.RegOpenKeyExW(parent, key_name.c_str(), 0, access, key.Receive());
    if (status == kDenied) {
      Text key_class;
      DWORD disposition = 0;
      status = registry.RegCreateKeyExW(parent, key_name.c_str(), 0, key_class.data(),
                                        kRegOptionBackupRestore, access, nullptr, key.Receive(),
                                        &disposition);
    }
    if (status != 0) RaisePlatformError(status);
  });
}

void CSupport::CloseRegKey(RegistryKey& key, RegistryKey& remote_root) noexcept {
  remote_root.Reset();
  key.Reset();
}

Text CSupport::GetRegString(HKEY key, const Text& value_name) {
  return ReRaising([&] {
    Registry& registry = Apartment::Current().platform.registry;
    std::vector<BYTE> buffer(1);
    DWORD size = 0;
    const auto read = [&] {
      const LSTATUS status = registry.RegQueryValueExW(key, value_name.c_str(), nullptr, nullptr,
                                                       buffer.data(), &size);
      if (status != 0) RaisePlatformError(status);
    };
    read();
    if (size == 0) return Text();
    buffer.resize(std::size_t{size} * 2 + 1);
    read();
    return TrimAtNul(ByteArrayToString(buffer));
  });
}

Ref<CRegKey> CSupport::GetRegKey(HKEY_VALUES root, const Text& key_name, const Text& machine_name) {
  return ReRaising([&] {
    Text name = StripTrailingBackslash(key_name);
    if (name == u"*") name.clear();
    auto reg_key = Make<CRegKey>();
    const KeyForReading opened(root, name, machine_name);
    reg_key->hKey = root;
    reg_key->Name = name.substr(name.rfind(u'\\') + 1);
    reg_key->FullName = name;
    LoadDefaultValue(*reg_key, machine_name);
    reg_key->MachineName = machine_name;
    return reg_key;
  });
}

Ref<CRegKeys> CSupport::GetRegSubKeys(HKEY_VALUES root, const Text& key_name,
                                      const Text& machine_name) {
  return ReRaising([&] {
    CStatus& progress = StatusObject();
    progress.RaiseStatus([] { return Text(u"Retrieving Registry Keys..."); });
    const KeyForReading opened(root, key_name, machine_name);
    const auto keys = Make<CRegKeys>();
    std::vector<char16_t> buffer(kKeyNameUnits + 1);
    for (DWORD index = 0;; ++index) {
      std::ranges::fill(buffer, u'\0');
      const LSTATUS status =
          opened.registry.RegEnumKeyW(opened.key.Get(), index, buffer.data(), kKeyNameUnits);
      if (status == kNoMoreItems) break;
      if (status != 0 && status != kMoreData) RaisePlatformError(status);
      auto reg_key = Make<CRegKey>();
      reg_key->Name = TrimAtNul({buffer.data(), buffer.size()});
      reg_key->FullName = key_name.empty() ? reg_key->Name : key_name + u"\\" + reg_key->Name;
      reg_key->hKey = root;
      reg_key->MachineName = machine_name;
      LoadDefaultValue(*reg_key, machine_name);
      progress.RaiseStatus([&] { return u"Retrieved Registry Key \"" + reg_key->Name + u"\""; });
      keys->Add(reg_key);
    }
    return keys;
  });
}

Ref<CRegValues> CSupport::GetRegValues(HKEY_VALUES root, const Text& key_name,
                                       const Text& machine_name) {
  return ReRaising([&] {
    CStatus& progress = StatusObject();
    progress.RaiseStatus([] { return Text(u"Retrieving Registry Values..."); });
    const KeyForReading opened(root, key_name, machine_name);
    const auto values = Make<CRegValues>();
    DWORD longest = 0;
    LSTATUS status = opened.registry.RegQueryInfoKeyW(opened.key.Get(), nullptr, nullptr, nullptr,
                                                      nullptr, nullptr, nullptr, nullptr, &longest,
                                                      nullptr, nullptr, nullptr);
    if (status != 0) RaisePlatformError(status);
    // Twice the room, for a longer name that comes meanwhile.
    const DWORD room = (std::min(longest, kLongestValueName) + 1) * 2;
    std::vector<char16_t> buffer(std::size_t{room} + 1);
    FoundValue found{};
    for (DWORD index = 0;; ++index) {
      std::ranges::fill(buffer, u'\0');
      DWORD length = room;
      DWORD type = kRegNone;
      found.size = 0;
      status = opened.registry.RegEnumValueW(opened.key.Get(), index, buffer.data(), &length,
                                             nullptr, &type, nullptr, &found.size);
      if (status == kNoMoreItems) break;
      if (status != 0 && status != kMoreData) RaisePlatformError(status);
      auto reg_value = Make<CRegValue>();
      reg_value->Name = TrimAtNul({buffer.data(), buffer.size()});
      reg_value->ParentKey = key_name;
      found.type = static_cast<RegValueTypes>(type);
      // One that has gone meanwhile stays empty.
      if (ReadData(opened, reg_value->Name, found) == 0) {
        reg_value->Value = ListedValueOf(found.type, found.data);
      }
      reg_value->ValueType = found.type;
      progress.RaiseStatus(
          [&] { return u"Retrieved Registry Value \"" + reg_value->Name + u"\""; });
      values->Add(reg_value);
    }
    return values;
  });
}

Variant CSupport::GetRegValue(HKEY_VALUES root, const Text& key_name, const Text& value_name,
                              RegValueTypes /*value_type*/, const Text& machine_name) {
  return ReRaising([&] {
    const KeyForReading opened(root, key_name, machine_name);
    FoundValue found{};
    const LSTATUS status = ReadValue(opened, value_name, found);
    if (status != 0) RaisePlatformError(status);
    return ValueOf(found.type, found.data, machine_name);
  });
}

bool CSupport::SaveRegValue(HKEY_VALUES root, const Text& key_name, const Text& value_name,
                            RegValueTypes value_type, const Variant& value,
                            const Text& machine_name) {
  return ReRaising([&] {
    Registry& registry = Apartment::Current().platform.registry;
    RegistryKey key(registry);
    RegistryKey remote_root(registry);
    OpenRegKey(root, key_name, machine_name, kKeyWrite, key, remote_root);
    const auto write = [&](const void* data, std::size_t size) {
      const LSTATUS status =
          registry.RegSetValueExW(key.Get(), value_name.c_str(), 0, static_cast<DWORD>(value_type),
                                  static_cast<const BYTE*>(data), static_cast<DWORD>(size));
      if (status != 0) RaisePlatformError(status);
    };
    switch (value_type) {
      case REG_SZ:
      case REG_EXPAND_SZ:
      case REG_MULTI_SZ: {
        // The platform looks behind the data for the NUL that it stores too.
        const Text text = ToText(value);
        write(text.c_str(), text.size() * sizeof(char16_t));
        break;
      }
      case REG_BINARY: {
        const ByteArray bytes = Boundary<ByteArray>::FromVariant(value);
        write(bytes.elements.data(), bytes.elements.size());
        break;
      }
      case REG_DWORD:
      case REG_DWORD_BIG_ENDIAN: {
        std::int32_t number = ToLong(value);
        if (value_type == REG_DWORD_BIG_ENDIAN) number = SwapLongBytes(number);
        write(&number, sizeof number);
        break;
      }
      default:
        break;
    }
    return true;
  });
}

}  // namespace veldmark
