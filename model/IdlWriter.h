#pragma once

#include <string>

namespace veldmark {

/// The object model as interface definitions, from which the type library is compiled.
std::string IdlText();

}  // namespace veldmark
