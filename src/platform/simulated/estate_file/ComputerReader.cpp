#include "platform/simulated/estate_file/ComputerReader.h"

#include <array>

#include "platform/simulated/estate_file/AccountsReader.h"
#include "platform/simulated/estate_file/DriveReader.h"
#include "platform/simulated/estate_file/EventLogReader.h"
#include "platform/simulated/estate_file/NetworkReader.h"
#include "platform/simulated/estate_file/PrinterReader.h"
#include "platform/simulated/estate_file/RegistryReader.h"
#include "platform/simulated/estate_file/ServiceReader.h"
#include "platform/simulated/estate_file/ShareReader.h"
#include "platform/simulated/estate_file/TaskReader.h"
#include "platform/simulated/estate_file/Values.h"

namespace veldmark::simulated {
namespace {

// "10.0".
void ReadVersion(const Node& node, ServerDescription& about) {
  const std::string text = node.Utf8();
  const std::size_t dot = text.find('.');
  const auto number = [&](const std::string& part) {
    const bool is_number =
        !part.empty() && part.size() < 6 && part.find_first_not_of("0123456789") == part.npos;
    if (!is_number) node.Complain("must be a version such as 10.0");
    return static_cast<DWORD>(std::stoul(part));
  };
  about.version_major = number(text.substr(0, dot));
  about.version_minor = number(dot == text.npos ? "" : text.substr(dot + 1));
}

void ReadAbout(const Node& node, ServerDescription& about) {
  node.OnlyFields({"comment", "version", "type", "users", "disconnect", "hidden", "announce",
                   "announceDelta", "licenses", "userPath"});
  if (const auto comment = node.Field("comment")) about.comment = comment->String();
  if (const auto version = node.Field("version")) ReadVersion(*version, about);
  if (const auto type = node.Field("type")) about.type = type->Unsigned32();
  if (const auto users = node.Field("users")) about.users = users->Unsigned32();
  if (const auto minutes = node.Field("disconnect")) {
    about.disconnect_minutes = static_cast<LONG>(minutes->Integer(-1, 0x7FFFFFFF));
  }
  if (const auto hidden = node.Field("hidden")) about.hidden = hidden->Boolean();
  if (const auto seconds = node.Field("announce")) about.announce_seconds = seconds->Unsigned32();
  if (const auto delta = node.Field("announceDelta")) about.announce_delta = delta->Unsigned32();
  if (const auto licenses = node.Field("licenses")) about.licenses = licenses->Unsigned32();
  if (const auto path = node.Field("userPath")) about.user_path = path->String();
}

void ReadMembership(const Node& node, Computer& computer, Estate& estate) {
  static constexpr std::array<Role, 4> kRoles = {Role::Workstation, Role::Server,
                                                 Role::PrimaryController, Role::BackupController};
  const auto role_field = node.Field("role");
  const Role role = kRoles[role_field ? role_field->OneOf({"workstation", "server",
                                                           "primaryController", "backupController"})
                                      : 0];
  const auto group = node.Field("memberOf");
  const Text name = group ? group->String() : Text(kUsualWorkgroup);
  const auto account = node.Field("account");
  (group ? *group : node).Try([&] {
    estate.Join(computer, name, role, !account || account->Boolean());
  });
}

}  // namespace

void ReadComputer(const Node& node, Estate& estate) {
  node.OnlyFields(
      {"name",     "reachable", "remoteRegistry", "discDevice",     "drives",  "shares",
       "registry", "services",  "printers",       "memberOf",       "role",    "account",
       "sid",      "about",     "listed",         "administrator",  "page",    "accounts",
       "rights",   "pipes",     "addresses",      "serviceManager", "spooler", "tasks",
       "eventLogs"});
  const Node name = node.Required("name");
  const auto sid_field = node.Field("sid");
  const auto sid = sid_field ? std::optional(ReadSid(*sid_field)) : std::nullopt;
  Computer& computer =
      name.Try([&]() -> Computer& { return estate.AddComputer(name.String(), sid); });
  ReadMembership(node, computer, estate);
  if (const auto about = node.Field("about")) ReadAbout(*about, computer.description());
  if (const auto listed = node.Field("listed")) computer.SetListed(listed->Boolean());
  if (const auto administrator = node.Field("administrator")) {
    computer.SetMayBeAdministered(administrator->Boolean());
  }
  if (const auto page = node.Field("page")) {
    computer.SetPage(static_cast<std::size_t>(page->Integer(0, 100000)));
  }
  if (const auto accounts = node.Field("accounts")) {
    accounts->OnlyFields({"users", "policy", "groups", "localGroups"});
    if (IsController(computer.role())) accounts->Complain("a controller has those of its domain");
    ReadUsers(*accounts, computer.own_accounts());
  }
  if (const auto pipes = node.Field("pipes")) {
    for (const Node& pipe : pipes->Elements()) computer.AddPipe(pipe.String());
  }
  if (const auto addresses = node.Field("addresses")) {
    computer.SetAddresses(ReadAddresses(*addresses));
  }
  if (const auto reachable = node.Field("reachable")) computer.SetReachable(reachable->Boolean());
  if (const auto remote = node.Field("remoteRegistry")) {
    static constexpr std::array<RemoteRegistry, 3> kStates = {
        RemoteRegistry::Allowed, RemoteRegistry::Denied, RemoteRegistry::Stopped};
    computer.SetRemoteRegistry(kStates[remote->OneOf({"allowed", "denied", "stopped"})]);
  }
  if (const auto spooler = node.Field("spooler")) {
    static constexpr std::array<Spooler, 3> kStates = {Spooler::Allowed, Spooler::Denied,
                                                       Spooler::Stopped};
    computer.SetSpooler(kStates[spooler->OneOf({"allowed", "denied", "stopped"})]);
  }
  if (const auto device = node.Field("discDevice")) computer.SetDiscDevice(device->Boolean());
  if (const auto drives = node.Field("drives")) ReadDrives(*drives, computer, estate);
  if (const auto tasks = node.Field("tasks")) ReadTasks(*tasks, computer, estate);
  if (const auto shares = node.Field("shares")) ReadShares(*shares, computer, estate);
  if (const auto registry = node.Field("registry")) {
    ReadRegistry(*registry, computer, estate);
  }
  if (const auto services = node.Field("services")) ReadServices(*services, computer, estate);
  if (const auto manager = node.Field("serviceManager")) {
    ReadServiceManager(*manager, computer, estate);
  }
  if (const auto printers = node.Field("printers")) ReadPrinters(*printers, computer, estate);
}

void ReadComputerGroups(const Node& node, Estate& estate) {
  Computer& computer = *estate.FindComputer(node.Required("name").String());
  if (const auto logs = node.Field("eventLogs")) ReadEventLogs(*logs, computer, estate);
  if (const auto accounts = node.Field("accounts")) {
    ReadGroups(*accounts, computer.own_accounts(), estate);
  }
  if (const auto rights = node.Field("rights")) {
    for (const auto& [right, holders] : rights->Members()) {
      const Text name = FromUtf8(right);
      computer.RevokeFromAll(name);
      std::vector<Sid> sids;
      for (const Node& holder : holders.Elements()) {
        sids.push_back(ReadAccount(holder, estate.AccountsOf(computer), estate));
      }
      holders.Try([&] { computer.Grant(name, std::move(sids)); });
    }
  }
}

}  // namespace veldmark::simulated
