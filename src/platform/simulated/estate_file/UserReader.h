#pragma once

#include "platform/simulated/estate/Estate.h"
#include "platform/simulated/estate_file/Node.h"

namespace veldmark::simulated {

// The caller: who he is and what he may do.
void ReadUser(const Node& node, Estate& estate);

}  // namespace veldmark::simulated
