#include "server/Registration.h"

#include <optional>
#include <string>
#include <vector>

#include "root/ObjectModel.h"
#include "server/ModulePath.h"
#include "server/RegistryChanges.h"
#include "server/RegistryKey.h"

namespace veldmark {
namespace {

constexpr const wchar_t* kClassesKey = L"Software\\Classes";
constexpr const wchar_t* kLibraryName = L"Veldmark2 administration library";
// The marshallers of the platform, which work from the type library.
constexpr const wchar_t* kDualMarshaller = L"{00020424-0000-0000-C000-000000000046}";
constexpr const wchar_t* kDispatchMarshaller = L"{00020420-0000-0000-C000-000000000046}";

constexpr bool kIs64Bit = sizeof(void*) == 8;
constexpr const wchar_t* kTypeLibraryPlatform = kIs64Bit ? L"win64" : L"win32";
constexpr REGSAM kOtherView = kIs64Bit ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;

std::wstring Wide(TextView text) { return {text.begin(), text.end()}; }

std::wstring Braced(const Identity& identity) {
  const std::string text = identity.ToString();
  return L"{" + std::wstring(text.begin(), text.end()) + L"}";
}

std::wstring LibraryVersion() {
  return std::to_wstring(kModelMajorVersion) + L"." + std::to_wstring(kModelMinorVersion);
}

std::wstring ClassKey(const Interface& table) { return L"CLSID\\" + Braced(table.ClassIdentity()); }
std::wstring InterfaceKey(const Identity& identity) { return L"Interface\\" + Braced(identity); }
std::wstring LibraryKey() { return L"TypeLib\\" + Braced(LibraryIdentity()); }

/// The name that goes on with the next major version, and the one that means this version.
std::wstring ProgramName(const Interface& table) { return Wide(table.ProgramIdentity()); }
std::wstring VersionedProgramName(const Interface& table) {
  return ProgramName(table) + L"." + std::to_wstring(kModelMajorVersion);
}

/// One value below the classes' key; without a text the key alone.
struct Entry {
  std::wstring key;
  std::wstring name;
  std::optional<std::wstring> text;
};

std::vector<Entry> Entries() {
  const std::wstring path = ModulePath();
  const std::wstring library = Braced(LibraryIdentity());
  const std::wstring version = LibraryVersion();
  std::vector<Entry> entries;
  const auto add_key = [&](const std::wstring& key, const std::wstring& text) {
    entries.push_back({key, L"", text});
  };

  const std::wstring library_key = LibraryKey() + L"\\" + version;
  add_key(library_key, kLibraryName);
  add_key(library_key + L"\\0\\" + kTypeLibraryPlatform, path);
  add_key(library_key + L"\\FLAGS", L"0");
  add_key(library_key + L"\\HELPDIR", path.substr(0, path.rfind(L'\\')));

  const auto add_interface = [&](const Identity& identity, const std::wstring& name,
                                 const wchar_t* marshaller) {
    const std::wstring key = InterfaceKey(identity);
    add_key(key, name);
    add_key(key + L"\\ProxyStubClsid32", marshaller);
    add_key(key + L"\\TypeLib", library);
    entries.push_back({key + L"\\TypeLib", L"Version", version});
  };
  for (const EventInterface* events : EventInterfaces()) {
    add_interface(events->InterfaceIdentity(), Wide(events->name), kDispatchMarshaller);
  }
  for (const Interface* table : ObjectModel()) {
    add_interface(table->InterfaceIdentity(), Wide(table->InterfaceName()), kDualMarshaller);

    const std::wstring name = ProgramName(*table);
    const std::wstring versioned_name = VersionedProgramName(*table);
    const std::wstring identity = Braced(table->ClassIdentity());
    const std::wstring key = ClassKey(*table);
    add_key(key, name);
    add_key(key + L"\\InprocServer32", path);
    entries.push_back({key + L"\\InprocServer32", L"ThreadingModel", L"Apartment"});
    add_key(key + L"\\ProgID", versioned_name);
    add_key(key + L"\\VersionIndependentProgID", name);
    add_key(key + L"\\TypeLib", library);
    add_key(key + L"\\Version", version);
    entries.push_back({key + L"\\Programmable", L"", {}});
    add_key(name, name);
    add_key(name + L"\\CLSID", identity);
    add_key(name + L"\\CurVer", versioned_name);
    add_key(versioned_name, name);
    add_key(versioned_name + L"\\CLSID", identity);
  }
  return entries;
}

LSTATUS RegisterBelow(HKEY root) {
  RegistryKey classes;
  bool made = false;
  LSTATUS status = classes.Create(root, kClassesKey, KEY_READ | KEY_WRITE, made);
  if (status != ERROR_SUCCESS) return status;
  RegistryChanges changes(classes.Get());
  for (const Entry& entry : Entries()) {
    status =
        entry.text ? changes.Write(entry.key, entry.name, *entry.text) : changes.MakeKey(entry.key);
    if (status != ERROR_SUCCESS) return status;
  }
  changes.Keep();
  return ERROR_SUCCESS;
}

bool Exists(HKEY parent, const std::wstring& key, REGSAM view = 0) {
  RegistryKey opened;
  return opened.Open(parent, key, KEY_READ | view) == ERROR_SUCCESS;
}

/// Deletes a key that has become empty.
void DeleteIfEmpty(HKEY parent, const std::wstring& key) {
  RegistryKey opened;
  DWORD keys = 1;
  DWORD values = 1;
  if (opened.Open(parent, key, KEY_READ) == ERROR_SUCCESS &&
      RegQueryInfoKeyW(opened.Get(), nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values,
                       nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS &&
      keys == 0 && values == 0) {
    RegDeleteKeyW(parent, key.c_str());
  }
}

LSTATUS UnregisterBelow(HKEY root) {
  RegistryKey classes;
  if (!Exists(root, kClassesKey)) return ERROR_SUCCESS;
  LSTATUS first_failure = ERROR_SUCCESS;
  const auto delete_tree = [&](const std::wstring& key) {
    // Only what is there: where nothing was registered, nothing need be allowed.
    if (!Exists(classes.Get(), key)) return;
    LSTATUS status = RegDeleteTreeW(classes.Get(), key.c_str());
    if (status != ERROR_SUCCESS && first_failure == ERROR_SUCCESS) first_failure = status;
  };
  if (const LSTATUS status = classes.Open(root, kClassesKey, KEY_READ); status != ERROR_SUCCESS) {
    return status;
  }

  for (const Interface* table : ObjectModel()) {
    delete_tree(ClassKey(*table));
    delete_tree(InterfaceKey(table->InterfaceIdentity()));
    // Names and the type library are one for both word sizes.
    if (Exists(classes.Get(), ClassKey(*table), kOtherView)) continue;
    delete_tree(ProgramName(*table));
    delete_tree(VersionedProgramName(*table));
  }
  for (const EventInterface* events : EventInterfaces()) {
    delete_tree(InterfaceKey(events->InterfaceIdentity()));
  }

  const std::wstring version_key = LibraryKey() + L"\\" + LibraryVersion();
  delete_tree(version_key + L"\\0\\" + kTypeLibraryPlatform);
  const wchar_t* const other_platform = kIs64Bit ? L"win32" : L"win64";
  if (!Exists(classes.Get(), version_key + L"\\0\\" + other_platform)) delete_tree(version_key);
  DeleteIfEmpty(classes.Get(), LibraryKey());
  for (const wchar_t* container : {L"CLSID", L"Interface", L"TypeLib"}) {
    DeleteIfEmpty(classes.Get(), container);
  }
  return first_failure;
}

HRESULT ToResult(LSTATUS status) { return HRESULT_FROM_WIN32(static_cast<unsigned long>(status)); }

}  // namespace

HRESULT RegisterServer() noexcept {
  try {
    LSTATUS status = RegisterBelow(HKEY_LOCAL_MACHINE);
    if (status == ERROR_ACCESS_DENIED) status = RegisterBelow(HKEY_CURRENT_USER);
    return ToResult(status);
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

HRESULT UnregisterServer() noexcept {
  try {
    const LSTATUS user = UnregisterBelow(HKEY_CURRENT_USER);
    const LSTATUS machine = UnregisterBelow(HKEY_LOCAL_MACHINE);
    return ToResult(machine != ERROR_SUCCESS ? machine : user);
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace veldmark
