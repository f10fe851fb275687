#pragma once

#include "platform/simulated/estate/Estate.h"
#include "platform/simulated/estate_file/Node.h"

namespace veldmark::simulated {

void ReadPrinters(const Node& node, Computer& computer, const Estate& estate);

}  // namespace veldmark::simulated
