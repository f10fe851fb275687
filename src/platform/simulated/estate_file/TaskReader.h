#pragma once

#include "platform/simulated/estate/Estate.h"
#include "platform/simulated/estate_file/Node.h"

namespace veldmark::simulated {

// The scheduled tasks of a computer, whose drives are there already. Each is written as a job file;
// for a job file that is there, the task only says what stands in none.
void ReadTasks(const Node& node, Computer& computer, Estate& estate);

}  // namespace veldmark::simulated
