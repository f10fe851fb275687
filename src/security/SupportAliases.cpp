#include <algorithm>
#include <array>
#include <optional>

#include "accounts/CUser.h"
#include "accounts/CUsers.h"
#include "apartment/CSupport.h"
#include "apartment/Errors.h"
#include "automation/CaseMapping.h"
#include "network/CServer.h"
#include "security/BinarySid.h"
#include "security/CSid.h"

namespace veldmark {
namespace {

constexpr std::uint8_t kWorld = 1;
constexpr std::uint8_t kCreator = 3;
constexpr std::uint8_t kNt = 5;
constexpr std::int32_t kBuiltinDomain = 32;

/// An alias of one of the SIDs that every computer has.
struct WellKnownAlias {
  TextView alias;
  std::uint8_t authority;
  std::int32_t sub_authority;
  std::int32_t group_type;
};

constexpr WellKnownAlias kWellKnownAliases[] = {
    {u"WD", kWorld, 0, WKG_EVERYONE},
    {u"CO", kCreator, 0, WKG_CREATOROWNER},
    {u"CG", kCreator, 1, WKG_CREATORGROUP},
    {u"NU", kNt, 2, WKG_NETWORK},
    {u"IU", kNt, 4, WKG_INTERACTIVE},
    {u"SU", kNt, 6, WKG_SERVICE},
    {u"AN", kNt, 7, WKG_ANONYMOUSLOGON},
    {u"ED", kNt, 9, WKG_ENTERPRISEDOMAINCONTROLLERS},
    {u"PS", kNt, 10, WKG_SELF},
    {u"AU", kNt, 11, WKG_AUTHENTICATEDUSERS},
    {u"RC", kNt, 12, WKG_RESTRICTEDCODE},
    {u"SY", kNt, 18, WKG_SYSTEM},
    // The service accounts have the types of the logon groups, not their own.
    {u"LS", kNt, 19, WKG_SERVICE},
    {u"NS", kNt, 20, WKG_NETWORK},
};

/// An alias of an account that a number stands for, within the builtin domain or a real one.
struct RelativeAlias {
  TextView alias;
  std::int32_t id;
};

constexpr RelativeAlias kBuiltinAliases[] = {
    {u"BA", 544}, {u"BU", 545}, {u"BG", 546}, {u"PU", 547}, {u"AO", 548}, {u"SO", 549},
    {u"PO", 550}, {u"BO", 551}, {u"RE", 552}, {u"RU", 554}, {u"RD", 555}, {u"NO", 556},
};

constexpr TextView kEnterpriseAdmins = u"EA";
constexpr RelativeAlias kDomainAliases[] = {
    {u"DA", 512}, {u"DU", 513}, {u"DG", 514}, {u"DC", 515},
    {u"DD", 516}, {u"CA", 517}, {u"SA", 518}, {kEnterpriseAdmins, 519},
    {u"PA", 520}, {u"RS", 553},
};

template <class Alias, std::size_t kCount>
const Alias* Find(const Alias (&aliases)[kCount], TextView wanted) {
  const auto* const found = std::ranges::find(aliases, wanted, &Alias::alias);
  return found == std::end(aliases) ? nullptr : found;
}

}  // namespace

Ref<CSid> CSupport::TranslateSid(const Text& alias, const Text& sid_lookup_server,
                                 const Text& forest_root_dc) {
  return ReRaising([&] {
    const Text wanted = ToUpper(alias);
    Ref<CSid> sid;
    if (const auto* const known = Find(kWellKnownAliases, wanted)) {
      sid = InitializeSid(known->authority, {&known->sub_authority, 1});
      sid->SetWellKnownGroupType(static_cast<WellKnownGroupTypeEnum>(known->group_type));
    } else if (const auto* const builtin = Find(kBuiltinAliases, wanted)) {
      sid = InitializeSid(kNt, std::array{kBuiltinDomain, builtin->id});
      sid->SetResidesOnServer(sid_lookup_server);
    } else if (const auto* const relative = Find(kDomainAliases, wanted)) {
      const bool of_forest = wanted == kEnterpriseAdmins && !forest_root_dc.empty();
      auto authorities = GetDomainAuthorities(of_forest ? forest_root_dc : sid_lookup_server);
      authorities.push_back(relative->id);
      sid = InitializeSid(kNt, authorities);
      sid->SetResidesOnServer(sid_lookup_server);
    } else if (wanted == u"LA" || wanted == u"LG") {
      // The accounts are asked for their SIDs, but none is ever taken for the alias: the number
      // compared with theirs lies behind the SID, where nothing may be read.
      const auto users = GetUsers(*GetServer(sid_lookup_server, Text()), false);
      for (std::int32_t index = 1; index <= users->Count(); ++index) {
        users->ItemByIndex(index)->GetSid();
      }
    }
    if (!sid) Raise(runtime_error::kObjectNotSet);
    // The look-up fills the caches.
    sid->AccountDisplayName();
    return sid;
  });
}

}  // namespace veldmark
