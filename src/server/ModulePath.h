#pragma once

#include <string>

namespace veldmark {

/// The full path of this module's file.
std::wstring ModulePath();

}  // namespace veldmark
