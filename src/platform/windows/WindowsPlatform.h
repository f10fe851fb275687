#pragma once

#include "platform/operations/Platform.h"

namespace veldmark {

/// The operating system that this process runs on. The families hold no state and serve every
/// thread; their records of the last error are the calling thread's own.
Platform& WindowsPlatform();

}  // namespace veldmark
