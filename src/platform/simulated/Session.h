#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string_view>

#include "platform/automation/Text.h"
#include "platform/simulated/Estate.h"
#include "platform/simulated/FaultHook.h"
#include "platform/simulated/Journal.h"
#include "platform/simulated/Ledger.h"

namespace veldmark::simulated {

// What the families of one simulated platform share.
struct Session {
  explicit Session(Estate described) : estate(std::move(described)) {}

  // Begins a call: clears the last error, notes the call, and returns 0 or the code that the call
  // is to fail with before it has any effect.
  DWORD Begin(std::string_view operation, TextView argument = {});

  // Clears the last error for a call that can't fail.
  void BeginSafe(std::string_view operation, TextView argument = {});

  // A value for a new handle, never handed out before. Handles are small positive numbers.
  std::uintptr_t NewHandle() { return next_handle += 4; }

  // A zeroed block of the local heap, noted as handed out by this operation.
  void* AllocateLocal(std::size_t size, std::string_view operation, std::string detail);

  Estate estate;
  Ledger ledger;
  Journal journal;
  FaultHook faults;
  std::uintptr_t next_handle = 0x100;
  // The file handles that hold a connection open: its drive ("Z:") or share, in upper case.
  std::map<std::uintptr_t, Text> network_handles;
  std::map<void*, std::unique_ptr<std::max_align_t[]>> local_memory;
};

// Sets the last error and returns the failure form of most operations.
BOOL Fail(DWORD code);

// A NUL-terminated text; empty for null.
TextView ViewOf(const char16_t* text);

}  // namespace veldmark::simulated
