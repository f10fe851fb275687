#pragma once

#include <cstdint>

#include "automation/Error.h"

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

/// The whole error that `action` raises, "5|Veldmark2.CFolder|Access is denied."; empty for none.
template <class Action>
Text FailureOf(Action&& action) {
  try {
    action();
    return {};
  } catch (const AutomationError& error) {
    return ToText(std::int64_t{error.number}) + u"|" + error.source + u"|" + error.description;
  }
}

}  // namespace veldmark
