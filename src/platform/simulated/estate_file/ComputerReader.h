#pragma once

#include "platform/simulated/estate/Estate.h"
#include "platform/simulated/estate_file/Node.h"

namespace veldmark::simulated {

// A computer, which joins the estate.
void ReadComputer(const Node& node, Estate& estate);
// What may name accounts of any computer or domain: its groups, and who holds its rights.
void ReadComputerGroups(const Node& node, Estate& estate);

}  // namespace veldmark::simulated
