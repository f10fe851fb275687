#pragma once

#include <cstdint>

namespace veldmark {

/// How many things keep the library loaded: objects that a client holds, calls that a client is in,
/// running timers, locks of the class factory. The library's own references, of its engine and
/// caches, are not among them.
std::int32_t ModuleHolds() noexcept;
void HoldModule() noexcept;
void ReleaseModule() noexcept;

/// One such hold for as long as this lives.
class ModuleHold {
 public:
  ModuleHold() noexcept { HoldModule(); }
  ModuleHold(const ModuleHold&) = delete;
  ModuleHold& operator=(const ModuleHold&) = delete;
  ~ModuleHold() { ReleaseModule(); }
};

}  // namespace veldmark
