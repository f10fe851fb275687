#pragma once

#include "automation/Text.h"

namespace veldmark {

/// Appends a line to "VK2_DEBUG.LOG" in the library's own folder while the apartment's debug flag
/// is on, and does nothing otherwise. The line is written in the system's code page, with "?" for
/// what that hasn't. The file is opened and closed for every line; a failure raises the
/// runtime's number, 76 for a missing folder (RuntimeFile.h).
void DebugLog(TextView text);

}  // namespace veldmark
