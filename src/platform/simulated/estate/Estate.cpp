#include "platform/simulated/estate/Estate.h"

#include <algorithm>
#include <stdexcept>

#include "automation/CaseMapping.h"
#include "platform/simulated/estate/FileNames.h"
#include "platform/simulated/estate/PublishedMessages.h"

namespace veldmark::simulated {
namespace {

Text ConnectionKey(TextView computer, TextView share) {
  return ToUpper(Text(computer) + u'\\' + Text(share));
}

}  // namespace

std::optional<NetworkName> NetworkName::Parse(TextView text) {
  if (!text.starts_with(u"\\\\")) return std::nullopt;
  text.remove_prefix(2);
  const std::size_t server_end = text.find(u'\\');
  if (server_end == 0 || server_end == TextView::npos) return std::nullopt;
  const std::size_t share_end = text.find(u'\\', server_end + 1);
  NetworkName name{.server = Text(text.substr(0, server_end)),
                   .share = Text(text.substr(server_end + 1, share_end - server_end - 1)),
                   .below = Text()};
  if (share_end != TextView::npos) name.below = text.substr(share_end + 1);
  if (name.share.empty()) return std::nullopt;
  return name;
}

Estate::Estate(WithoutComputers, Ticks now)
    : start_(now),
      now_(now),
      networks_{{.name = Text(kUsualNetwork)}},
      known_accounts_(WellKnownAccounts()),
      system_messages_(PublishedSystemMessages()) {
  token_ = std::make_shared<Token>(MakeAdministratorToken(*Sid::FromText(user_sid_)));
  modules_[u"NETMSG.DLL"] = PublishedNetworkMessages();
}

Estate::Estate(TextView local, Ticks now) : Estate(WithoutComputers(), now) {
  AddComputer(local).AddDrive(u'C');
}

Estate Estate::Empty(Ticks now) { return Estate(WithoutComputers(), now); }

Computer& Estate::AddComputer(TextView name, std::optional<Sid> sid) {
  if (!IsValidName(name) || name.size() > 15) {
    throw std::invalid_argument("a computer's name has 1 to 15 characters");
  }
  if (FindComputer(name) != nullptr || FindDomain(name) != nullptr) {
    throw std::invalid_argument("the name is taken");
  }
  if (!sid) {
    // The user is the local computer's, unless a domain has his number.
    const bool is_users =
        computers_.empty() && std::ranges::none_of(domains_, [&](const Domain& d) {
          return !d.is_workgroup() && d.accounts->sid() == this->domain();
        });
    sid = is_users ? this->domain() : SidForName(name);
  }
  Computer& computer = computers_.emplace_back(Text(name), *sid, now());
  const std::size_t number = computers_.size();
  computer.SetAddresses({{192, 0, static_cast<std::uint8_t>(2 + number / 250),
                          static_cast<std::uint8_t>(number % 250 + 1)}});
  if (FindDomain(kUsualWorkgroup) == nullptr) AddWorkgroup(kUsualWorkgroup);
  return computer;
}

Computer* Estate::FindComputer(TextView name) {
  const std::size_t start = name.find_first_not_of(u'\\');
  const TextView bare = start == TextView::npos ? TextView() : name.substr(start);
  for (Computer& computer : computers_) {
    if (EqualNoCase(computer.name(), bare)) return &computer;
  }
  return EqualNoCase(bare, u"localhost") && !computers_.empty() ? &local() : nullptr;
}

Computer* Estate::ReachComputer(TextView name) {
  Computer* const computer = FindComputer(name);
  return computer != nullptr && computer->is_reachable() ? computer : nullptr;
}

Computer* Estate::ReachServer(LPCWSTR name) {
  TextView text = name == nullptr ? TextView() : TextView(name);
  if (text.empty()) return &local();
  if (text.starts_with(u"\\\\")) text.remove_prefix(2);
  return text.starts_with(u'\\') ? nullptr : ReachComputer(text);
}

Domain& Estate::AddDomain(TextView name, std::optional<Sid> sid) {
  Domain& domain = AddWorkgroup(name);
  domain.accounts =
      std::make_unique<AccountDatabase>(Text(name), sid ? *sid : SidForName(name), true);
  return domain;
}

Domain& Estate::AddWorkgroup(TextView name) {
  if (!IsValidName(name) || name.size() > 15) {
    throw std::invalid_argument("a domain's name has 1 to 15 characters");
  }
  if (FindDomain(name) != nullptr || FindComputer(name) != nullptr) {
    throw std::invalid_argument("the name is taken");
  }
  return domains_.emplace_back(Domain{.name = Text(name), .accounts = nullptr});
}

Domain* Estate::FindDomain(TextView name) {
  return const_cast<Domain*>(std::as_const(*this).FindDomain(name));
}

const Domain* Estate::FindDomain(TextView name) const {
  const auto found = std::ranges::find_if(
      domains_, [&](const Domain& domain) { return EqualNoCase(domain.name, name); });
  return found == domains_.end() ? nullptr : &*found;
}

void Estate::Join(Computer& computer, TextView group, Role role, bool with_account) {
  Domain* const domain = FindDomain(group);
  if (domain == nullptr) throw std::invalid_argument("there is no such domain or workgroup");
  if (IsController(role) && domain->is_workgroup()) {
    throw std::invalid_argument("a workgroup has no controllers");
  }
  computer.Enter(domain->name, role);
  if (domain->is_workgroup()) return;
  AccountDatabase& accounts = *domain->accounts;
  if (with_account && accounts.FindUser(computer.name() + u"$") == nullptr) {
    accounts.AddMachine(computer.name(), IsController(role));
  }
  if (IsController(role)) return;
  const auto admit = [&](TextView local_group, DWORD number) {
    computer.own_accounts()
        .local_group(local_group)
        .members.push_back(accounts.sid().Account(number));
  };
  admit(u"Administrators", kDomainAdminsNumber);
  admit(u"Users", kDomainUsersNumber);
  admit(u"Guests", kDomainGuestsNumber);
}

Computer& Estate::AddMember(TextView group, TextView name, Role role) {
  Computer& computer = AddComputer(name);
  Join(computer, group, role);
  return computer;
}

bool Estate::HasMembers(const Domain& domain) const {
  return std::ranges::any_of(computers_, [&](const Computer& computer) {
    return EqualNoCase(computer.group(), domain.name);
  });
}

Computer* Estate::FindController(const Domain& domain, bool primary_only) {
  for (const Role role : {Role::PrimaryController, Role::BackupController}) {
    if (primary_only && role != Role::PrimaryController) break;
    for (Computer& computer : computers_) {
      const bool is_one = computer.role() == role && EqualNoCase(computer.group(), domain.name);
      if (is_one && computer.is_reachable()) return &computer;
    }
  }
  return nullptr;
}

AccountDatabase& Estate::AccountsOf(Computer& computer) {
  return IsController(computer.role()) ? *FindDomain(computer.group())->accounts
                                       : computer.own_accounts();
}

Network* Estate::FindNetworkByProvider(TextView provider) {
  const auto found = std::ranges::find_if(networks_, [&](const Network& network) {
    return EqualNoCase(network.provider_name(), provider);
  });
  return found == networks_.end() ? nullptr : &*found;
}

void Estate::AddKnownAccount(KnownAccount account) {
  ForgetKnownAccount(account.sid);
  known_accounts_.push_back(std::move(account));
}

void Estate::ForgetKnownAccount(const Sid& sid) {
  std::erase_if(known_accounts_, [&](const KnownAccount& known) { return known.sid == sid; });
}

void Estate::AddHost(TextView name, std::vector<Address> addresses) {
  hosts_[ToUpper(name)] = std::move(addresses);
}

const std::vector<Address>* Estate::FindHost(TextView name) const {
  static const std::vector<Address> itself = {{127, 0, 0, 1}};
  if (name.empty()) return &local().addresses();
  const auto host = hosts_.find(ToUpper(name));
  if (host != hosts_.end()) return &host->second;
  if (EqualNoCase(name, u"localhost")) return &itself;
  for (const Computer& computer : computers_) {
    if (EqualNoCase(computer.name(), name)) {
      return computer.addresses().empty() ? nullptr : &computer.addresses();
    }
  }
  return nullptr;
}

void Estate::Follow(Clock clock) {
  now_ = now();
  clock_ = std::move(clock);
  clock_start_ = clock_ ? clock_() : 0;
}

void Estate::SetTimeZone(const TIME_ZONE_INFORMATION& zone, DWORD current) {
  time_zone_ = zone;
  current_zone_ = current;
}

LONG Estate::bias() const {
  switch (current_zone_) {
    case kTimeZoneIdStandard:
      return time_zone_.Bias + time_zone_.StandardBias;
    case kTimeZoneIdDaylight:
      return time_zone_.Bias + time_zone_.DaylightBias;
    default:
      return time_zone_.Bias;
  }
}

void Estate::SetUser(Text name, Text sid) {
  const auto parsed = Sid::FromText(sid);
  if (!parsed) throw std::invalid_argument("is no SID");
  SetToken(MakeAdministratorToken(*parsed));
  user_name_ = std::move(name);
  user_sid_ = std::move(sid);
}

Sid Estate::domain() const {
  const Sid domain = token_->user().Domain();
  return domain.bytes().size() > 12 ? domain : DefaultDomainSid();
}

void Estate::AddDirectoryObject(TextView name, std::optional<SecurityDescriptor> security) {
  static constexpr TextView kUsual = u"O:BAG:BAD:AI(A;;GA;;;SY)(A;CI;GA;;;BA)(A;;RPLCLORC;;;AU)";
  directory_objects_[ToUpper(name)] = {
      Text(name), SecurityBlock::Make(security ? std::move(*security) : DescriptorOf(kUsual))};
}

NamedObject* Estate::FindDirectoryObject(TextView name) {
  const auto found = directory_objects_.find(ToUpper(name));
  return found == directory_objects_.end() ? nullptr : &found->second;
}

std::shared_ptr<RegistryNode> Estate::current_user_node() {
  auto key = local().users().Find(user_sid_);
  if (key == nullptr) {
    // A user's own part of the registry is closed to other users.
    local().users().Key(user_sid_).Security(u"D:P(A;CI;KA;;;" + user_sid_ +
                                            u")(A;CI;KA;;;BA)(A;CI;KA;;;SY)");
    key = local().users().Find(user_sid_);
  }
  key->Key(u"Software");
  return key;
}

std::optional<Text> Estate::Variable(TextView name) const {
  const Text key = ToUpper(name);
  if (const auto set = environment_.find(key); set != environment_.end()) return set->second;
  if (key == u"COMPUTERNAME") return local().name();
  if (key == u"USERNAME") return user_name();
  static const std::map<Text, Text> usual = {
      {u"COMMONPROGRAMFILES", u"C:\\Program Files\\Common Files"},
      {u"PROGRAMFILES", u"C:\\Program Files"},
      {u"SYSTEMDRIVE", u"C:"},
      {u"SYSTEMROOT", u"C:\\Windows"},
      {u"WINDIR", u"C:\\Windows"}};
  const auto found = usual.find(key);
  return found == usual.end() ? std::nullopt : std::optional(found->second);
}

void Estate::SetVariable(TextView name, std::optional<Text> value) {
  environment_[ToUpper(name)] = std::move(value);
}

void Estate::MapDrive(char16_t letter, Text target) {
  letter = UpperCase(letter);
  if (letter < u'A' || letter > u'Z' || local().drives().contains(letter)) {
    throw std::invalid_argument("no free drive letter");
  }
  if (!NetworkName::Parse(target)) {
    throw std::invalid_argument("a mapped drive needs a server and a share");
  }
  while (target.ends_with(u'\\')) target.pop_back();
  mapped_drives_[letter] = std::move(target);
}

void Estate::Connect(const Computer& computer, const Share& share) {
  connections_.insert(ConnectionKey(computer.name(), share.name));
}

bool Estate::IsOpen(const Computer& computer, const Share& share) const {
  return connections_.contains(ConnectionKey(computer.name(), share.name));
}

bool Estate::Disconnect(const Computer& computer, const Share& share) {
  return connections_.erase(ConnectionKey(computer.name(), share.name)) != 0;
}

bool Estate::IsConnected(const Computer& computer, const Share& share) const {
  if (IsOpen(computer, share)) return true;
  const Text key = ConnectionKey(computer.name(), share.name);
  return std::ranges::any_of(mapped_drives_, [&](const auto& mapped) {
    const auto name = NetworkName::Parse(mapped.second);
    return name && ConnectionKey(name->server, name->share) == key;
  });
}

void Estate::AddSystemMessage(DWORD number, Text text) {
  system_messages_[number] = std::move(text);
}

void Estate::AddModule(TextView name, MessageTable messages) {
  modules_[ToUpper(name)] = std::move(messages);
}

void Estate::RemoveModule(TextView name) { modules_.erase(ToUpper(name)); }

void Estate::AddComponent(TextView program_identity, ComponentMaker maker) {
  components_[ToUpper(program_identity)] = std::move(maker);
}

ComponentMaker Estate::FindComponent(TextView program_identity) const {
  const auto found = components_.find(ToUpper(program_identity));
  return found == components_.end() ? nullptr : found->second;
}

}  // namespace veldmark::simulated
