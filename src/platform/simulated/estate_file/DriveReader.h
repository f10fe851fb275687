#pragma once

#include "platform/simulated/estate/Estate.h"
#include "platform/simulated/estate_file/Node.h"

namespace veldmark::simulated {

// The drives of a computer with their files.
void ReadDrives(const Node& node, Computer& computer, const Estate& estate);

}  // namespace veldmark::simulated
