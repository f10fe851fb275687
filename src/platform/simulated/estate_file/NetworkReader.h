#pragma once

#include "platform/simulated/estate/Estate.h"
#include "platform/simulated/estate_file/Node.h"

namespace veldmark::simulated {

// What this computer sees of networks: they take the place of the usual one.
void ReadNetworks(const Node& node, Estate& estate);
// Domains with their users, and workgroups. Their groups are read when all computers are there.
void ReadDomains(const Node& node, Estate& estate);
void ReadWorkgroups(const Node& node, Estate& estate);
void ReadDomainGroups(const Node& node, Estate& estate);

std::vector<Address> ReadAddresses(const Node& node);
// Host names beside those of the computers.
void ReadHosts(const Node& node, Estate& estate);

}  // namespace veldmark::simulated
