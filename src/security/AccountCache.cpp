#include "security/AccountCache.h"

#include <vector>

#include "accounts/AccountNames.h"
#include "apartment/Apartment.h"
#include "apartment/Errors.h"
#include "automation/CaseMapping.h"
#include "automation/Conversion.h"
#include "collections/Collection.h"

namespace veldmark {
namespace {

// A record is SID text, domain, name, kind and server. None of them is escaped.
constexpr char16_t kSeparator = u'|';
enum Field : std::size_t { kSidText, kDomain, kName, kSidType, kServer, kFieldCount };

std::vector<Text> Split(TextView record) {
  std::vector<Text> fields;
  std::size_t begin = 0;
  for (std::size_t end; (end = record.find(kSeparator, begin)) != TextView::npos; begin = end + 1) {
    fields.emplace_back(record.substr(begin, end - begin));
  }
  fields.emplace_back(record.substr(begin));
  return fields;
}

CollectionKey SidKey(TextView sid_text) { return CollectionKey::Plain(ToUpper(sid_text)); }

CollectionKey NameKey(TextView domain, TextView name) {
  return CollectionKey::Plain(ToUpper(Text(domain) + u"\\" + Text(name)));
}

}  // namespace

Text QualifiedName(TextView domain, TextView name) {
  return domain.empty() ? Text(name) : Text(domain) + u"\\" + Text(name);
}

bool FindCachedAccount(Account& account, TextView server) {
  const Apartment& apartment = Apartment::Current();
  const Ref<Collection> sids = apartment.sid_cache;
  const Ref<Collection> names = apartment.account_cache;
  std::vector<Text> fields;
  const bool found = Swallow([&] {
    if (!sids || !names) Raise(runtime_error::kObjectNotSet);
    fields =
        Split(ToText(account.sid_text.empty() ? names->Item(NameKey(account.domain, account.name))
                                              : sids->Item(SidKey(account.sid_text))));
    if (fields.size() < kFieldCount) Raise(runtime_error::kSubscriptOutOfRange);
  });
  if (!found) return false;
  if (fields[kName] == kAccountUnknown && ToUpper(server) != ToUpper(fields[kServer])) {
    // Another server may know it. By name alone this leaves the failure under its SID.
    if (!account.sid_text.empty()) Swallow([&] { sids->Remove(SidKey(account.sid_text)); });
    Swallow([&] { names->Remove(NameKey(fields[kDomain], fields[kName])); });
    return false;
  }
  account.sid_text = fields[kSidText];
  account.domain = fields[kDomain];
  account.name = fields[kName];
  Swallow([&] { account.sid_type = static_cast<SidTypeEnum>(ToLong(Variant(fields[kSidType]))); });
  return true;
}

void CacheAccount(const Account& account, TextView server) {
  const Apartment& apartment = Apartment::Current();
  const Ref<Collection> sids = apartment.sid_cache;
  const Ref<Collection> names = apartment.account_cache;
  if (!sids || !names) return;
  const CollectionKey sid_key = SidKey(account.sid_text);
  if (Swallow([&] { sids->Item(sid_key); })) return;
  Text record;
  Swallow([&] {
    for (const Text& field : {account.sid_text, account.domain, account.name,
                              ToText(std::int64_t{account.sid_type}), Text(server)}) {
      record.append(field).push_back(kSeparator);
    }
    record.pop_back();
    sids->Add(Variant(record), SidKey(account.sid_text));
  });
  Swallow([&] { names->Add(Variant(record), NameKey(account.domain, account.name)); });
}

}  // namespace veldmark
