#pragma once

#include "automation/Error.h"
#include "automation/ThreadSlot.h"

namespace veldmark::thread_slot {

/// Takes the thread-local indices that this module needs, once; false where the process has too few
/// left. Whoever enters the module asks this before anything else: the tool chain's own thread
/// support, behind every exception and every local static, ends the process when it finds none.
bool Reserve() noexcept;

/// What a creation fails with where `Reserve` says no.
AutomationError NoRoom();

/// Gives the indices back: for a module that is about to be unloaded. No thread may have a value.
void FreeAll() noexcept;

}  // namespace veldmark::thread_slot
