#pragma once

#include "platform/operations/Printing.h"
#include "platform/simulated/families/Session.h"

namespace veldmark::simulated {

// The printers of an estate's computers.
class SimulatedPrinting : public Printing {
 public:
  explicit SimulatedPrinting(Session& session) : session_(session) {}

  BOOL EnumPrintersW(DWORD flags, LPCWSTR name, DWORD level, BYTE* buffer, DWORD size,
                     DWORD* needed, DWORD* returned) override;

 private:
  Session& session_;
};

}  // namespace veldmark::simulated
