#include "platform/simulated/estate_file/AccountsReader.h"

#include <algorithm>
#include <array>

#include "automation/CaseMapping.h"
#include "platform/simulated/estate_file/Values.h"

namespace veldmark::simulated {
namespace {

void ReadText(const Node& node, const char* name, Text& place) {
  if (const auto field = node.Field(name)) place = field->String();
}

void ReadTimeOf(const Node& node, const char* name, DWORD& place) {
  if (const auto field = node.Field(name)) place = ReadSeconds(*field);
}

void ReadNumber(const Node& node, const char* name, DWORD& place) {
  if (const auto field = node.Field(name)) place = field->Unsigned32();
}

void ReadFlag(const Node& node, const char* name, DWORD flag, DWORD& flags) {
  if (const auto field = node.Field(name)) {
    flags = field->Boolean() ? flags | flag : flags & ~flag;
  }
}

std::optional<DWORD> ReadOwnNumber(const Node& node) {
  const auto field = node.Field("number");
  return field ? std::optional(field->Unsigned32()) : std::nullopt;
}

// What the database has under this name, or a new account of this name.
template <typename Account, typename Add>
Account& FoundOrAdded(const Node& name, const Node& of, Account* found, Add add) {
  const auto number = ReadOwnNumber(of);
  if (found == nullptr) return name.Try([&]() -> Account& { return add(number); });
  if (number) name.Complain("has a number already");
  return *found;
}

void ReadUser(const Node& node, AccountDatabase& accounts) {
  node.OnlyFields({"name",          "number",       "fullName",     "comment",
                   "userComment",   "homeFolder",   "homeDrive",    "script",
                   "profile",       "workstations", "parameters",   "privilege",
                   "primaryGroup",  "disabled",     "locked",       "passwordNeverExpires",
                   "passwordFixed", "lastLogon",    "lastLogoff",   "expires",
                   "passwordSet",   "logons",       "badPasswords", "passwordExpired",
                   "countryCode",   "codePage",     "password"});
  const Node name = node.Required("name");
  const Text text = name.String();
  UserAccount& user =
      FoundOrAdded(name, node, accounts.FindUser(text),
                   [&](auto number) -> UserAccount& { return accounts.AddUser(text, number); });
  ReadText(node, "fullName", user.full_name);
  ReadText(node, "comment", user.comment);
  ReadText(node, "userComment", user.user_comment);
  ReadText(node, "homeFolder", user.home_folder);
  ReadText(node, "homeDrive", user.home_drive);
  ReadText(node, "script", user.script);
  ReadText(node, "profile", user.profile);
  ReadText(node, "workstations", user.workstations);
  ReadText(node, "parameters", user.parameters);
  if (const auto privilege = node.Field("privilege")) {
    user.privilege = static_cast<DWORD>(privilege->OneOf({"guest", "user", "administrator"}));
  }
  if (const auto group = node.Field("primaryGroup")) user.primary_group = group->Unsigned32();
  ReadFlag(node, "disabled", kAccountDisabled, user.flags);
  ReadFlag(node, "locked", kAccountLockout, user.flags);
  ReadFlag(node, "passwordNeverExpires", kAccountDontExpirePassword, user.flags);
  ReadFlag(node, "passwordFixed", kAccountPasswordCantChange, user.flags);
  ReadTimeOf(node, "lastLogon", user.last_logon);
  ReadTimeOf(node, "lastLogoff", user.last_logoff);
  ReadTimeOf(node, "expires", user.expires);
  if (const auto time = node.Field("passwordSet")) user.password_set = ReadSeconds(*time);
  ReadNumber(node, "logons", user.logons);
  ReadNumber(node, "badPasswords", user.bad_passwords);
  ReadNumber(node, "countryCode", user.country_code);
  ReadNumber(node, "codePage", user.code_page);
  if (const auto expired = node.Field("passwordExpired")) {
    user.password_expired = expired->Boolean();
  }
  if (const auto password = node.Field("password")) {
    Text secret = password->String();
    user.password.emplace(Secret::TakenFrom(secret));
  }
}

void ReadPolicy(const Node& node, AccountPolicy& policy) {
  node.OnlyFields({"minimumLength", "maximumAge", "minimumAge", "forceLogoff", "historyLength",
                   "lockoutDuration", "lockoutWindow", "lockoutThreshold"});
  // Where no time is set, none limits.
  const auto seconds = [&](const char* name, DWORD& place) {
    const auto field = node.Field(name);
    if (field) place = field->IsNull() ? kTimeForever : field->Unsigned32();
  };
  ReadNumber(node, "minimumLength", policy.minimum_length);
  seconds("maximumAge", policy.maximum_age);
  seconds("minimumAge", policy.minimum_age);
  seconds("forceLogoff", policy.force_logoff);
  ReadNumber(node, "historyLength", policy.history_length);
  seconds("lockoutDuration", policy.lockout_duration);
  seconds("lockoutWindow", policy.lockout_window);
  ReadNumber(node, "lockoutThreshold", policy.lockout_threshold);
}

void ReadGlobalGroup(const Node& node, AccountDatabase& accounts) {
  node.OnlyFields({"name", "number", "comment", "attributes", "members"});
  const Node name = node.Required("name");
  const Text text = name.String();
  GlobalGroup& group = FoundOrAdded(
      name, node, accounts.FindGroup(text),
      [&](auto number) -> GlobalGroup& { return accounts.AddGroup(text, {}, number); });
  ReadText(node, "comment", group.comment);
  ReadNumber(node, "attributes", group.attributes);
  if (const auto members = node.Field("members")) {
    for (const Node& member : members->Elements()) {
      member.Try([&] { group.members.insert(accounts.user(member.String()).number); });
    }
  }
}

void ReadLocalGroup(const Node& node, AccountDatabase& accounts, Estate& estate) {
  node.OnlyFields({"name", "number", "comment", "members"});
  const Node name = node.Required("name");
  const Text text = name.String();
  LocalGroup& group = FoundOrAdded(
      name, node, accounts.FindLocalGroup(text),
      [&](auto number) -> LocalGroup& { return accounts.AddLocalGroup(text, {}, number); });
  ReadText(node, "comment", group.comment);
  if (const auto members = node.Field("members")) {
    for (const Node& member : members->Elements()) {
      const Sid sid = ReadAccount(member, accounts, estate);
      if (std::ranges::find(group.members, sid) == group.members.end()) {
        group.members.push_back(sid);
      }
    }
  }
}

}  // namespace

void ReadUsers(const Node& node, AccountDatabase& accounts) {
  if (const auto users = node.Field("users")) {
    for (const Node& user : users->Elements()) ReadUser(user, accounts);
  }
  if (const auto policy = node.Field("policy")) ReadPolicy(*policy, accounts.policy);
}

void ReadGroups(const Node& node, AccountDatabase& accounts, Estate& estate) {
  if (const auto groups = node.Field("groups")) {
    for (const Node& group : groups->Elements()) ReadGlobalGroup(group, accounts);
  }
  if (const auto groups = node.Field("localGroups")) {
    for (const Node& group : groups->Elements()) ReadLocalGroup(group, accounts, estate);
  }
}

Sid ReadAccount(const Node& node, AccountDatabase& home, Estate& estate) {
  const Text text = node.String();
  if (const auto sid = Sid::FromText(text)) return *sid;
  const std::size_t end = text.find(u'\\');
  const Text domain_name = end == Text::npos ? Text() : text.substr(0, end);
  const Text name = end == Text::npos ? text : text.substr(end + 1);
  for (const KnownAccount& known : estate.known_accounts()) {
    if (EqualNoCase(known.name, name) && EqualNoCase(known.domain, domain_name)) return known.sid;
  }
  AccountDatabase* accounts = &home;
  if (!domain_name.empty() && !EqualNoCase(domain_name, u"BUILTIN")) {
    Domain* const domain = estate.FindDomain(domain_name);
    Computer* const computer = domain == nullptr ? estate.FindComputer(domain_name) : nullptr;
    accounts = domain != nullptr     ? domain->accounts.get()
               : computer != nullptr ? &computer->own_accounts()
                                     : nullptr;
    if (accounts == nullptr) node.Complain("is of no domain or computer with accounts");
  }
  return node.Try([&] { return accounts->SidOf(name); });
}

void ReadKnownAccounts(const Node& node, Estate& estate) {
  for (const Node& account : node.Elements()) {
    account.OnlyFields({"sid", "domain", "name", "type"});
    KnownAccount known{.sid = ReadSid(account.Required("sid")), .domain = {}, .name = {}};
    ReadText(account, "domain", known.domain);
    const auto name = account.Field("name");
    if (!name || name->IsNull()) {
      estate.ForgetKnownAccount(known.sid);
      continue;
    }
    known.name = name->String();
    if (const auto type = account.Field("type")) {
      constexpr INT kFirst = static_cast<INT>(SidUse::User);
      known.use =
          SidUse{kFirst +
                 static_cast<INT>(type->OneOf({"user", "group", "domain", "alias", "wellKnownGroup",
                                               "deleted", "invalid", "unknown", "computer"}))};
    }
    estate.AddKnownAccount(std::move(known));
  }
}

}  // namespace veldmark::simulated
