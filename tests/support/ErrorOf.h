#pragma once

#include <cstdint>

#include "platform/automation/Error.h"

namespace veldmark {

/// The number of the error that `action` raises; 0 for none.
template <class Action>
std::int32_t ErrorOf(Action&& action) {
  try {
    action();
    return 0;
  } catch (const AutomationError& error) {
    return error.number;
  }
}

}  // namespace veldmark
