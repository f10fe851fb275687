#pragma once

#include <map>
#include <optional>

#include "platform/simulated/estate/Estate.h"

namespace veldmark::simulated {

// What a computer answers when it is asked for an account: by what it knows itself, then by its
// domain, where a controller of that can be reached, then by the domains that this one trusts.

// By "name" or "DOMAIN\name". Nothing if there is no such account.
std::optional<KnownAccount> FindAccount(Estate& estate, Computer& computer, TextView name);
std::optional<KnownAccount> FindAccount(Estate& estate, Computer& computer, const Sid& sid);

}  // namespace veldmark::simulated
