#pragma once

#include <span>
#include <vector>

#include "automation/Object.h"
#include "automation/Text.h"
#include "automation/Values.h"
#include "automation/Variant.h"
#include "platform/operations/FileSystem.h"

namespace veldmark {

class CAce;
class CDomain;
class CDomains;
class CDrive;
class CDrives;
class CEventLogEntries;
class CFile;
class CFiles;
class CFolder;
class CFolders;
class CGroup;
class CGroups;
class CNetwork;
class CNetworks;
class CPathNames;
class CPrinters;
class CRegKey;
class CRegKeys;
class CRegValues;
class CSecurityDescriptor;
class CServer;
class CServerAccountPolicy;
class CService;
class CServices;
class CShares;
class CSid;
class CSids;
class CTask;
class CTasks;
class CUser;
class CUsers;
class CVolume;
class CVolumes;
class Secret;
enum HKEY_VALUES : std::int32_t;
enum RegValueTypes : std::int32_t;
enum SE_OBJECT_TYPE : std::int32_t;
enum ServiceControlsEnum : std::int32_t;
enum ServiceStatesMaskEnum : std::int32_t;
enum ServiceTypesEnum : std::int32_t;
enum SidTypeEnum : std::int32_t;

struct RegistryKeyTraits;
template <typename Traits>
class UniqueHandle;
using RegistryKey = UniqueHandle<RegistryKeyTraits>;

/// A listener of the engine's one event. A subscription never keeps its listener alive.
class ObjectFoundListener {
 public:
  /// One object of an enumeration in progress. `cancel` ends the enumeration.
  virtual void OnObjectFound(Object& object, bool& cancel) = 0;
  /// The object to be kept alive while it listens.
  virtual Object& Listener() = 0;

 protected:
  ~ObjectFoundListener() = default;
};

/// The engine: all platform work of an apartment. It has no state that a caller
/// could see. Its methods stand
/// beside the subsystem that they serve (`storage/SupportFolders.cpp`).
class CSupport : public ReferenceCounted {
 public:
  /// Subscribes a listener, once however often it asks.
  void Subscribe(ObjectFoundListener& listener);
  void Unsubscribe(ObjectFoundListener& listener) noexcept;
  /// The event `ObjectFound`: calls every subscribed listener in turn. What one raises goes to the
  /// caller.
  void RaiseObjectFound(Object& object, bool& cancel);

  /// The name of the user of this thread; "(unknown)" when the platform doesn't tell.
  Text UserName();
  /// The name of this computer; "(unknown)" when the platform doesn't tell.
  Text ComputerName();

  // Folders (storage/SupportFolders.cpp)

  /// Walks one level of a folder. With `async` every object goes to the listeners of `ObjectFound`
  /// and both outputs stay Nothing. An empty path returns False. Raises the platform's error when
  /// the folder can't be opened.
  bool GetFolderContents(const Text& path, Ref<CFolders>& sub_folders, Ref<CFiles>& files,
                         bool get_folders, bool get_files, bool async);
  /// The same walk as names alone.
  Ref<CPathNames> GetPathNames(const Text& path, bool get_folders, bool get_files, bool async);
  /// The sub-folders of a folder, without status and cancellation.
  Ref<CFolders> GetFolders(const Text& path);
  /// The folder at a path. The root of a drive or share is answered without asking the platform,
  /// whether it exists or not; for any other path the platform's error is raised, usually 2 or 3.
  Ref<CFolder> GetFolder(const Text& path);
  /// Makes a folder from a path as it stands, without turning it into the long form.
  bool CreateFolder(const Text& full_path);

  // Paths (storage/SupportPaths.cpp)

  /// The plain form of a long path.
  Text StripLongPathChars(const Text& path);
  /// The network location of a mapped drive: `share_name` is its path, `volume_name` reads "Share
  /// on 'Server'". Both stay as they are where the drive isn't mapped.
  void GetUNCPath(const Text& drive_letter, Text& volume_name, Text& share_name);
  /// The upper-cased computer that a path lies on.
  Text GetServerNameFromPath(const Text& path);

  // SIDs (security/SupportSids.cpp)

  /// The SID of a text, with the server to ask about it. Raises as the free `GetSidBufferFromText`
  /// does. The text that it tells is made from its binary form.
  Ref<CSid> GetSidFromText(TextView sid_text, const Text& server_name);
  /// The SID at the beginning of an array of bytes. Raises 13 for anything else than such an array
  /// and 1337 where the SID leaves it.
  Ref<CSid> GetSidObjectFromSid(const Variant& object_sid, const Text& resides_on_server);

  // Security descriptors (security/SupportDescriptors.cpp, SupportDescriptorStore.cpp)

  /// Owner and list of a file or folder, by `GetFileSecurityW`, and where that is denied or the
  /// file in use by an open handle. `object` has a property `Path`. Every entry is read as a plain
  /// one. Raises the platform's error; 1336, 1337 or 1338 for a list, SID or descriptor whose
  /// lengths leave it.
  Ref<CSecurityDescriptor> GetFileSD(const Text& path, Object& object);
  /// Owner and list of a named object, by `GetNamedSecurityInfoW`, or of a descriptor string.
  /// `object` may be Nothing: then parent type and path are those given, and accounts are asked of
  /// `sid_lookup_server`; else they come from the object, which has a property `ServerName`. A
  /// share goes to `GetShareSD`. Nothing where the platform has no descriptor. Raises as
  /// `GetFileSD`.
  Ref<CSecurityDescriptor> GetNamedSD(const Text& object_name, SE_OBJECT_TYPE object_type,
                                      Object* object, const Text& parent_type,
                                      const Text& parent_path, const Text& sid_lookup_server,
                                      const Text& string_sd);
  /// The list of a share, by `NetShareGetInfo`. `parent_type` stands for the class of a missing
  /// `object`. For a share without a descriptor `object`, a
  /// `CShare`, tells its type: a folder's allows everyone everything, any other has none (Nothing);
  /// without an object 91. Raises the platform's status, 2310 for an unknown share.
  Ref<CSecurityDescriptor> GetShareSD(const Text& server_name, const Text& share_name,
                                      Object* object, const Text& parent_type = {});
  /// Writes the list of a descriptor to the object that it names as its parent, by
  /// `SetNamedSecurityInfoW`. Denied entries that are inherited or without rights are left out, and
  /// so are those of types other than 0, 1, 5 and 6. The list inherits unless `IsProtected` is
  /// set. Raises the platform's error, and 91 without a list.
  void SetNamedSD(CSecurityDescriptor* descriptor);

  // Privileges (security/SupportPrivileges.cpp)

  /// Turns a privilege of this process on or off. True also where the process lacks it. Raises the
  /// platform's error with " (OPT)" or " (ATP)" behind its text, for the operation that failed.
  bool SetPrivilegesInAccessToken(const Text& system_name, const Text& privilege_name, bool enable);

  // Files (storage/SupportFiles.cpp)

  Ref<CFiles> GetFiles(const Text& path);
  Ref<CFile> GetFile(const Text& path);
  /// Fills the version fields of a file with a path, in storage/SupportVersions.cpp. A field that
  /// the resource doesn't have stays as it is. Raises the platform's error where the resource can't
  /// be read and 13 where it is cut short. A file without one raises the type mismatch of turning
  /// `Err.Description` into a number, unless a number stands there: then the platform's error is
  /// raised with that number's text.
  void LoadFileVersionInfo(CFile& file);

  // Networks and domains (network/SupportNetworks.cpp)

  /// The networks that this computer knows. Raises the platform's error; 259 where there is none.
  Ref<CNetworks> GetNetworks();
  /// The domains of a network. Raises the platform's error.
  Ref<CDomains> GetDomains(CNetwork& network, bool async);
  /// The domains that this computer's domain trusts; none where the platform doesn't tell.
  Ref<CDomains> GetTrustedDomains();
  /// The domain of a server, asked by its name as it stands and remembered. Raises the platform's
  /// error.
  Text GetDomainFromServer(const Text& server_name);
  /// The primary controller of a domain, or, without one, of a server's domain, with its leading
  /// "\\", remembered. Raises the platform's error, 2453 where there is none.
  Text GetPDCName(const Text& domain_name, Text server_name);
  /// The same as `GetDomainFromServer`, as an object.
  Ref<CDomain> GetDomainFromServerName(const Text& server_name);

  // Servers (network/SupportServers.cpp)

  /// The server of a name, remembered: the same object each time. Without a domain name the server
  /// is asked for it. Raises the platform's error, and then remembers nothing.
  Ref<CServer> GetServer(const Text& server_name, const Text& domain_name);
  /// Fills a server by `NetServerGetInfo` at level 102, or 101 where that is denied. Raises the
  /// platform's error, the object as it was.
  void GetServerInfo(CServer& server);

  // Policy and rights (network/SupportPolicy.cpp)

  /// The password and lockout rules of a server. Raises the platform's error.
  Ref<CServerAccountPolicy> GetAccountPolicyInformation(const Text& server_name);
  /// The SIDs of the accounts that hold a right; none where nobody does. Raises the platform's
  /// error.
  Ref<CSids> GetAccountsWithUserRight(const Text& server_name, const Text& user_right, bool async);

  // Users (accounts/SupportUsers.cpp)

  /// The users of a server with name, full name, comment and flags. Raises the platform's error.
  Ref<CUsers> GetUsers(CServer& server, bool async);
  /// The users of a server with all their fields, for administrators. Raises the platform's error.
  Ref<CUsers> GetCompleteUserAccounts(CServer& server, bool async);
  /// Fills a user. Raises the platform's error; 2221 also turns it into "(Account Unknown)".
  void PopulateUser(CUser& user);
  /// The groups that a user is in on a server, his own where the name is empty. Raises the
  /// platform's error.
  Ref<CGroups> GetUserGroups(CUser& user, const Text& server_name, bool include_indirect);

  // Groups (accounts/SupportGroups.cpp)

  /// The global groups of a domain, asked of a server or, without one, of the primary controller.
  Ref<CGroups> GetGlobalGroups(CDomain& domain, const Text& server_name, bool async);
  /// The local groups of a server, told in the debug log step by step.
  Ref<CGroups> GetLocalGroups(CServer* server, bool async);
  /// The users of a global group; machine accounts are left out.
  Ref<CUsers> GetGlobalGroupUsers(CGroup& group, bool async);
  /// The members of a local group by their SIDs. Of a group of another type both stay as they are.
  void GetLocalGroupMembers(CGroup& group, Ref<CGroups>& groups, Ref<CUsers>& users, bool async);
  /// Fills a group. Raises the platform's error.
  void PopulateGroup(CGroup& group);

  // Services (services/SupportServices.cpp). Each raises the platform's error.

  /// The services of a server of these types and states. A failure in the middle of the walk ends
  /// it: what was found so far is the result. So does a service whose names don't fit into a slice
  /// of 256 bytes.
  Ref<CServices> GetServices(CServer& server, ServiceTypesEnum types, ServiceStatesMaskEnum states,
                             bool async);
  /// Fills a service's configuration and status. On a failure it keeps what wasn't read yet.
  void LoadServiceConfig(CService& service);
  /// Starts a service and waits until it runs; 1053 when that takes longer than a minute.
  void StartService(CService& service);
  /// Sends a control, and waits for the state that stop, pause and continue lead to, as above.
  /// Fills the service anew.
  void ControlService(CService& service, ServiceControlsEnum control);
  /// Writes what was changed of a service, under the database's lock.
  void SaveServiceInfo(CService& service);
  /// Makes a service; 87 where something of it is missing.
  void InstallService(CService& service);
  void RemoveService(CService& service);
  /// The services that depend on one, in the order in which they have to be stopped.
  Ref<CServices> GetDependentServices(CService& service, ServiceStatesMaskEnum states);

  // Event logs (eventlog/SupportEventLogs.cpp)

  /// The entries of a log, or of a backup file of this computer where that is named; then server
  /// and log only say what the entries keep. `server_name` begins with "\\". Without a positive
  /// `start_record` the records that are there at the beginning, counted as if the first were 1;
  /// else all from that number on, or from the oldest. What is written meanwhile may come too. The
  /// list is empty where the log doesn't tell how many records it has. Raises the platform's error,
  /// 1500 for a record whose lengths leave it.
  Ref<CEventLogEntries> LoadEventLogEntries(const Text& server_name, const Text& log_name,
                                            const Text& backup_file_name, std::int32_t start_record,
                                            bool async);

  // Accounts of SIDs (security/SupportAccounts.cpp)

  /// The SID of an account, as text, binary form and object, with its kind. A failed look-up raises
  /// nothing: the text is empty then.
  Text GetSid(const Text& server_name, Text& domain, const Text& account_name,
              std::vector<std::int32_t>& sid, SidTypeEnum& sid_type, Ref<CSid>& object);
  /// The account of a SID, asked of the server and, where that doesn't know it, of its domain's
  /// primary controller. What isn't found out stays as it is; raises where the controller can't be
  /// told.
  void GetAccount(const std::vector<std::int32_t>& sid, const Text& server_name, Text& domain,
                  Text& name, SidTypeEnum& sid_type, bool& account_unknown);
  /// The SID of an authority and up to eight sub-authorities; trailing zeros don't count.
  Ref<CSid> InitializeSid(std::uint8_t authority, std::span<const std::int32_t> sub_authorities);
  /// The SID that a two-letter alias stands for. Raises 91 for an unknown one.
  Ref<CSid> TranslateSid(const Text& alias, const Text& sid_lookup_server,
                         const Text& forest_root_dc);
  /// The sub-authorities of the domain that a server is in. Raises where that can't be told.
  std::vector<std::int32_t> GetDomainAuthorities(Text server_name);

  // Descriptor strings (security/SupportDescriptorStrings.cpp)

  /// The descriptor that a string describes, read by the library's own rules. Raises 87 for what it
  /// can't read.
  Ref<CSecurityDescriptor> ConvertStringSDToSD(const Text& string_sd, const Text& sid_lookup_server,
                                               const Text& forest_root_dc);
  /// One entry of it, in its parentheses. Raises 9 for too few fields.
  Ref<CAce> ConvertStringAceToAce(const Text& ace_string, const Text& sid_lookup_server,
                                  const Text& forest_root_dc);

  // Shares (storage/SupportShares.cpp)

  /// The shares of a server; without rights their names, types and comments only. Raises the
  /// platform's status.
  Ref<CShares> GetShares(CServer& server);

  // Volumes (storage/SupportVolumes.cpp)

  /// The disks of a server that are shared for administration. Raises the platform's status.
  Ref<CVolumes> GetVolumes(CServer& server, bool async);
  /// Fills space and file system of a volume; what can't be had stays as it is.
  void LoadVolumeInfo(CVolume& volume);

  // Drives (storage/SupportDrives.cpp)

  /// The drives of this computer; none where the platform doesn't tell.
  Ref<CDrives> GetDrives();
  /// The drive of a path "C:".
  Ref<CDrive> GetDriveInfo(const Text& drive_path, bool load_info);
  /// Fills the space values. A failure raises the number that stands in `Err`, which is 5 for none,
  /// with the platform's text.
  void LoadDriveInfo(CDrive& drive);

  // Contents of files (storage/SupportFileContents.cpp)

  /// Whether any entry, file or folder, matches a path, which may have wildcards.
  bool FileExists(const Text& path);
  /// The same, or a folder with anything in it.
  bool FolderExists(const Text& path);
  /// A file's text by the runtime's file statements (RuntimeFile.h), from the system's code page
  /// or, behind its mark, from UTF-16. A missing file is made and is empty.
  Text ReadTextFile(const Text& file_name);
  /// Writes over the beginning of a file; what was longer stays.
  void WriteTextFile(const Text& file_name, const Text& contents, bool as_unicode);
  /// A file's text, from UTF-16 or the system's code page. Raises the platform's error, 9 for an
  /// empty file and for a size that counts as none, as those from 2 GiB on do, and 7 or 6 for one
  /// that there is no memory for.
  Text ReadTextFileAPI(const Text& file_name);
  /// A file's bytes, counted from 0, with the same errors.
  ByteArray ReadBinaryFileAPI(const Text& file_name);
  /// Writes a new file and returns the number of bytes. Raises the platform's error, which is 183
  /// for a file that exists: it is empty then. Without elements it raises 9, with the file made.
  std::int32_t WriteBinaryFileAPI(const Text& file_name, const ByteArray& data);
  /// Copies a file, making the target's folder where that alone is missing.
  void CopyFile(const Text& existing_file, const Text& new_file, bool overwrite);

  // Printers (services/SupportPrinters.cpp)

  /// The printers of a server. With `async` each goes to the listeners of `ObjectFound` as well,
  /// without a server's name; one that a listener stops at isn't listed. Raises the platform's
  /// error, 122 where a printer is added in the middle of it, and 13 for a record that leaves its
  /// block.
  Ref<CPrinters> GetPrinters(CServer& server, bool async);

  // Scheduled tasks (tasks/SupportTasks.cpp)

  /// The tasks of a server. Raises the scheduler's result, also for a single task that can't be
  /// read.
  Ref<CTasks> GetTasks(CServer& server);
  /// A new task of a server, without a file yet. Raises the scheduler's result, 80070050 for a name
  /// that exists.
  Ref<CTask> CreateTask(CServer& server, const Text& task_name);

  // Connections (storage/SupportConnections.cpp)

  /// Connects to a network resource, with or without a local name. Raises the platform's status.
  void AddNetworkConnection(Text local_name, Text remote_name, const Text& user_name,
                            const Secret& password, DWORD resource_type, HWND owner,
                            bool make_persistent);
  /// Ends a connection by its local name, or one without by its remote name.
  void CancelNetworkConnection(const Text& remote_name, bool make_persistent, bool force);

  // Registry (registry/SupportRegistry.cpp)
  //
  // A key is told by its root, its path below ("" is the root itself) and its computer, "" for this
  // one. Each call opens it and closes it again. All of them raise the platform's status with its
  // text; 2 also for another computer's root that belongs to a user.

  /// Opens a key, on another computer below a root connected to, and where it is denied once more
  /// as those who back up may. An access of 0 is all of it.
  void OpenRegKey(HKEY_VALUES root, const Text& key_name, const Text& machine_name, DWORD access,
                  RegistryKey& key, RegistryKey& remote_root);
  /// Closes both, the root first.
  void CloseRegKey(RegistryKey& key, RegistryKey& remote_root) noexcept;
  /// The text of a value without data; 234 for any other, its room being told as none.
  Text GetRegString(HKEY key, const Text& value_name);
  /// The key of a path, of which one "\" at the end doesn't count and "*" is the root. A default
  /// value that can't be read is empty.
  Ref<CRegKey> GetRegKey(HKEY_VALUES root, const Text& key_name, const Text& machine_name);
  /// The keys directly below, each with its default value, which costs an open of its own.
  Ref<CRegKeys> GetRegSubKeys(HKEY_VALUES root, const Text& key_name, const Text& machine_name);
  /// The values by `ListedValueOf`.
  Ref<CRegValues> GetRegValues(HKEY_VALUES root, const Text& key_name, const Text& machine_name);
  /// A value by `ValueOf`, whatever type is asked for.
  Variant GetRegValue(HKEY_VALUES root, const Text& key_name, const Text& value_name,
                      RegValueTypes value_type, const Text& machine_name);
  /// Stores a value as `value_type`. True also for types that aren't written. Raises 13, 6 and 94
  /// where the value has no such form.
  bool SaveRegValue(HKEY_VALUES root, const Text& key_name, const Text& value_name,
                    RegValueTypes value_type, const Variant& value, const Text& machine_name);
  /// Owner and list of a key (security/SupportDescriptors.cpp), by `RegGetKeySecurity`. Every entry
  /// is read as a plain one.
  Ref<CSecurityDescriptor> GetRegKeySD(HKEY_VALUES root, const Text& key_name,
                                       const Text& machine_name, Object& key);
  /// A path with its environment references replaced (registry/SupportMachinePaths.cpp): those of
  /// this process, or, with a computer, the first one, by that computer's registry. There it knows
  /// "%SystemRoot%", "%ProgramFiles%" and "%CommonFiles%", in any case, and takes any other for
  /// nothing; "%%" makes the whole path empty. Raises nothing.
  Text ExpandPathForMachine(const Text& path, const Text& machine);

 private:
  Ref<CFolder> BuildFolderFromFindData(const Text& path, const WIN32_FIND_DATAW& find_data);
  Ref<CFile> BuildFileFromFindData(const Text& path, const WIN32_FIND_DATAW& find_data);

  std::vector<ObjectFoundListener*> listeners_;
  // This computer as GetServerNameFromPath tells it, once the platform has: the name holds until
  // the computer restarts, and asking costs as much as opening a file.
  Text own_server_name_;
};

}  // namespace veldmark
