#pragma once

#include "platform/simulated/estate/Estate.h"
#include "platform/simulated/estate_file/Node.h"

namespace veldmark::simulated {

// The shares of a computer.
void ReadShares(const Node& node, Computer& computer, const Estate& estate);

}  // namespace veldmark::simulated
