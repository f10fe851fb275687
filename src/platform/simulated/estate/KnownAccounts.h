#pragma once

#include <vector>

#include "automation/Text.h"
#include "platform/simulated/estate/Sid.h"

namespace veldmark::simulated {

// What a SID stands for (SidTypeEnum).
enum class SidUse : INT {
  User = 1,
  Group,
  Domain,
  Alias,
  WellKnownGroup,
  DeletedAccount,
  Invalid,
  Unknown,
  Computer
};

struct KnownAccount {
  Sid sid;
  Text domain;
  Text name;  // empty for a domain, which its own field names
  SidUse use = SidUse::WellKnownGroup;
};

// The accounts that every computer knows.
std::vector<KnownAccount> WellKnownAccounts();

// What the built-in local groups belong to.
const Sid& BuiltinSid();

}  // namespace veldmark::simulated
