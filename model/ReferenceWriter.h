#pragma once

#include <string>

namespace veldmark {

/// The object model as a page for script authors, in Markdown.
std::string ReferenceText();

}  // namespace veldmark
