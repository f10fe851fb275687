#pragma once

#include "platform/simulated/estate/Estate.h"
#include "platform/simulated/estate_file/Node.h"

namespace veldmark::simulated {

// The registry of a computer.
void ReadRegistry(const Node& node, Computer& computer, Estate& estate);

}  // namespace veldmark::simulated
