#include "platform/simulated/estate/Computer.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

#include "automation/CaseMapping.h"
#include "platform/simulated/estate/FileNames.h"
#include "platform/simulated/estate/Token.h"

namespace veldmark::simulated {
namespace {

constexpr DWORD kServerTypePrintQueue = 0x200;

std::vector<TextView> NamesOf(TextView path) {
  std::vector<TextView> names;
  while (!path.empty()) {
    const std::size_t end = path.find(u'\\');
    if (end != 0) names.push_back(path.substr(0, end));
    path = end == TextView::npos ? TextView() : path.substr(end + 1);
  }
  return names;
}

NamedObject Named(TextView name, std::optional<SecurityDescriptor> security, TextView usual) {
  return {Text(name), SecurityBlock::Make(security ? std::move(*security) : DescriptorOf(usual))};
}

template <typename Map>
auto* FindIn(Map& map, TextView name) {
  const auto found = map.find(ToUpper(name));
  return found == map.end() ? nullptr : &found->second;
}

void CheckRight(TextView right) {
  if (!IsUserRight(right)) throw std::invalid_argument("there is no such right");
}

// Any number that stays the same for a computer's drive.
DWORD SerialOf(TextView computer, char16_t letter) {
  DWORD hash = 2166136261;
  for (const char16_t unit : ToUpper(Text(computer) + letter)) hash = (hash ^ unit) * 16777619;
  return hash;
}

void Format(Volume& volume, UINT type) {
  if (type == kDriveRemovable) {
    volume.file_system = u"FAT32";
    volume.flags = 0x206;
    volume.total = volume.free = std::uint64_t{8} << 30;
  } else if (type == kDriveCdrom) {
    volume.file_system = u"CDFS";
    volume.flags = 0x80005;
    volume.maximum_component_length = 110;
    volume.total = std::uint64_t{650} << 20;
    volume.free = 0;
  }
}

}  // namespace

Computer::Computer(Text name, Sid sid, Ticks now)
    : name_(std::move(name)),
      now_(now),
      accounts_(name_, std::move(sid), false),
      local_machine_(std::make_shared<RegistryNode>(u"HKEY_LOCAL_MACHINE", now)),
      users_(std::make_shared<RegistryNode>(u"HKEY_USERS", now)) {
  local_machine_->Key(u"SOFTWARE");
  local_machine_->Key(u"SYSTEM\\CurrentControlSet");
  event_logs_[ToUpper(kUsualEventLog)] = std::make_shared<RecordedLog>(Text(kUsualEventLog));
  shares_[u"IPC$"] = {.name = u"IPC$",
                      .folder = nullptr,
                      .type = kShareTypeIpc | kShareTypeSpecial,
                      .remark = u"Remote IPC"};

  const Sid guests = accounts_.local_group(u"Guests").sid;
  const Sid backup_operators = accounts_.local_group(u"Backup Operators").sid;
  const std::vector<Sid> everybody = {EveryoneSid(), AdministratorsSid(), UsersSid(),
                                      backup_operators};
  for (const TextView right :
       {u"SeSecurityPrivilege", u"SeTakeOwnershipPrivilege", u"SeLoadDriverPrivilege",
        u"SeSystemProfilePrivilege", u"SeSystemtimePrivilege", u"SeDebugPrivilege",
        u"SeIncreaseQuotaPrivilege", u"SeSystemEnvironmentPrivilege", u"SeRemoteShutdownPrivilege",
        u"SeManageVolumePrivilege"}) {
    Grant(right, {AdministratorsSid()});
  }
  for (const TextView right : {u"SeBackupPrivilege", u"SeRestorePrivilege", u"SeShutdownPrivilege",
                               u"SeBatchLogonRight"}) {
    Grant(right, {AdministratorsSid(), backup_operators});
  }
  Grant(u"SeChangeNotifyPrivilege", everybody);
  Grant(u"SeNetworkLogonRight", everybody);
  Grant(u"SeInteractiveLogonRight", {AdministratorsSid(), UsersSid(), backup_operators, guests});
}

void Computer::Enter(Text group, Role role) {
  group_ = std::move(group);
  role_ = role;
}

DWORD Computer::server_type() const {
  if (description_.type) return *description_.type;
  DWORD type = kServerTypeWorkstation | kServerTypeServer | kServerTypeNt;
  if (role_ != Role::Workstation) type |= kServerTypeServerNt;
  if (std::ranges::any_of(
          shares_, [](const auto& share) { return share.second.type == kShareTypePrintQueue; })) {
    type |= kServerTypePrintQueue;
  }
  if (role_ == Role::PrimaryController) type |= kServerTypeDomainController;
  if (role_ == Role::BackupController) type |= kServerTypeBackupController;
  return type;
}

const std::vector<std::vector<std::uint8_t>>& Computer::HoldersOf(TextView right) const {
  static const std::vector<std::vector<std::uint8_t>> nobody;
  const auto* const holders = FindIn(rights_, right);
  return holders == nullptr ? nobody : *holders;
}

void Computer::Grant(TextView right, std::vector<Sid> holders) {
  CheckRight(right);
  for (const Sid& holder : holders) GrantBytes(right, holder.bytes());
}

void Computer::GrantBytes(TextView right, std::vector<std::uint8_t> sid) {
  CheckRight(right);
  rights_[ToUpper(right)].push_back(std::move(sid));
}

void Computer::RevokeFromAll(TextView right) { rights_.erase(ToUpper(right)); }

void Computer::AddPipe(TextView name) { pipes_.insert(ToUpper(name)); }

bool Computer::OffersPipe(TextView name) const { return pipes_.contains(ToUpper(name)); }

FileNode& Computer::AddDrive(char16_t letter, UINT type) {
  letter = UpperCase(letter);
  if (letter < u'A' || letter > u'Z' || drives_.contains(letter)) {
    throw std::invalid_argument("no free drive letter");
  }
  Drive& drive = drives_[letter];
  drive.type = type;
  drive.root = std::make_shared<FileNode>(u"", true, now_);
  drive.root->Attributes(kFileAttributeHidden | kFileAttributeSystem);
  drive.volume.serial = SerialOf(name_, letter);
  Format(drive.volume, type);
  if (type == kDriveFixed) {
    const Text name = Text(1, letter) + u"$";
    shares_[name] = {.name = name,
                     .folder = drive.root,
                     .type = kShareTypeDisk | kShareTypeSpecial,
                     .path = Text(1, letter) + u":\\",
                     .drive = &drive,
                     .remark = u"Default share"};
  }
  return *drive.root;
}

FileNode& Computer::AddFolder(TextView path) { return Add(path, true); }

FileNode& Computer::AddFile(TextView path, std::string_view content) {
  return Add(path, false).Content(content).Attributes(kFileAttributeArchive);
}

Share& Computer::AddShare(TextView name, TextView path, bool denied, DWORD type) {
  const auto folder = type == kShareTypeDisk ? Find(path) : nullptr;
  const bool has_folder = folder != nullptr && folder->is_folder();
  if (!IsValidName(name) || (type == kShareTypeDisk && !has_folder)) {
    throw std::invalid_argument("a share needs a name and an existing folder");
  }
  const Drive* const drive = folder ? &drives_.at(UpperCase(NamesOf(path)[0][0])) : nullptr;
  const auto [share, is_new] = shares_.emplace(ToUpper(name), Share{.name = Text(name),
                                                                    .folder = folder,
                                                                    .denied = denied,
                                                                    .type = type,
                                                                    .path = Text(path),
                                                                    .drive = drive});
  if (!is_new) throw std::invalid_argument("there is a share of this name");
  return share->second;
}

Service& Computer::AddService(TextView name, std::optional<SecurityDescriptor> security) {
  static constexpr TextView kUsual =
      u"O:SYG:SYD:(A;;CCLCSWRPWPDTLOCRRC;;;SY)(A;;CCDCLCSWRPWPDTLOCRSDRCWDWO;;;BA)"
      u"(A;;CCLCSWLOCRRC;;;IU)(A;;CCLCSWLOCRRC;;;SU)";
  const Text key = ToUpper(name);
  services_.erase(key);
  return services_.try_emplace(key, Named(name, std::move(security), kUsual)).first->second;
}

Printer& Computer::AddPrinter(TextView name, std::optional<SecurityDescriptor> security) {
  static constexpr TextView kUsual =
      u"O:SYG:SYD:(A;;LCSWSDRCWDWO;;;BA)(A;OIIO;RPWPSDRCWDWO;;;BA)(A;;SWRC;;;WD)"
      u"(A;OIIO;RPWPSDRCWDWO;;;CO)";
  return printers_[ToUpper(name)] = Printer{Named(name, std::move(security), kUsual)};
}

std::shared_ptr<FileNode> Computer::Find(TextView path) const {
  const std::vector<TextView> names = NamesOf(path);
  if (names.empty() || names[0].size() != 2 || names[0][1] != u':') return nullptr;
  const auto drive = drives_.find(UpperCase(names[0][0]));
  std::shared_ptr<FileNode> node = drive == drives_.end() ? nullptr : drive->second.root;
  for (std::size_t index = 1; node != nullptr && index < names.size(); ++index) {
    node = node->Child(names[index]);
  }
  return node;
}

const Share* Computer::FindShare(TextView name) const { return FindIn(shares_, name); }

Share* Computer::FindShare(TextView name) { return FindIn(shares_, name); }

bool Computer::RemoveShare(TextView name) { return shares_.erase(ToUpper(name)) != 0; }

Service* Computer::FindService(TextView name) { return FindIn(services_, name); }

Printer* Computer::FindPrinter(TextView name) { return FindIn(printers_, name); }

Volume& Computer::volume(char16_t letter) { return drives_.at(UpperCase(letter)).volume; }

RecordedLog& Computer::AddEventLog(TextView name) {
  if (name.empty() || name.find(u'\\') != TextView::npos) {
    throw std::invalid_argument("no event log can have this name");
  }
  local_machine_->Key(Text(u"SYSTEM\\CurrentControlSet\\Services\\EventLog\\").append(name));
  auto& log = event_logs_[ToUpper(name)];
  if (log == nullptr) log = std::make_shared<RecordedLog>(Text(name));
  return *log;
}

std::shared_ptr<RecordedLog> Computer::FindEventLog(TextView name) const {
  const auto found = event_logs_.find(ToUpper(name));
  return found == event_logs_.end() ? nullptr : found->second;
}

bool Computer::has_disc_device() const {
  return disc_device_.value_or(std::ranges::any_of(
      drives_, [](const auto& drive) { return drive.second.type == kDriveCdrom; }));
}

FileNode& Computer::Add(TextView path, bool is_folder) {
  const std::vector<TextView> names = NamesOf(path);
  if (names.size() < 2) throw std::invalid_argument("a path needs a drive and a name");
  std::shared_ptr<FileNode> node = Find(Text(names[0]) + u"\\");
  for (std::size_t index = 1; node != nullptr && index < names.size(); ++index) {
    const bool is_last = index + 1 == names.size();
    std::shared_ptr<FileNode> child = node->Child(names[index]);
    if (child == nullptr) {
      if (!IsValidName(names[index])) throw std::invalid_argument("a name can't be this");
      child = node->AddChild(Text(names[index]), !is_last || is_folder, now_);
    } else if (is_last && !(child->is_folder() && is_folder)) {
      throw std::invalid_argument("the name is taken");
    }
    node = child->is_folder() || is_last ? child : nullptr;
  }
  if (node == nullptr) throw std::invalid_argument("no such drive, or a file on the way");
  return *node;
}

}  // namespace veldmark::simulated
