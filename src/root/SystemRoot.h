#pragma once

#include "apartment/Counted.h"
#include "automation/Object.h"
#include "automation/Secret.h"
#include "automation/Values.h"
#include "automation/Variant.h"
#include "security/ObjectType.h"
#include "storage/ResourceType.h"

namespace veldmark {

class CDomain;
class CFile;
class CFolder;
class CGroup;
class CGroups;
class CMyComputer;
class CNetHood;
class CRegistry;
class CSecurityDescriptor;
class CServer;
class CSid;
class CStatus;
class CUser;

/// The root of the object model: what a caller creates first. It has no state of its own, so any
/// two are interchangeable. Every member raises the error of what it asks for unless it says
/// otherwise; those that docs/status.md lists raise 445.
class SystemRoot : public Exported<SystemRoot>, Counted<Counter::kSystemRoot> {
 public:
  static const Interface& Describe();

  /// "(unknown)" where the platform doesn't tell.
  Text LocalComputerName();
  Text LocalUserName();
  Ref<CMyComputer> GetMyComputer();
  Ref<CNetHood> GetNetHood();
  Ref<CGroups> GetWellKnownGroups();
  Ref<CDomain> GetDomainFromServerName(const Text& server_name);
  /// See `CSupport::GetFolder`.
  Ref<CFolder> GetFolder(const Text& path);
  /// See `CSupport::FolderExists`.
  bool FolderExists(const Text& path);
  Ref<CFile> GetFile(const Text& path);
  /// See `CSupport::FileExists`.
  bool FileExists(const Text& path);
  /// The apartment's status object, the same each time.
  Ref<CStatus> GetStatusObject();
  /// Local time by the bias in force now. A system that tells of no daylight saving gives date 0.
  Date ConvertUTCtoLocal(Date utc);
  /// See `CSupport::ReadTextFile` and its fellows for what these read, write and raise.
  Text ReadTextFile(const Text& file_name);
  bool WriteTextFile(const Text& file_name, const Text& contents, bool write_as_unicode);
  bool SetPrivilege(const Text& system_name, const Text& privilege_name, bool enable);
  /// Forgets the accounts by SID; those by name stay.
  void ClearSidCache();
  Ref<CRegistry> GetRegistry();
  /// See `CSupport::GetServer`.
  Ref<CServer> GetServer(const Text& server_name, const Text& domain_name);
  /// The account of a domain, or of a computer for "\\SRV", with all that is known of it. Raises
  /// 2221 where there is none and 2453 for a domain without a controller.
  Ref<CUser> GetUser(const Text& account_domain, const Text& user_name);
  /// The same for a group: 2220 where there is none, 1376 for one of a computer, 5 for a domain
  /// that the network doesn't list.
  Ref<CGroup> GetGroup(const Text& account_domain, const Text& group_name);
  /// See `CSupport::CopyFile`.
  void CopyFile(const Text& existing_file, const Text& new_file, bool overwrite);
  /// See `CSupport::AddNetworkConnection`. An empty user name or password is taken as it stands.
  bool AddNetworkConnection(const Text& local_name, const Text& remote_name, const Text& user_name,
                            const Secret& password, ResourceTypeEnum resource_type,
                            std::int32_t owner_window, bool make_persistent);
  /// See `CSupport::CancelNetworkConnection`.
  bool CancelNetworkConnection(const Text& remote_name, bool make_persistent, bool force);
  /// A domain object of this name; nothing is asked of the network.
  Ref<CDomain> GetDomain(const Text& domain_name);
  Ref<CSecurityDescriptor> GetNamedSD(const Text& object_name, SE_OBJECT_TYPE object_type,
                                      const Text& sid_lookup_server);
  void SetNamedSD(CSecurityDescriptor* descriptor);
  Text LookupSidText(const Text& server_name, const Text& domain_name, const Text& account_name);
  /// Always raises 8004038F, "Function is obsolete".
  Ref<CSecurityDescriptor> CreateSD(std::int32_t descriptor);
  Ref<CSecurityDescriptor> CreateSDFromStringSD(const Text& string_sd,
                                                const Text& sid_lookup_server);
  Ref<CSecurityDescriptor> CreateSDFromStringSD_API(const Text& string_sd,
                                                    const Text& sid_lookup_server);
  Ref<CSecurityDescriptor> CreateSDFromStringSD2(const Text& string_sd,
                                                 const Text& sid_lookup_server,
                                                 const Text& forest_root_dc);
  /// See `CSupport::ReadTextFileAPI` and its fellows.
  Text ReadTextFileAPI(const Text& file_name);
  ByteArray ReadBinaryFileAPI(const Text& file_name);
  std::int32_t WriteBinaryFileAPI(const Text& file_name, ByteArray& data);
  Ref<CSid> GetSidObjectFromSid(const Variant& object_sid, const Text& resides_on_server);
  Ref<CSid> GetSidFromText(const Text& sid_text);
  /// Makes one folder; its parent must exist.
  bool CreateFolder(const Text& full_path);
  Ref<CSid> GetSidFromText2(const Text& sid_text, const Text& server_name);
};

}  // namespace veldmark
