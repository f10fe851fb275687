#include "platform/simulated/families/SimulatedRegistry.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <vector>

#include "platform/operations/ErrorCodes.h"
#include "platform/simulated/estate/AccessCheck.h"

namespace veldmark::simulated {
namespace {

constexpr std::size_t kMaxKeyName = 255;
constexpr std::size_t kMaxValueName = 16383;
constexpr LSTATUS kErrorChildMustBeVolatile = 1021;
// Say which of two registries is meant, and are no rights.
constexpr DWORD kWow64Bits = 0x300;

LSTATUS Status(DWORD code) { return static_cast<LSTATUS>(code); }

bool IsText(DWORD type) { return type == kRegSz || type == kRegExpandSz || type == kRegMultiSz; }

bool IsPredefined(HKEY key) {
  return key == kHkeyClassesRoot || key == kHkeyCurrentUser || key == kHkeyLocalMachine ||
         key == kHkeyUsers || key == kHkeyCurrentConfig;
}

std::shared_ptr<RegistryNode> NodeAt(std::shared_ptr<RegistryNode> node,
                                     std::initializer_list<TextView> names) {
  for (const TextView name : names) {
    const auto next = node->Find(name);
    node = next != nullptr ? next : node->Add(name, node->written());
  }
  return node;
}

// A root of a computer's own; null for those that are of a user or of the process.
std::shared_ptr<RegistryNode> RootOf(const Computer& computer, HKEY key) {
  if (key == kHkeyLocalMachine) return computer.local_machine_node();
  if (key == kHkeyUsers) return computer.users_node();
  if (key != kHkeyCurrentConfig) return nullptr;
  return NodeAt(computer.local_machine_node(),
                {u"SYSTEM", u"CurrentControlSet", u"Hardware Profiles", u"Current"});
}

// What those may do with a key who save and restore registries, by their privileges alone.
DWORD BackupAccess(const Token& token) {
  DWORD access = 0;
  if (token.IsEnabled(Privilege::Backup)) access |= kKeyRead | kAccessSystemSecurity;
  if (token.IsEnabled(Privilege::Restore)) access |= kKeyWrite | kDelete | kAccessSystemSecurity;
  return access;
}

// Takes a key's path apart. Returns 0 or why it is malformed.
LSTATUS Split(TextView path, std::vector<TextView>& names) {
  if (path.starts_with(u'\\')) return Status(kErrorBadPathname);
  while (!path.empty()) {
    const std::size_t end = path.find(u'\\');
    const TextView name = path.substr(0, end);
    path = end == TextView::npos ? TextView() : path.substr(end + 1);
    if (name.size() > kMaxKeyName) return Status(kErrorInvalidParameter);
    if (!name.empty()) names.push_back(name);
  }
  return 0;
}

// The key of these names below a key; null for none.
std::shared_ptr<RegistryNode> KeyBelow(std::shared_ptr<RegistryNode> node,
                                       std::span<const TextView> names) {
  for (auto name = names.begin(); name != names.end() && node != nullptr; ++name) {
    node = node->Find(*name);
  }
  return node;
}

// What the token is granted of an access to a key, in place of `access`; or the code that says why
// it isn't.
LSTATUS CheckAccessTo(const RegistryNode& node, const Token& token, DWORD& access) {
  constexpr DWORD kReading = kKeyQueryValue | kKeyEnumerateSubKeys | kGenericRead | kGenericAll;
  constexpr DWORD kWriting =
      kKeySetValue | kKeyCreateSubKey | kDelete | kGenericWrite | kGenericAll;
  const bool denied = (node.read_denied() && (access & kReading) != 0) ||
                      (node.write_denied() && (access & kWriting) != 0);
  if (denied) return Status(kErrorAccessDenied);
  const AccessCheckOutcome outcome =
      CheckAccess(node.security()->descriptor(), token,
                  MapGeneric(access & ~kWow64Bits, kRegistryMapping), kRegistryMapping);
  access = outcome.granted;
  return Status(outcome.error);
}

// The most that the token is granted of a key; perhaps nothing.
DWORD MostAccessTo(const RegistryNode& node, const Token& token) {
  return GrantedAccess(node.security()->descriptor(), token, kRegistryMapping);
}

void Put(DWORD* place, std::size_t number) {
  if (place != nullptr) *place = static_cast<DWORD>(number);
}

// Copies a name with its NUL; `*length` goes in as the room and comes back as the length.
LSTATUS PutName(LPWSTR buffer, DWORD* length, TextView name) {
  if (!CopyText(name, buffer, *length)) return Status(kErrorMoreData);
  *length = static_cast<DWORD>(name.size());
  return 0;
}

// Copies data; `*size` goes in as the room and comes back as the size. A text without a NUL gets
// one behind it where there is room.
LSTATUS PutData(BYTE* buffer, DWORD* size, const RegistryNode::Value& value) {
  if (size == nullptr) return 0;
  const auto room = static_cast<std::size_t>(*size);
  const std::size_t needed = value.data.size();
  *size = static_cast<DWORD>(needed);
  if (buffer == nullptr) return 0;
  if (room < needed) return Status(kErrorMoreData);
  std::copy(value.data.begin(), value.data.end(), buffer);
  if (IsText(value.type)) std::fill_n(buffer + needed, std::min<std::size_t>(2, room - needed), 0);
  return 0;
}

bool EndsInNul(const BYTE* data, DWORD size) {
  return size >= 2 && data[size - 2] == 0 && data[size - 1] == 0;
}

}  // namespace

LSTATUS SimulatedRegistry::RegConnectRegistryW(LPCWSTR machine_name, HKEY key, HKEY* result) {
  const TextView machine = ViewOf(machine_name);
  const Call call = session_.Begin("RegConnectRegistryW", machine);
  if (const DWORD fault = call.fault()) return Status(fault);
  if (result == nullptr) return Status(kErrorInvalidParameter);
  Estate& estate = session_.estate;
  Computer* const computer = machine.empty() ? &estate.local() : estate.ReachComputer(machine);
  if (computer == nullptr) return Status(kErrorBadNetPath);
  const bool is_local = computer == &estate.local();
  if (!is_local) {
    if (computer->remote_registry() == RemoteRegistry::Stopped) return Status(kErrorBadNetPath);
    if (computer->remote_registry() == RemoteRegistry::Denied) return Status(kErrorAccessDenied);
  } else if (!IsPredefined(key)) {
    return Status(kErrorInvalidHandle);
  } else {
    *result = key;
    return 0;
  }
  const auto root = RootOf(*computer, key);
  if (root == nullptr) return Status(kErrorInvalidHandle);
  *result = Hand(root, MostAccessTo(*root, estate.token()), "RegConnectRegistryW", machine);
  return 0;
}

LSTATUS SimulatedRegistry::RegOpenKeyExW(HKEY key, LPCWSTR sub_key, DWORD, DWORD access,
                                         HKEY* result) {
  const TextView path = ViewOf(sub_key);
  const Call call = session_.Begin("RegOpenKeyExW", path);
  if (const DWORD fault = call.fault()) return Status(fault);
  if (result == nullptr) return Status(kErrorInvalidParameter);
  OpenKey open;
  if (const LSTATUS error = Lookup(key, "RegOpenKeyExW", 0, open)) return error;
  std::vector<TextView> names;
  if (const LSTATUS error = Split(path, names)) return error;
  if (names.empty() && IsPredefined(key)) {
    *result = key;
    return 0;
  }
  open.node = KeyBelow(std::move(open.node), names);
  if (open.node == nullptr) return Status(kErrorFileNotFound);
  const Token& token = session_.estate.token();
  if (const LSTATUS denied = CheckAccessTo(*open.node, token, access)) return denied;
  *result = Hand(open.node, access, "RegOpenKeyExW", path);
  return 0;
}

LSTATUS SimulatedRegistry::RegCreateKeyExW(HKEY key, LPCWSTR sub_key, DWORD reserved,
                                           LPWSTR key_class, DWORD options, DWORD access,
                                           const SECURITY_ATTRIBUTES*, HKEY* result,
                                           DWORD* disposition) {
  const TextView path = ViewOf(sub_key);
  const Call call = session_.Begin("RegCreateKeyExW", path);
  if (const DWORD fault = call.fault()) return Status(fault);
  if (reserved != 0 || result == nullptr || sub_key == nullptr) {
    return Status(kErrorInvalidParameter);
  }
  OpenKey open;
  if (const LSTATUS error = Lookup(key, "RegCreateKeyExW", 0, open)) return error;
  std::vector<TextView> names;
  if (const LSTATUS error = Split(path, names)) return error;
  const bool is_volatile = (options & kRegOptionVolatile) != 0;
  // Nothing is created before everything is known to be allowed.
  auto existing = names.begin();
  for (; existing != names.end(); ++existing) {
    const auto next = open.node->Find(*existing);
    if (next == nullptr) break;
    open.node = next;
  }
  const bool creates = existing != names.end();
  const Token& token = session_.estate.token();
  const bool may_create =
      !open.node->write_denied() && (MostAccessTo(*open.node, token) & kKeyCreateSubKey) != 0;
  if (creates && !may_create) return Status(kErrorAccessDenied);
  if (creates && open.node->is_volatile() && !is_volatile) return kErrorChildMustBeVolatile;
  if (!creates && (options & kRegOptionBackupRestore) != 0) {
    access = BackupAccess(token);
    if (access == 0) return Status(kErrorAccessDenied);
  } else if (!creates) {
    if (const LSTATUS denied = CheckAccessTo(*open.node, token, access)) return denied;
  } else if ((access & kMaximumAllowed) != 0) {
    access = kKeyAllAccess;
  } else {
    // Who makes a key has what he asks for.
    access = MapGeneric(access & ~kWow64Bits, kRegistryMapping);
  }
  for (; existing != names.end(); ++existing) {
    open.node = open.node->Add(*existing, session_.estate.now());
    open.node->Own(token);
    if (is_volatile) open.node->MakeVolatile();
    if (key_class != nullptr && existing + 1 == names.end()) open.node->Class(key_class);
  }
  Put(disposition, creates ? kRegCreatedNewKey : kRegOpenedExistingKey);
  *result = Hand(open.node, access, "RegCreateKeyExW", path);
  return 0;
}

LSTATUS SimulatedRegistry::RegCloseKey(HKEY key) {
  const Call call = session_.Begin("RegCloseKey");
  const DWORD fault = call.fault();
  if (!IsPredefined(key)) {
    const auto value = static_cast<std::uintptr_t>(key);
    if (!session_.ledger.Closed(Resource::RegistryKey, value, "RegCloseKey")) {
      return Status(kErrorInvalidHandle);
    }
    keys_.erase(value);
  }
  return Status(fault);
}

LSTATUS SimulatedRegistry::RegQueryInfoKeyW(HKEY key, LPWSTR key_class, DWORD* class_length, DWORD*,
                                            DWORD* sub_keys, DWORD* max_sub_key_length,
                                            DWORD* max_class_length, DWORD* values,
                                            DWORD* max_value_name_length, DWORD* max_value_size,
                                            DWORD* security_descriptor_size, FILETIME* last_write) {
  const Call call = session_.Begin("RegQueryInfoKeyW");
  if (const DWORD fault = call.fault()) return Status(fault);
  OpenKey open;
  if (const LSTATUS error = Lookup(key, "RegQueryInfoKeyW", kKeyQueryValue, open)) return error;
  if (key_class != nullptr && class_length == nullptr) return Status(kErrorInvalidParameter);
  const RegistryNode& node = *open.node;
  std::size_t longest_key = 0;
  std::size_t longest_class = 0;
  for (const auto& [name, child] : node.keys()) {
    longest_key = std::max(longest_key, child->name().size());
    longest_class = std::max(longest_class, child->key_class().size());
  }
  std::size_t longest_name = 0;
  std::size_t largest = 0;
  for (const RegistryNode::Value& value : node.values()) {
    longest_name = std::max(longest_name, value.name.size());
    largest = std::max(largest, value.data.size());
  }
  Put(sub_keys, node.keys().size());
  Put(max_sub_key_length, longest_key);
  Put(max_class_length, longest_class);
  Put(values, node.values().size());
  Put(max_value_name_length, longest_name);
  Put(max_value_size, largest);
  constexpr DWORD kParts =
      kOwnerSecurityInformation | kGroupSecurityInformation | kDaclSecurityInformation;
  Put(security_descriptor_size, BytesOf(node.security()->descriptor(), kParts).size());
  if (last_write != nullptr) *last_write = ToFileTime(node.written());
  if (class_length == nullptr) return 0;
  if (key_class != nullptr && *class_length > 0) {
    if (const LSTATUS error = PutName(key_class, class_length, node.key_class())) return error;
  }
  *class_length = static_cast<DWORD>(node.key_class().size());
  return 0;
}

LSTATUS SimulatedRegistry::RegEnumKeyW(HKEY key, DWORD index, LPWSTR name, DWORD name_length) {
  const Call call = session_.Begin("RegEnumKeyW", ToText(index));
  if (const DWORD fault = call.fault()) return Status(fault);
  OpenKey open;
  if (const LSTATUS error = Lookup(key, "RegEnumKeyW", kKeyEnumerateSubKeys, open)) return error;
  if (name == nullptr) return Status(kErrorInvalidParameter);
  if (index >= open.node->keys().size()) return Status(kErrorNoMoreItems);
  return PutName(name, &name_length, std::next(open.node->keys().begin(), index)->second->name());
}

LSTATUS SimulatedRegistry::RegEnumValueW(HKEY key, DWORD index, LPWSTR name, DWORD* name_length,
                                         DWORD*, DWORD* type, BYTE* data, DWORD* data_size) {
  const Call call = session_.Begin("RegEnumValueW", ToText(index));
  if (const DWORD fault = call.fault()) return Status(fault);
  if (name == nullptr || name_length == nullptr || (data != nullptr && data_size == nullptr)) {
    return Status(kErrorInvalidParameter);
  }
  OpenKey open;
  if (const LSTATUS error = Lookup(key, "RegEnumValueW", kKeyQueryValue, open)) return error;
  if (index >= open.node->values().size()) return Status(kErrorNoMoreItems);
  const RegistryNode::Value& value = open.node->values()[index];
  Put(type, value.type);
  // Both sizes are reported even if only one buffer is too small.
  const LSTATUS data_error = PutData(data, data_size, value);
  const LSTATUS name_error = PutName(name, name_length, value.name);
  return name_error != 0 ? name_error : data_error;
}

LSTATUS SimulatedRegistry::RegQueryValueExW(HKEY key, LPCWSTR value_name, DWORD* reserved,
                                            DWORD* type, BYTE* data, DWORD* data_size) {
  const Call call = session_.Begin("RegQueryValueExW", ViewOf(value_name));
  if (const DWORD fault = call.fault()) return Status(fault);
  if (reserved != nullptr || (data != nullptr && data_size == nullptr)) {
    return Status(kErrorInvalidParameter);
  }
  OpenKey open;
  if (const LSTATUS error = Lookup(key, "RegQueryValueExW", kKeyQueryValue, open)) return error;
  const RegistryNode::Value* const value = open.node->FindValue(ViewOf(value_name));
  if (value == nullptr) return Status(kErrorFileNotFound);
  Put(type, value->type);
  return PutData(data, data_size, *value);
}

LSTATUS SimulatedRegistry::RegSetValueExW(HKEY key, LPCWSTR value_name, DWORD, DWORD type,
                                          const BYTE* data, DWORD data_size) {
  const TextView name = ViewOf(value_name);
  const Call call = session_.Begin("RegSetValueExW", name);
  if (const DWORD fault = call.fault()) return Status(fault);
  OpenKey open;
  if (const LSTATUS error = Lookup(key, "RegSetValueExW", kKeySetValue, open)) return error;
  if (name.size() > kMaxValueName || (data == nullptr && data_size != 0)) {
    return Status(kErrorInvalidParameter);
  }
  std::vector<std::uint8_t> bytes(data, data + data_size);
  const bool may_lack_nul = IsText(type) && data_size != 0 && data_size % 2 == 0;
  if (may_lack_nul && !EndsInNul(data, data_size) && EndsInNul(data, data_size + 2)) {
    bytes.insert(bytes.end(), 2, 0);
  }
  open.node->Data(name, type, std::move(bytes)).Touch(session_.estate.now());
  return 0;
}

LSTATUS SimulatedRegistry::RegDeleteValueW(HKEY key, LPCWSTR value_name) {
  const Call call = session_.Begin("RegDeleteValueW", ViewOf(value_name));
  if (const DWORD fault = call.fault()) return Status(fault);
  OpenKey open;
  if (const LSTATUS error = Lookup(key, "RegDeleteValueW", kKeySetValue, open)) return error;
  if (!open.node->RemoveValue(ViewOf(value_name))) return Status(kErrorFileNotFound);
  open.node->Touch(session_.estate.now());
  return 0;
}

LSTATUS SimulatedRegistry::RegDeleteKeyW(HKEY key, LPCWSTR sub_key) {
  const TextView path = ViewOf(sub_key);
  const Call call = session_.Begin("RegDeleteKeyW", path);
  if (const DWORD fault = call.fault()) return Status(fault);
  if (sub_key == nullptr) return Status(kErrorInvalidParameter);
  OpenKey open;
  if (const LSTATUS error = Lookup(key, "RegDeleteKeyW", 0, open)) return error;
  std::vector<TextView> names;
  if (const LSTATUS error = Split(path, names)) return error;
  open.node = KeyBelow(std::move(open.node), names);
  if (open.node == nullptr) return Status(kErrorFileNotFound);
  const DWORD granted = MostAccessTo(*open.node, session_.estate.token());
  if (open.node->parent() == nullptr || open.node->write_denied() || !open.node->keys().empty() ||
      (granted & kDelete) == 0) {
    return Status(kErrorAccessDenied);
  }
  open.node->Remove(session_.estate.now());
  return 0;
}

LSTATUS SimulatedRegistry::RegGetKeySecurity(HKEY key, DWORD information, void* descriptor,
                                             DWORD* size) {
  const Call call = session_.Begin("RegGetKeySecurity");
  if (const DWORD fault = call.fault()) return Status(fault);
  if (size == nullptr) return Status(kErrorInvalidParameter);
  const bool with_audit = (information & kSaclSecurityInformation) != 0;
  const DWORD needed = kReadControl | (with_audit ? kAccessSystemSecurity : 0);
  OpenKey open;
  if (const LSTATUS error = Lookup(key, "RegGetKeySecurity", needed, open)) return error;
  const auto bytes = BytesOf(open.node->security()->descriptor(), information);
  const DWORD room = *size;
  *size = static_cast<DWORD>(bytes.size());
  if (room < bytes.size()) return Status(kErrorInsufficientBuffer);
  std::memcpy(descriptor, bytes.data(), bytes.size());
  return 0;
}

LSTATUS SimulatedRegistry::Lookup(HKEY key, std::string_view operation, DWORD needed,
                                  OpenKey& found) {
  Estate& estate = session_.estate;
  if (auto root = RootOf(estate.local(), key)) {
    found.node = std::move(root);
  } else if (key == kHkeyCurrentUser) {
    found.node = estate.current_user_node();
  } else if (key == kHkeyClassesRoot) {
    found.node = NodeAt(estate.local().local_machine_node(), {u"SOFTWARE", u"Classes"});
  } else if (key == kHkeyPerformanceData || key == kHkeyDynData) {
    return Status(kErrorInvalidHandle);
  } else {
    const auto open = keys_.find(static_cast<std::uintptr_t>(key));
    if (open == keys_.end()) {
      session_.ledger.Misused(Resource::RegistryKey, static_cast<std::uintptr_t>(key), operation);
      return Status(kErrorInvalidHandle);
    }
    found = open->second;
  }
  if (found.node->is_deleted()) return Status(kErrorKeyDeleted);
  if (IsPredefined(key)) found.access = MostAccessTo(*found.node, estate.token());
  return (found.access & needed) == needed ? 0 : Status(kErrorAccessDenied);
}

HKEY SimulatedRegistry::Hand(std::shared_ptr<RegistryNode> node, DWORD access,
                             std::string_view operation, TextView detail) {
  const std::uintptr_t value = session_.NewHandle();
  keys_[value] = {std::move(node), access};
  session_.ledger.Opened(Resource::RegistryKey, value, operation, ToUtf8(detail));
  return HKEY{value};
}

}  // namespace veldmark::simulated
