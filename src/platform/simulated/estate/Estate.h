#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>

#include "automation/Object.h"
#include "automation/Text.h"
#include "platform/operations/System.h"
#include "platform/simulated/estate/Computer.h"
#include "platform/simulated/estate/Domain.h"
#include "platform/simulated/estate/KnownAccounts.h"
#include "platform/simulated/estate/Token.h"

namespace veldmark::simulated {

// "\\srv\share\below", taken apart.
struct NetworkName {
  Text server;
  Text share;
  Text below;

  // Nothing for a text without a server or without a share.
  static std::optional<NetworkName> Parse(TextView text);
};

// Makes a component of another library.
using ComponentMaker = std::function<Ref<Object>()>;

// The library that resolves host names: its highest version (low byte major) and how many sockets
// it says it has for programs of version 1.
struct SocketLibrary {
  WORD version = 0x0202;
  WORD most_sockets = 32767;
};

// A small world of computers, seen from one of them, with a clock that only moves when it is told
// to, or along with another. Everything that the simulated platform answers comes from here.
// Estates share nothing with each other.
class Estate {
 public:
  // The clock of an estate that says nothing else: 2024-03-05 14:30:00 UTC.
  static constexpr Ticks kDefaultTime = 133'541'226'000'000'000;

  // `local` is the name of the computer that the platform runs on. It starts with a drive C.
  explicit Estate(TextView local = u"LOCALHOST", Ticks now = kDefaultTime);
  // An estate without any computer yet: the first that is added is the local one.
  static Estate Empty(Ticks now);

  Estate(Estate&&) = default;
  Estate& operator=(Estate&&) = default;

  // In a workgroup, until it joins something else. Its accounts' SID follows from its name.
  Computer& AddComputer(TextView name, std::optional<Sid> sid = std::nullopt);
  Computer& local() { return computers_.front(); }
  const Computer& local() const { return computers_.front(); }
  // By name, without regard to case and with or without leading backslashes; null if there is none.
  Computer* FindComputer(TextView name);
  // The same, for one that can be reached.
  Computer* ReachComputer(TextView name);
  // The same by "srv" or "\\\\srv", and no other form; null and empty: the local one.
  Computer* ReachServer(LPCWSTR name);
  const std::deque<Computer>& computers() const { return computers_; }

  // A domain's SID follows from its name unless one is given. Throws std::invalid_argument for a
  // name that a domain or computer has.
  Domain& AddDomain(TextView name, std::optional<Sid> sid = std::nullopt);
  Domain& AddWorkgroup(TextView name);
  // By name, without regard to case; null if there is none.
  Domain* FindDomain(TextView name);
  const Domain* FindDomain(TextView name) const;
  const std::deque<Domain>& domains() const { return domains_; }
  // Puts a computer into a domain, with an account there and the domain's administrators and users
  // among its own, or into a workgroup.
  void Join(Computer& computer, TextView group, Role role = Role::Workstation,
            bool with_account = true);
  // A new computer in a domain or workgroup.
  Computer& AddMember(TextView group, TextView name, Role role = Role::Workstation);
  bool HasMembers(const Domain& domain) const;
  // A controller that can be reached, the primary one first; null if there is none.
  Computer* FindController(const Domain& domain, bool primary_only = false);
  // What a computer administers: its own accounts, or those of its domain.
  AccountDatabase& AccountsOf(Computer& computer);
  bool IsAdministrator(const Computer& computer) const {
    return computer.may_be_administered() && token_->Is(AdministratorsSid());
  }

  // The networks that this computer has providers for; none: there is no network.
  std::vector<Network>& networks() { return networks_; }
  Network* FindNetworkByProvider(TextView provider);

  // What every computer knows: the well-known accounts, with additions of any kind.
  const std::vector<KnownAccount>& known_accounts() const { return known_accounts_; }
  void AddKnownAccount(KnownAccount account);
  void ForgetKnownAccount(const Sid& sid);

  // Host names beside those of the computers.
  void AddHost(TextView name, std::vector<Address> addresses);
  // Null for an unknown one.
  const std::vector<Address>* FindHost(TextView name) const;
  SocketLibrary& socket_library() { return socket_library_; }

  Ticks now() const { return now_ + (clock_ ? clock_() - clock_start_ : 0); }
  // The same in seconds since 1970.
  DWORD unix_time() const { return UnixTimeOf(now()); }
  void Advance(std::uint64_t milliseconds) { now_ += milliseconds * kTicksPerMillisecond; }
  // A clock outside, which counts from any moment and only moves forward.
  using Clock = std::function<Ticks()>;
  bool clock_runs() const { return static_cast<bool>(clock_); }
  // From here on time passes as it does on that clock, beside what Advance adds.
  void Follow(Clock clock);
  // Since the estate began, as timers tell it.
  std::uint64_t milliseconds() const { return (now() - start_) / kTicksPerMillisecond; }

  // The zone and the part of the year that is in force (one of kTimeZoneId...).
  void SetTimeZone(const TIME_ZONE_INFORMATION& zone, DWORD current);
  const TIME_ZONE_INFORMATION& time_zone() const { return time_zone_; }
  DWORD current_zone() const { return current_zone_; }
  // Minutes from local time to UTC, now.
  LONG bias() const;

  const Text& user_name() const { return user_name_; }
  // The user's program has a usual administrator's token, until it is given another. Throws
  // std::invalid_argument if `sid` is none.
  void SetUser(Text name, Text sid);
  // What the user's program may do.
  Token& token() { return *token_; }
  const std::shared_ptr<Token>& shared_token() const { return token_; }
  void SetToken(Token token) { *token_ = std::move(token); }
  // What the accounts belong to that a descriptor names by alias: the user's domain, if he has one.
  Sid domain() const;
  // HKEY_CURRENT_USER: the local user's key below HKEY_USERS.
  RegistryNode& current_user() { return *current_user_node(); }
  std::shared_ptr<RegistryNode> current_user_node();

  const Text& current_folder() const { return current_folder_; }
  void SetCurrentFolder(Text path) { current_folder_ = std::move(path); }
  const Text& module_folder() const { return module_folder_; }
  void SetModuleFolder(Text path) { module_folder_ = std::move(path); }

  // A variable of the process's environment, named in any case; nothing where it isn't set. There
  // are the usual ones from the start.
  std::optional<Text> Variable(TextView name) const;
  void SetVariable(TextView name, std::optional<Text> value);

  // Redirects a drive letter of the local computer to a share ("\\srv\share", perhaps with folders
  // behind it).
  void MapDrive(char16_t letter, Text target);
  const std::map<char16_t, Text>& mapped_drives() const { return mapped_drives_; }
  // False if the letter isn't redirected.
  bool UnmapDrive(char16_t letter) { return mapped_drives_.erase(letter) != 0; }

  // Connections to shares without a drive letter, by computer and share in upper case.
  void Connect(const Computer& computer, const Share& share);
  bool IsOpen(const Computer& computer, const Share& share) const;
  // False if there is none.
  bool Disconnect(const Computer& computer, const Share& share);
  // Whether there is a connection to the share, with or without a drive letter.
  bool IsConnected(const Computer& computer, const Share& share) const;

  // An object of the directory, by its distinguished name, with the descriptor that such objects
  // usually have unless one is given. Replaces an object of the same name.
  void AddDirectoryObject(TextView name, std::optional<SecurityDescriptor> security = std::nullopt);
  // Without regard to case; null if there is none.
  NamedObject* FindDirectoryObject(TextView name);

  // The system's message texts: the published English ones, with additions.
  const MessageTable& system_messages() const { return system_messages_; }
  void AddSystemMessage(DWORD number, Text text);
  // Modules that are found by a bare name, such as "netmsg.dll", which is there from the start.
  void AddModule(TextView name, MessageTable messages);
  void RemoveModule(TextView name);
  const std::map<Text, MessageTable>& modules() const { return modules_; }

  // A component of another library, made anew for each that asks for it by its registered name.
  void AddComponent(TextView program_identity, ComponentMaker maker);
  // Without regard to case; an empty one if there is none.
  ComponentMaker FindComponent(TextView program_identity) const;

 private:
  struct WithoutComputers {};
  Estate(WithoutComputers, Ticks now);

  Ticks start_;
  Ticks now_;
  Clock clock_;
  Ticks clock_start_ = 0;
  std::deque<Computer> computers_;
  std::deque<Domain> domains_;
  std::vector<Network> networks_;
  std::vector<KnownAccount> known_accounts_;
  std::map<Text, std::vector<Address>> hosts_;
  SocketLibrary socket_library_;
  TIME_ZONE_INFORMATION time_zone_{};
  DWORD current_zone_ = kTimeZoneIdUnknown;
  Text user_name_ = u"user";
  Text user_sid_ = u"S-1-5-21-1085031214-1563985344-725345543-1001";
  std::shared_ptr<Token> token_;
  std::map<Text, NamedObject> directory_objects_;
  Text current_folder_ = u"C:\\";
  Text module_folder_ = u"C:\\Program Files\\Veldmark2";
  std::map<Text, std::optional<Text>> environment_;
  std::map<char16_t, Text> mapped_drives_;
  std::set<Text> connections_;
  MessageTable system_messages_;
  std::map<Text, MessageTable> modules_;
  std::map<Text, ComponentMaker> components_;
};

}  // namespace veldmark::simulated
