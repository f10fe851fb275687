#include "automation/ThreadSlot.h"

#include <memory>

#include "automation/com/Sdk.h"
#include "automation/com/ThreadSlots.h"

namespace veldmark::thread_slot {
namespace {

struct Slot {
  void* value = nullptr;
  void (*end)(void*) = nullptr;
};

void NTAPI OnThreadEnd(void* ended);

/// Two indices for one slot: the fiber-local one is there for its callback, which runs before the
/// loader lock is taken; by then it is empty, and so can't tell the value.
struct Indices {
  DWORD value = TlsAlloc();
  DWORD notice = FlsAlloc(&OnThreadEnd);
};

Indices& TheIndices() {
  static Indices indices;
  return indices;
}

void NTAPI OnThreadEnd(void* ended) {
  const std::unique_ptr<Slot> slot(static_cast<Slot*>(ended));
  const DWORD index = TheIndices().value;
  // At an unload this is another thread's slot, whose value must look like this thread's.
  void* const own = TlsGetValue(index);
  TlsSetValue(index, slot.get());
  if (slot->value) slot->end(slot->value);
  TlsSetValue(index, own == slot.get() ? nullptr : own);
}

}  // namespace

void* Get() noexcept {
  const Slot* slot = static_cast<const Slot*>(TlsGetValue(TheIndices().value));
  return slot ? slot->value : nullptr;
}

void Put(void* value, void (*end)(void*)) noexcept {
  const Indices& indices = TheIndices();
  Slot* slot = static_cast<Slot*>(TlsGetValue(indices.value));
  if (!slot) {
    if (!value) return;
    slot = std::make_unique<Slot>().release();
    TlsSetValue(indices.value, slot);
    FlsSetValue(indices.notice, slot);
  }
  *slot = {value, end};
}

void FreeAll() noexcept {
  FlsFree(TheIndices().notice);
  TlsFree(TheIndices().value);
}

}  // namespace veldmark::thread_slot
