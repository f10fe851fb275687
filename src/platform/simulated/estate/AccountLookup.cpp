#include "platform/simulated/estate/AccountLookup.h"

#include <algorithm>
#include <vector>

#include "automation/CaseMapping.h"

namespace veldmark::simulated {
namespace {

constexpr TextView kBuiltinName = u"BUILTIN";

// The databases that a computer asks, in this order. Those of domains are asked of a controller.
std::vector<AccountDatabase*> DatabasesFor(Estate& estate, Computer& computer) {
  std::vector<AccountDatabase*> databases = {&estate.AccountsOf(computer)};
  Domain* const home = estate.FindDomain(computer.group());
  const auto add = [&](Domain* domain) {
    if (domain == nullptr || domain->is_workgroup()) return;
    AccountDatabase* const accounts = domain->accounts.get();
    if (accounts != databases.front() && estate.FindController(*domain) == nullptr) return;
    if (std::find(databases.begin(), databases.end(), accounts) == databases.end()) {
      databases.push_back(accounts);
    }
  };
  add(home);
  // Without a controller of its own domain a computer reaches no other.
  const bool has_home = home != nullptr && !home->is_workgroup() &&
                        (IsController(computer.role()) || databases.size() > 1);
  if (!has_home) return databases;
  for (const Text& trusted : home->trusts) add(estate.FindDomain(trusted));
  return databases;
}

std::optional<KnownAccount> FindIn(const AccountDatabase& database, TextView name) {
  const Text key = ToUpper(name);
  const auto as = [&](const auto& account, Sid sid, SidUse use) {
    return KnownAccount{std::move(sid), database.name(), account.name, use};
  };
  if (const auto user = database.users().find(key); user != database.users().end()) {
    return as(user->second, database.sid().Account(user->second.number), SidUse::User);
  }
  if (const auto group = database.groups().find(key); group != database.groups().end()) {
    return as(group->second, database.sid().Account(group->second.number), SidUse::Group);
  }
  const auto local = database.local_groups().find(key);
  if (local == database.local_groups().end()) return std::nullopt;
  KnownAccount found = as(local->second, local->second.sid, SidUse::Alias);
  if (found.sid.Domain() == BuiltinSid()) found.domain = kBuiltinName;
  return found;
}

std::optional<KnownAccount> FindIn(const AccountDatabase& database, const Sid& sid) {
  if (sid == database.sid()) return KnownAccount{sid, database.name(), u"", SidUse::Domain};
  for (const auto& [key, group] : database.local_groups()) {
    if (group.sid == sid) return FindIn(database, group.name);
  }
  if (sid.Domain() != database.sid()) return std::nullopt;
  for (const auto& [key, user] : database.users()) {
    if (database.sid().Account(user.number) == sid) return FindIn(database, user.name);
  }
  for (const auto& [key, group] : database.groups()) {
    if (database.sid().Account(group.number) == sid) return FindIn(database, group.name);
  }
  return std::nullopt;
}

// The caller himself, whom his domain knows also where nobody gave him an account.
std::optional<KnownAccount> Caller(Estate& estate, const AccountDatabase& database) {
  const Sid& sid = estate.token().user();
  if (sid.Domain() != database.sid() || FindIn(database, sid)) return std::nullopt;
  return KnownAccount{sid, database.name(), estate.user_name(), SidUse::User};
}

}  // namespace

std::optional<KnownAccount> FindAccount(Estate& estate, Computer& computer, TextView name) {
  const std::size_t end = name.find(u'\\');
  const bool is_qualified = end != TextView::npos;
  const TextView domain = is_qualified ? name.substr(0, end) : TextView();
  const TextView own_name = is_qualified ? name.substr(end + 1) : name;
  if (own_name.empty()) return std::nullopt;
  for (const KnownAccount& known : estate.known_accounts()) {
    const bool fits = !is_qualified || EqualNoCase(known.domain, domain);
    if (fits && EqualNoCase(known.name, own_name)) return known;
  }
  const std::vector<AccountDatabase*> databases = DatabasesFor(estate, computer);
  for (const AccountDatabase* const database : databases) {
    auto found = FindIn(*database, own_name);
    if (!found) {
      found = Caller(estate, *database);
      if (found && !EqualNoCase(found->name, own_name)) found.reset();
    }
    if (found && (!is_qualified || EqualNoCase(found->domain, domain))) return found;
    if (!is_qualified && EqualNoCase(database->name(), own_name)) {
      return KnownAccount{database->sid(), database->name(), u"", SidUse::Domain};
    }
  }
  return std::nullopt;
}

std::optional<KnownAccount> FindAccount(Estate& estate, Computer& computer, const Sid& sid) {
  for (const KnownAccount& known : estate.known_accounts()) {
    if (known.sid == sid) return known;
  }
  for (const AccountDatabase* const database : DatabasesFor(estate, computer)) {
    if (auto found = FindIn(*database, sid)) return found;
    auto caller = Caller(estate, *database);
    if (caller && caller->sid == sid) return caller;
  }
  return std::nullopt;
}

}  // namespace veldmark::simulated
