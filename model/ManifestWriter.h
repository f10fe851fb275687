#pragma once

#include <string>

namespace veldmark {

/// The assembly manifest with which a program uses the server without its being registered.
std::string ManifestText();

}  // namespace veldmark
