#pragma once

#include "automation/ThreadSlot.h"

namespace veldmark::thread_slot {

/// Ends the values of all threads, each in its place while it ends, and gives the slots back: for
/// a module that is about to be unloaded while its threads go on. Nothing may use the slots after
/// this.
void FreeAll() noexcept;

}  // namespace veldmark::thread_slot
