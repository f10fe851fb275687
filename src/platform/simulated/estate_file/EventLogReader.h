#pragma once

#include "platform/simulated/estate/Estate.h"
#include "platform/simulated/estate_file/Node.h"

namespace veldmark::simulated {

// A computer's event logs, whose records may name any account.
void ReadEventLogs(const Node& node, Computer& computer, Estate& estate);

}  // namespace veldmark::simulated
