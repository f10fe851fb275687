#pragma once

#include "platform/simulated/estate/Estate.h"
#include "platform/simulated/estate_file/Node.h"

namespace veldmark::simulated {

// The fields of accounts, which a domain has among its own and a computer as an object. Groups are
// read when all users are there, since members may come from anywhere.
void ReadUsers(const Node& node, AccountDatabase& accounts);
void ReadGroups(const Node& node, AccountDatabase& accounts, Estate& estate);

// An account as "S-1-...", "name" of this database or of all computers', or "DOMAIN\name".
Sid ReadAccount(const Node& node, AccountDatabase& home, Estate& estate);

// Additions to the accounts that every computer knows.
void ReadKnownAccounts(const Node& node, Estate& estate);

}  // namespace veldmark::simulated
