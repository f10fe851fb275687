#pragma once

#include <cstdint>
#include <string>

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

/// The text that `action` gives, or "error 5" for the error that it raises.
template <class Action>
std::string OutcomeOf(Action&& action) {
  std::string outcome;
  const std::int32_t error = ErrorOf([&] { outcome = action(); });
  return error == 0 ? outcome : "error " + std::to_string(error);
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
