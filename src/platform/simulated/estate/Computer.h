#pragma once

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string_view>
#include <vector>

#include "automation/Text.h"
#include "platform/operations/FileSystem.h"
#include "platform/operations/NetworkManagement.h"
#include "platform/simulated/estate/AccountDatabase.h"
#include "platform/simulated/estate/Domain.h"
#include "platform/simulated/estate/FileNode.h"
#include "platform/simulated/estate/NamedObject.h"
#include "platform/simulated/estate/Printer.h"
#include "platform/simulated/estate/RecordedLog.h"
#include "platform/simulated/estate/RegistryNode.h"
#include "platform/simulated/estate/ScheduledTasks.h"
#include "platform/simulated/estate/Service.h"

namespace veldmark::simulated {

// The file system on a drive, or on the medium in it. Sizes are bytes.
struct Volume {
  Text label;
  Text file_system = u"NTFS";
  DWORD serial = 0;
  DWORD flags = 0x000700FF;
  DWORD maximum_component_length = 255;
  std::uint64_t total = std::uint64_t{64} << 30;
  std::uint64_t free = std::uint64_t{16} << 30;
  std::optional<std::uint64_t> free_to_caller;  // what is free, where nothing else is said
  bool ready = true;                            // false: there is no medium in the drive
};

struct Drive {
  UINT type = kDriveFixed;
  std::shared_ptr<FileNode> root;
  Volume volume;
};

struct Share {
  Text name;
  std::shared_ptr<FileNode> folder;  // null for what isn't a folder
  bool denied = false;
  DWORD type = kShareTypeDisk;
  Text path{};             // of the folder on its computer, or the name of what else is shared
  SecurityRef security{};  // null: none
  const Drive* drive = nullptr;  // the one that the folder lies on
  // What a connection must give. A share that asks for either is closed without one.
  std::optional<Text> user = std::nullopt;
  std::optional<Text> password = std::nullopt;
  bool provider_fails = false;  // connecting ends in the provider's own error
  bool details_denied = false;  // nobody is told more than name, type and remark
  Text remark{};
  DWORD permissions = 0;
  DWORD maximum_uses = 0xFFFFFFFF;
  DWORD current_uses = 0;

  bool asks_who() const { return user.has_value() || password.has_value(); }
};

enum class RemoteRegistry { Allowed, Denied, Stopped };

// How the print service answers the caller: it lists printers, refuses to (code 5), or doesn't run
// (code 1722).
enum class Spooler { Allowed, Denied, Stopped };

// What a computer says about itself, and what its browse list shows of it.
struct ServerDescription {
  Text comment{};
  DWORD version_major = 10;
  DWORD version_minor = 0;
  std::optional<DWORD> type{};  // kServerType...; without it what role and shares bring
  DWORD users = 16777216;
  LONG disconnect_minutes = 15;
  bool hidden = false;
  DWORD announce_seconds = 240;
  DWORD announce_delta = 3000;
  DWORD licenses = 0;
  Text user_path = u"C:\\";
};

// The log that is opened where there is none of a name.
inline constexpr TextView kUsualEventLog = u"Application";
// The log that the service manager writes to where there is one.
inline constexpr TextView kSystemEventLog = u"System";

using Address = std::array<std::uint8_t, 4>;

// One computer of an estate: its drives, shares and registry. The adding members take local paths
// such as "C:\Data\a.txt", add what is missing on the way, and throw std::invalid_argument for a
// path that no folder or file can have.
class Computer {
 public:
  Computer(Text name, Sid sid, Ticks now);

  const Text& name() const { return name_; }
  // Its domain or workgroup, and what it is there. Estate::Join changes them.
  const Text& group() const { return group_; }
  Role role() const { return role_; }
  void Enter(Text group, Role role);

  ServerDescription& description() { return description_; }
  const ServerDescription& description() const { return description_; }
  // The bits of its type (kServerType...).
  DWORD server_type() const;
  // Whether the browse list of its domain shows it; without a word, where it can be reached.
  bool is_listed() const { return listed_.value_or(reachable_); }
  void SetListed(bool listed) { listed_ = listed; }
  // False: the caller, whoever he is, is none of this computer's administrators.
  bool may_be_administered() const { return may_be_administered_; }
  void SetMayBeAdministered(bool may) { may_be_administered_ = may; }
  // How many records at most an enumeration answers with; 0: all that there are.
  std::size_t page() const { return page_; }
  void SetPage(std::size_t records) { page_ = records; }

  // Its own accounts; not those of the domain that it may be a controller of.
  AccountDatabase& own_accounts() { return accounts_; }

  // The SIDs, as bytes, of those who hold a right such as "SeBackupPrivilege".
  const std::vector<std::vector<std::uint8_t>>& HoldersOf(TextView right) const;
  void Grant(TextView right, std::vector<Sid> holders);
  // Bytes that may be no SID.
  void GrantBytes(TextView right, std::vector<std::uint8_t> sid);
  void RevokeFromAll(TextView right);

  // A pipe that others may open: "\\\\srv\\PIPE\\name".
  void AddPipe(TextView name);
  bool OffersPipe(TextView name) const;

  // What its name resolves to; empty: nothing.
  const std::vector<Address>& addresses() const { return addresses_; }
  void SetAddresses(std::vector<Address> addresses) { addresses_ = std::move(addresses); }

  // A computer that can't be reached answers as one that doesn't exist.
  bool is_reachable() const { return reachable_; }
  void SetReachable(bool reachable) { reachable_ = reachable; }
  RemoteRegistry remote_registry() const { return remote_registry_; }
  void SetRemoteRegistry(RemoteRegistry state) { remote_registry_ = state; }

  // A drive of fixed type is also shared for administration, as "C$".
  FileNode& AddDrive(char16_t letter, UINT type = kDriveFixed);
  FileNode& AddFolder(TextView path);
  FileNode& AddFile(TextView path, std::string_view content = {});
  // A share of another type than kShareTypeDisk has any path that describes it.
  Share& AddShare(TextView name, TextView path, bool denied = false, DWORD type = kShareTypeDisk);
  // With the descriptor that services and printers usually have, unless one is given. Replaces an
  // object of the same name.
  Service& AddService(TextView name, std::optional<SecurityDescriptor> security = std::nullopt);
  Printer& AddPrinter(TextView name, std::optional<SecurityDescriptor> security = std::nullopt);
  // The volume of a drive that was added.
  Volume& volume(char16_t letter);

  // The file or folder at a local path; null if there is none.
  std::shared_ptr<FileNode> Find(TextView path) const;

  const std::map<char16_t, Drive>& drives() const { return drives_; }
  // By name, without regard to case; null if there is none.
  const Share* FindShare(TextView name) const;
  Share* FindShare(TextView name);
  // By name in upper case.
  const std::map<Text, Share>& shares() const { return shares_; }
  bool RemoveShare(TextView name);
  Service* FindService(TextView name);
  // By name in upper case.
  std::map<Text, Service>& services() { return services_; }
  ServiceManager& service_manager() { return service_manager_; }
  Printer* FindPrinter(TextView name);
  // By name in upper case.
  const std::map<Text, Printer>& printers() const { return printers_; }
  Spooler spooler() const { return spooler_; }
  void SetSpooler(Spooler state) { spooler_ = state; }

  // What its scheduler knows of the job files in its tasks' folder.
  TaskBook& tasks() { return tasks_; }

  // A log of this name, with the registry key that lists it. Adds to one that is there already.
  RecordedLog& AddEventLog(TextView name);
  // Without regard to case; null if there is none. Every computer has an application log.
  std::shared_ptr<RecordedLog> FindEventLog(TextView name) const;

  // Whether media commands find a disc player; without a word, where there is a drive for one.
  bool has_disc_device() const;
  void SetDiscDevice(bool present) { disc_device_ = present; }

  RegistryNode& local_machine() { return *local_machine_; }
  RegistryNode& users() { return *users_; }
  const std::shared_ptr<RegistryNode>& local_machine_node() const { return local_machine_; }
  const std::shared_ptr<RegistryNode>& users_node() const { return users_; }

 private:
  FileNode& Add(TextView path, bool is_folder);

  Text name_;
  Ticks now_;
  Text group_{kUsualWorkgroup};
  Role role_ = Role::Workstation;
  ServerDescription description_;
  AccountDatabase accounts_;
  bool reachable_ = true;
  std::optional<bool> listed_;
  bool may_be_administered_ = true;
  std::size_t page_ = 0;
  std::map<Text, std::vector<std::vector<std::uint8_t>>> rights_;
  std::set<Text> pipes_;
  std::vector<Address> addresses_;
  RemoteRegistry remote_registry_ = RemoteRegistry::Allowed;
  std::optional<bool> disc_device_;
  std::map<char16_t, Drive> drives_;
  std::map<Text, Share> shares_;
  std::map<Text, Service> services_;
  ServiceManager service_manager_;
  std::map<Text, Printer> printers_;
  Spooler spooler_ = Spooler::Allowed;
  TaskBook tasks_;
  std::map<Text, std::shared_ptr<RecordedLog>> event_logs_;
  std::shared_ptr<RegistryNode> local_machine_;
  std::shared_ptr<RegistryNode> users_;
};

}  // namespace veldmark::simulated
