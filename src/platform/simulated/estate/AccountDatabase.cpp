#include "platform/simulated/estate/AccountDatabase.h"

#include <stdexcept>

#include "automation/CaseMapping.h"
#include "platform/simulated/estate/FileNames.h"

namespace veldmark::simulated {
namespace {

constexpr DWORD kBuiltin = 32;
constexpr DWORD kCertPublishersNumber = 517;
constexpr DWORD kSchemaAdminsNumber = 518;
constexpr DWORD kEnterpriseAdminsNumber = 519;
constexpr DWORD kPolicyOwnersNumber = 520;
constexpr DWORD kRasServersNumber = 553;

template <typename Map>
auto* FindIn(Map& map, TextView name) {
  const auto found = map.find(ToUpper(name));
  return found == map.end() ? nullptr : &found->second;
}

template <typename Account>
Account& Existing(Account* account) {
  if (account == nullptr) throw std::invalid_argument("there is no account of this name");
  return *account;
}

}  // namespace

AccountDatabase::AccountDatabase(Text name, Sid sid, bool is_domain)
    // The numbers below are left to the accounts that say their own.
    : name_(std::move(name)), sid_(std::move(sid)), is_domain_(is_domain), next_number_(1200) {
  AddBuiltin(u"Administrators", 544, u"Complete and unrestricted access");
  AddBuiltin(u"Users", 545, u"Everyday use");
  AddBuiltin(u"Guests", 546, u"The same access as users, by default");
  AddBuiltin(u"Backup Operators", 551, u"May back up and restore files in spite of their security");
  AddBuiltin(u"Replicator", 552, u"File replication in a domain");
  if (is_domain) {
    AddBuiltin(u"Account Operators", 548, u"May administer the domain's accounts");
    AddBuiltin(u"Server Operators", 549, u"May administer the domain's servers");
    AddBuiltin(u"Print Operators", 550, u"May administer the domain's printers");
    AddBuiltin(u"Pre-Windows 2000 Compatible Access", 554, u"May read all accounts");
  } else {
    AddBuiltin(u"Power Users", 547, u"Most administrative powers");
  }
  AddBuiltin(u"Remote Desktop Users", 555, u"May log on from afar");
  AddBuiltin(u"Network Configuration Operators", 556, u"May change the network's settings");

  UserAccount& administrator = AddUser(u"Administrator", kAdministratorNumber);
  administrator.comment = u"Built-in account for administering";
  administrator.privilege = 2;
  administrator.flags |= kAccountDontExpirePassword;
  UserAccount& guest = AddUser(u"Guest", kGuestNumber);
  guest.comment = u"Built-in account for guests";
  guest.privilege = 0;
  guest.flags |= kAccountDisabled | kAccountDontExpirePassword;

  const auto group = [this](TextView group_name, DWORD number, TextView comment) {
    AddGroup(group_name, {}, number).comment = comment;
  };
  local_group(u"Administrators").members = {sid_.Account(kAdministratorNumber)};
  local_group(u"Guests").members = {sid_.Account(kGuestNumber)};
  if (!is_domain) {
    group(u"None", kDomainUsersNumber, u"Ordinary users");
    return;
  }
  group(u"Domain Admins", kDomainAdminsNumber, u"Administrators of the domain");
  group(u"Domain Users", kDomainUsersNumber, u"All users of the domain");
  group(u"Domain Guests", kDomainGuestsNumber, u"All guests of the domain");
  group(u"Domain Computers", kDomainComputersNumber, u"All workstations and servers");
  group(u"Domain Controllers", kDomainControllersNumber, u"All domain controllers");
  group(u"Schema Admins", kSchemaAdminsNumber, u"Administrators of the schema");
  group(u"Enterprise Admins", kEnterpriseAdminsNumber, u"Administrators of the enterprise");
  group(u"Group Policy Creator Owners", kPolicyOwnersNumber, u"May change group policy");
  AddLocalGroup(u"Cert Publishers", {}, kCertPublishersNumber).comment =
      u"May publish certificates";
  AddLocalGroup(u"RAS and IAS Servers", {}, kRasServersNumber).comment =
      u"May read the remote access properties of users";
  guest.primary_group = kDomainGuestsNumber;
  this->group(u"Domain Admins").members = {kAdministratorNumber};
  local_group(u"Administrators").members.push_back(sid_.Account(kDomainAdminsNumber));
  local_group(u"Users").members = {sid_.Account(kDomainUsersNumber)};
}

UserAccount& AccountDatabase::AddUser(TextView name, std::optional<DWORD> number) {
  CheckFree(name);
  const DWORD own = Number(number);
  UserAccount& user = users_[ToUpper(name)];
  user.name = name;
  user.number = own;
  return user;
}

UserAccount& AccountDatabase::AddMachine(TextView computer, bool is_controller) {
  UserAccount& account = AddUser(Text(computer) + u"$");
  account.flags = is_controller ? kAccountServerTrust : kAccountWorkstationTrust;
  account.primary_group = is_controller ? kDomainControllersNumber : kDomainComputersNumber;
  return account;
}

GlobalGroup& AccountDatabase::AddGroup(TextView name, const std::vector<Text>& members,
                                       std::optional<DWORD> number) {
  CheckFree(name);
  std::set<DWORD> numbers;
  for (const Text& member : members) numbers.insert(user(member).number);
  const DWORD own = Number(number);
  return groups_[ToUpper(name)] = {
             .name = Text(name), .number = own, .members = std::move(numbers)};
}

LocalGroup& AccountDatabase::AddLocalGroup(TextView name, std::vector<Sid> members,
                                           std::optional<DWORD> number) {
  CheckFree(name);
  return local_groups_[ToUpper(name)] = {.name = Text(name),
                                         .sid = sid_.Account(Number(number)),
                                         .members = std::move(members)};
}

UserAccount* AccountDatabase::FindUser(TextView name) { return FindIn(users_, name); }

GlobalGroup* AccountDatabase::FindGroup(TextView name) { return FindIn(groups_, name); }

LocalGroup* AccountDatabase::FindLocalGroup(TextView name) { return FindIn(local_groups_, name); }

UserAccount& AccountDatabase::user(TextView name) { return Existing(FindUser(name)); }

GlobalGroup& AccountDatabase::group(TextView name) { return Existing(FindGroup(name)); }

LocalGroup& AccountDatabase::local_group(TextView name) { return Existing(FindLocalGroup(name)); }

Sid AccountDatabase::SidOf(TextView name) const {
  if (const auto* user = FindIn(users_, name)) return sid_.Account(user->number);
  if (const auto* group = FindIn(groups_, name)) return sid_.Account(group->number);
  return Existing(FindIn(local_groups_, name)).sid;
}

DWORD AccountDatabase::Number(std::optional<DWORD> wanted) {
  if (!wanted) {
    while (numbers_.contains(next_number_)) ++next_number_;
    wanted = next_number_;
  }
  if (!numbers_.insert(*wanted).second) throw std::invalid_argument("the number is taken");
  return *wanted;
}

void AccountDatabase::CheckFree(TextView name) const {
  const TextView bare = name.ends_with(u'$') ? name.substr(0, name.size() - 1) : name;
  if (!IsValidName(bare)) throw std::invalid_argument("an account can't have this name");
  const Text key = ToUpper(name);
  if (users_.contains(key) || groups_.contains(key) || local_groups_.contains(key)) {
    throw std::invalid_argument("there is an account of this name");
  }
}

void AccountDatabase::AddBuiltin(TextView name, DWORD number, TextView comment) {
  local_groups_[ToUpper(name)] = {
      .name = Text(name), .sid = Sid(5, {kBuiltin, number}), .comment = Text(comment)};
}

Sid SidForName(TextView name) {
  DWORD parts[3];
  DWORD hash = 2166136261;
  for (DWORD& part : parts) {
    for (const char16_t unit : ToUpper(name)) hash = (hash ^ unit) * 16777619;
    part = hash;
  }
  return Sid(5, {21, parts[0], parts[1], parts[2]});
}

}  // namespace veldmark::simulated
