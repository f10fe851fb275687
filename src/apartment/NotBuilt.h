#pragma once

#include "automation/Error.h"

namespace veldmark {

/// Raised by a member of the published model whose work this version doesn't do; docs/status.md
/// lists them.
[[noreturn]] inline void RaiseNotBuilt() { Raise(runtime_error::kActionNotSupported); }

}  // namespace veldmark
