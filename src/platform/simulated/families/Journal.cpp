#include "platform/simulated/families/Journal.h"

#include <algorithm>

namespace veldmark::simulated {

void Journal::StopKeeping() {
  is_kept_ = false;
  entries_ = {};
}

void Journal::Record(std::string_view operation, std::string argument) {
  entries_.push_back({std::string(operation), std::move(argument)});
}

std::size_t Journal::Count(std::string_view operation) const {
  return static_cast<std::size_t>(
      std::count_if(entries_.begin(), entries_.end(),
                    [&](const Entry& entry) { return entry.operation == operation; }));
}

}  // namespace veldmark::simulated
