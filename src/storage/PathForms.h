#pragma once

#include "automation/Text.h"

namespace veldmark {

/// The plain form of a path: loses a leading "\\?\", and then a leading "UNC" becomes "\". The
/// second step also meets a path that never had the prefix: "UNCLE\x" becomes "\LE\x".
Text PlainPath(Text path);

}  // namespace veldmark
