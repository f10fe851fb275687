#include <cstring>
#include <vector>

#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "automation/CaseMapping.h"
#include "automation/Conversion.h"
#include "automation/Interface.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"
#include "security/CSecurityDescriptor.h"
#include "security/DescriptorReader.h"
#include "storage/CShare.h"

namespace veldmark {
namespace {

constexpr DWORD kOwnerAndDacl = kOwnerSecurityInformation | kDaclSecurityInformation;
constexpr DWORD kShareRecordLevel = 502;
constexpr TextView kNetworkStart = u"\\\\";

Text TextProperty(Object& object, TextView name) {
  return ToText(Call(object, name, MemberKind::kGet));
}

/// Asks for a descriptor by `ask(buffer, size, needed)`, once more where the buffer was too small,
/// and returns whether the last call succeeded.
template <class Ask>
bool FetchInto(std::vector<std::uint8_t>& buffer, Ask&& ask) {
  DWORD needed = 0;
  if (ask(buffer.data(), 0, &needed)) return true;
  if (LastPlatformError() != kErrorInsufficientBuffer) return false;
  buffer.resize(needed);
  return ask(buffer.data(), needed, &needed) != 0;
}

/// A file's descriptor by a handle, which a backup privilege opens against its list.
bool FetchByHandle(const Text& system_path, std::vector<std::uint8_t>& buffer) {
  const Platform& platform = Apartment::Current().platform;
  const FileHandle file(
      platform.files, platform.files.CreateFileW(system_path.c_str(), kReadControl,
                                                 kFileShareRead | kFileShareDelete, nullptr,
                                                 kOpenExisting, kFileFlagBackupSemantics, nullptr));
  if (!file) RaisePlatformError(kErrorAccessDenied);
  return FetchInto(buffer, [&](void* descriptor, DWORD size, DWORD* needed) {
    return platform.security.GetKernelObjectSecurity(file.Get(), kOwnerAndDacl, descriptor, size,
                                                     needed);
  });
}

std::vector<std::uint8_t> FetchFileDescriptor(const Text& system_path) {
  Security& security = Apartment::Current().platform.security;
  std::vector<std::uint8_t> buffer(1);
  bool fetched = FetchInto(buffer, [&](void* descriptor, DWORD size, DWORD* needed) {
    return security.GetFileSecurityW(system_path.c_str(), kOwnerAndDacl, descriptor, size, needed);
  });
  const DWORD error = LastPlatformError();
  const bool refused_at_once = !fetched && buffer.size() == 1;
  if (refused_at_once && (error == kErrorSharingViolation || error == kErrorAccessDenied)) {
    fetched = FetchByHandle(system_path, buffer);
  }
  if (!fetched) RaisePlatformError(Err().LastDllError());
  return buffer;
}

/// The path to ask the platform by. Without the "\" at its end a drive would be its device.
Text SystemPath(const Text& path) {
  Text system_path = StripTrailingBackslash(ApiFolderPath(path));
  if (system_path.ends_with(u':')) system_path += u'\\';
  return system_path;
}

/// "\\server\share" in its parts; a share of this computer may stand alone.
struct ShareName {
  explicit ShareName(const Text& name) : share(name.substr(name.rfind(u'\\') + 1)) {
    if (share.size() == name.size()) return;
    server = name.substr(0, name.size() - share.size() - 1);
    if (server.starts_with(kNetworkStart)) server.erase(0, kNetworkStart.size());
  }
  Text server;
  Text share;
};

/// The bytes of a descriptor that the platform handed out.
Bytes BytesOf(const void* descriptor) {
  Security& security = Apartment::Current().platform.security;
  return {static_cast<const std::uint8_t*>(descriptor),
          security.GetSecurityDescriptorLength(descriptor)};
}

}  // namespace

Ref<CSecurityDescriptor> CSupport::GetFileSD(const Text& path, Object& object) {
  return ReRaising([&] {
    const auto descriptor = Make<CSecurityDescriptor>();
    const Text object_path = TextProperty(object, u"Path");
    const Text object_class = TypeName(&object);
    descriptor->SetParentObject(object_class, object_path);
    const std::vector<std::uint8_t> buffer = FetchFileDescriptor(SystemPath(path));
    const DescriptorReader reader{.object_type = SE_FILE_OBJECT,
                                  .object_class = object_class,
                                  .resides_on_server = GetServerNameFromPath(object_path),
                                  .plain_entries_only = true};
    const BinaryDescriptor parts = reader.ReadHeader(*descriptor, buffer);
    reader.ReadOwner(*descriptor, parts);
    reader.ReadDacl(*descriptor, parts);
    return descriptor;
  });
}

Ref<CSecurityDescriptor> CSupport::GetNamedSD(const Text& object_name, SE_OBJECT_TYPE object_type,
                                              Object* object, const Text& parent_type,
                                              const Text& parent_path,
                                              const Text& sid_lookup_server,
                                              const Text& string_sd) {
  return ReRaising([&]() -> Ref<CSecurityDescriptor> {
    const Platform& platform = Apartment::Current().platform;
    const Text object_class = object ? TypeName(object) : parent_type;
    LocalMemory<void> block(platform.system);
    if (!string_sd.empty()) {
      if (!platform.security.ConvertStringSecurityDescriptorToSecurityDescriptorW(
              string_sd.c_str(), kSddlRevision1, block.Receive(), nullptr)) {
        RaisePlatformError(Err().LastDllError());
      }
    } else if (object_type == SE_LMSHARE) {
      const ShareName name(object_name);
      return GetShareSD(name.server, name.share, object, parent_type);
    } else {
      const DWORD status = platform.security.GetNamedSecurityInfoW(
          object_name.c_str(), static_cast<DWORD>(object_type),
          kOwnerAndDacl | kGroupSecurityInformation, nullptr, nullptr, nullptr, nullptr,
          block.Receive());
      if (status != 0) RaisePlatformError(static_cast<std::int32_t>(status));
    }
    if (!block) return nullptr;
    const auto descriptor = Make<CSecurityDescriptor>();
    descriptor->SetParentObject(object_class, object ? object_name : parent_path);
    const DescriptorReader reader{
        .object_type = object_type,
        .object_class = object_class,
        .resides_on_server = object ? TextProperty(*object, u"ServerName") : sid_lookup_server};
    const BinaryDescriptor parts = reader.ReadHeader(*descriptor, BytesOf(block.Get()));
    reader.ReadOwner(*descriptor, parts);
    reader.ReadDacl(*descriptor, parts);
    return descriptor;
  });
}

Ref<CSecurityDescriptor> CSupport::GetShareSD(const Text& server_name, const Text& share_name,
                                              Object* object, const Text& parent_type) {
  return ReRaising([&]() -> Ref<CSecurityDescriptor> {
    const Text server = ToUpper(server_name);
    const Text server_path = server.empty() ? Text() : Text(kNetworkStart) + server;
    const auto descriptor = Make<CSecurityDescriptor>();
    const Text object_class = object ? TypeName(object) : parent_type;
    descriptor->SetParentObject(object_class,
                                server.empty() ? share_name : server_path + u"\\" + share_name);
    NetworkManagement& network = Apartment::Current().platform.network_management;
    NetworkBuffer buffer(network);
    const DWORD status = network.NetShareGetInfo(server_path.c_str(), share_name.c_str(),
                                                 kShareRecordLevel, buffer.Receive());
    if (status != 0 || !buffer) RaisePlatformError(static_cast<std::int32_t>(status));
    SHARE_INFO_502 record;
    std::memcpy(&record, buffer.Get(), sizeof record);
    const DescriptorReader reader{
        .object_type = SE_LMSHARE, .object_class = object_class, .resides_on_server = server};
    if (!record.shi502_security_descriptor) {
      if (!object) Raise(runtime_error::kObjectNotSet);
      const auto* const share = dynamic_cast<CShare*>(object);
      if (!share) Raise(runtime_error::kTypeMismatch);
      if (share->ShareType != ST_DISKTREE) return nullptr;
      AllowEveryone(*descriptor, object_class);
      return descriptor;
    }
    reader.ReadDacl(*descriptor,
                    reader.ReadHeader(*descriptor, BytesOf(record.shi502_security_descriptor)));
    return descriptor;
  });
}

Ref<CSecurityDescriptor> CSupport::GetRegKeySD(HKEY_VALUES root, const Text& key_name,
                                               const Text& machine_name, Object& key) {
  return ReRaising([&] {
    Registry& registry = Apartment::Current().platform.registry;
    RegistryKey opened(registry);
    RegistryKey remote_root(registry);
    OpenRegKey(root, key_name, machine_name, kKeyRead, opened, remote_root);
    const auto descriptor = Make<CSecurityDescriptor>();
    const Text object_class = TypeName(&key);
    descriptor->SetParentObject(object_class,
                                ToText(static_cast<std::int32_t>(root)) + u"|" + key_name);
    std::vector<std::uint8_t> buffer(1);
    auto size = static_cast<DWORD>(buffer.size());
    const auto fetch = [&] {
      return registry.RegGetKeySecurity(opened.Get(), kOwnerAndDacl, buffer.data(), &size);
    };
    LSTATUS status = fetch();
    if (status == static_cast<LSTATUS>(kErrorInsufficientBuffer)) {
      buffer.resize(size);
      status = fetch();
    }
    // The number is the status, the text that of the last error.
    if (status != 0) {
      Raise(status, SourceOf(u"CSupport"), GetAPIErrorText(Err().LastDllError()));
    }
    const DescriptorReader reader{
        .object_type = SE_REGISTRY_KEY,
        .object_class = object_class,
        .resides_on_server = machine_name.empty() ? ComputerName() : machine_name,
        .plain_entries_only = true};
    const BinaryDescriptor parts = reader.ReadHeader(*descriptor, buffer);
    reader.ReadOwner(*descriptor, parts);
    reader.ReadDacl(*descriptor, parts);
    CloseRegKey(opened, remote_root);
    return descriptor;
  });
}

}  // namespace veldmark
