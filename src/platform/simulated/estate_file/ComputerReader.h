#pragma once

#include "platform/simulated/estate/Estate.h"
#include "platform/simulated/estate_file/Node.h"

namespace veldmark::simulated {

// A computer, which joins the estate.
void ReadComputer(const Node& node, Estate& estate);

}  // namespace veldmark::simulated
