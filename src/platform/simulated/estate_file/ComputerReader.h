#pragma once

#include "platform/simulated/estate/Estate.h"
#include "platform/simulated/estate_file/Node.h"

namespace veldmark::simulated {

// A computer, which joins the estate.
void ReadComputer(const Node& node, Estate& estate);
// What may name accounts of any computer or domain: its groups, who holds its rights, and its logs.
void ReadComputerGroups(const Node& node, Estate& estate);

}  // namespace veldmark::simulated
