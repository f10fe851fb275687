#include "platform/simulated/Session.h"

#include <cstring>

#include "platform/operations/LastError.h"

namespace veldmark::simulated {

DWORD Session::Begin(std::string_view operation, TextView argument) {
  BeginSafe(operation, argument);
  return faults.Next(operation);
}

void Session::BeginSafe(std::string_view operation, TextView argument) {
  SetLastPlatformError(0);
  journal.Record(operation, ToUtf8(argument));
}

void* Session::AllocateLocal(std::size_t size, std::string_view operation, std::string detail) {
  // A block of no bytes is a block all the same.
  auto block = std::make_unique<std::max_align_t[]>(size / sizeof(std::max_align_t) + 1);
  void* const memory = block.get();
  // Initialising the elements leaves the padding within them as it was.
  std::memset(memory, 0, size);
  local_memory[memory] = std::move(block);
  ledger.Opened(Resource::LocalMemory, reinterpret_cast<std::uintptr_t>(memory), operation,
                std::move(detail));
  return memory;
}

BOOL Fail(DWORD code) {
  SetLastPlatformError(code);
  return 0;
}

TextView ViewOf(const char16_t* text) { return text == nullptr ? TextView() : TextView(text); }

}  // namespace veldmark::simulated
