#include "automation/ThreadSlot.h"

// On Windows the slot stands in automation/com/ThreadSlot.cpp.
#ifndef _WIN32

namespace veldmark::thread_slot {
namespace {

struct Slot {
  void* value = nullptr;
  void (*end)(void*) = nullptr;

  ~Slot() {
    if (value) end(value);
  }
};

thread_local Slot slot;

}  // namespace

void* Get() noexcept { return slot.value; }

void Put(void* value, void (*end)(void*)) {
  slot.value = value;
  slot.end = end;
}

void Clear() noexcept { slot.value = nullptr; }

}  // namespace veldmark::thread_slot

#endif
