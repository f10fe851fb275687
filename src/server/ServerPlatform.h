#pragma once

#include "platform/operations/Platform.h"

namespace veldmark {

/// The platform that this server works on. Raises an error where it can't be set up.
Platform& ServerPlatform();

}  // namespace veldmark
