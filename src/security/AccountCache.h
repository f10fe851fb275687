#pragma once

#include "automation/Text.h"
#include "security/SidType.h"

namespace veldmark {

/// What a look-up found out about an account, or the text that stands for its failure.
struct Account {
  Text sid_text;
  Text domain;
  Text name;
  SidTypeEnum sid_type{};
};

/// "DOMAIN\name", or the name alone.
Text QualifiedName(TextView domain, TextView name);

/// Looks an account up in the apartment's caches: by its SID's text, or, without one, by domain and
/// name. On a hit the account is filled and true returned. A failure that was cached for another
/// server is forgotten and is no hit. Never raises.
bool FindCachedAccount(Account& account, TextView server);

/// Keeps an account in both caches unless its SID's text is there already. `server` is the one that
/// was asked. A name with "|" in it comes back cut. Never raises.
void CacheAccount(const Account& account, TextView server);

}  // namespace veldmark
