#pragma once

#include "platform/operations/Printing.h"

namespace veldmark {

/// Printers of a computer.
class WindowsPrinting final : public Printing {
 public:
  BOOL EnumPrintersW(DWORD flags, LPCWSTR name, DWORD level, BYTE* buffer, DWORD size,
                     DWORD* needed, DWORD* returned) override;
};

}  // namespace veldmark
