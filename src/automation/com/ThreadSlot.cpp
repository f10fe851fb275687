#include "automation/ThreadSlot.h"

#include <memory>
#include <thread>

#include "automation/com/Sdk.h"
#include "automation/com/ThreadSlots.h"

namespace veldmark::thread_slot {
namespace {

struct Slot {
  void* value = nullptr;
  void (*end)(void*) = nullptr;
};

// Two indices for one slot: the fiber-local one is there for its callback, which runs before the
// loader lock is taken; by then it is empty, and so can't tell the value.
constinit DWORD value_index = TLS_OUT_OF_INDEXES;
constinit DWORD notice_index = FLS_OUT_OF_INDEXES;
// That of the tool chain's thread support, which doesn't give it back itself.
constinit DWORD tool_index = TLS_OUT_OF_INDEXES;

void NTAPI OnThreadEnd(void* ended) {
  const std::unique_ptr<Slot> slot(static_cast<Slot*>(ended));
  // A fiber may be ended by another thread, and its value must look like that thread's.
  void* const own = TlsGetValue(value_index);
  TlsSetValue(value_index, slot.get());
  if (slot->value) slot->end(slot->value);
  TlsSetValue(value_index, own == slot.get() ? nullptr : own);
}

BOOL CALLBACK TakeIndices(INIT_ONCE*, void*, void**) {
  const DWORD spare = TlsAlloc();
  if (spare == TLS_OUT_OF_INDEXES) return FALSE;
  value_index = TlsAlloc();
  notice_index = FlsAlloc(&OnThreadEnd);
  TlsFree(spare);
  if (value_index == TLS_OUT_OF_INDEXES || notice_index == FLS_OUT_OF_INDEXES) {
    FreeAll();
    return FALSE;
  }
  // The first look at the thread has the tool chain take the spare index; a value of this thread's
  // behind it tells that it was no other thread that took it.
  static_cast<void>(std::this_thread::get_id());
  if (TlsGetValue(spare)) tool_index = spare;
  return TRUE;
}

Slot* Find() noexcept { return static_cast<Slot*>(TlsGetValue(value_index)); }

}  // namespace

bool Reserve() noexcept {
  static constinit INIT_ONCE once = INIT_ONCE_STATIC_INIT;
  return InitOnceExecuteOnce(&once, &TakeIndices, nullptr, nullptr);
}

AutomationError NoRoom() {
  return AutomationError(runtime_error::kOutOfMemory, Text(kLibraryName),
                         u"No thread-local storage is left in this process");
}

void* Get() noexcept {
  const Slot* slot = Find();
  return slot ? slot->value : nullptr;
}

void Put(void* value, void (*end)(void*)) {
  if (!Reserve()) throw NoRoom();
  if (!Find()) {
    auto slot = std::make_unique<Slot>();
    if (!TlsSetValue(value_index, slot.get())) throw NoRoom();
    if (!FlsSetValue(notice_index, slot.get())) {
      TlsSetValue(value_index, nullptr);
      throw NoRoom();
    }
    slot.release();
  }
  *Find() = {value, end};
}

void Clear() noexcept {
  if (Slot* slot = Find()) *slot = {};
}

void FreeAll() noexcept {
  if (notice_index != FLS_OUT_OF_INDEXES) FlsFree(notice_index);
  for (const DWORD index : {value_index, tool_index}) {
    if (index != TLS_OUT_OF_INDEXES) TlsFree(index);
  }
  notice_index = FLS_OUT_OF_INDEXES;
  value_index = tool_index = TLS_OUT_OF_INDEXES;
}

}  // namespace veldmark::thread_slot
