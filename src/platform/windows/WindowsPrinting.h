#pragma once

#include "platform/operations/Printing.h"

namespace veldmark {

/// Printers of a computer.
class WindowsPrinting final : public Printing {};

}  // namespace veldmark
