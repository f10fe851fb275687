#include "platform/simulated/families/Session.h"

#include "automation/LastError.h"

namespace veldmark::simulated {

Call::~Call() {
  if (effect_.leaves != 0 && LastPlatformError() == 0) SetLastPlatformError(effect_.leaves);
}

Call Session::Begin(std::string_view operation, TextView argument) {
  auto turn = Enter(operation, argument);
  return Call(std::move(turn), faults.Next(operation));
}

Call Session::BeginSafe(std::string_view operation, TextView argument) {
  return Call(Enter(operation, argument), {});
}

std::unique_lock<std::mutex> Session::Enter(std::string_view operation, TextView argument) {
  auto turn = Turn();
  SetLastPlatformError(0);
  if (journal.is_kept()) journal.Record(operation, ToUtf8(argument));
  return turn;
}

void* Session::AllocateLocal(std::size_t size, std::string_view operation, std::string detail) {
  return Allocate(local_memory, Resource::LocalMemory, size, operation, std::move(detail));
}

void* Session::AllocateNetwork(std::size_t size, std::string_view operation, std::string detail) {
  return Allocate(network_memory, Resource::NetworkBuffer, size, operation, std::move(detail));
}

void* Session::AllocateAuthority(std::size_t size, std::string_view operation, std::string detail) {
  return Allocate(authority_memory, Resource::AuthorityMemory, size, operation, std::move(detail));
}

void* Session::AllocateTask(std::size_t size, std::string_view operation, std::string detail) {
  return Allocate(task_memory, Resource::TaskMemory, size, operation, std::move(detail));
}

void* Session::Allocate(Blocks& blocks, Resource resource, std::size_t size,
                        std::string_view operation, std::string detail) {
  // A block of no bytes is a block all the same.
  auto block = std::make_unique<std::byte[]>(size == 0 ? 1 : size);
  void* const memory = block.get();
  blocks[memory] = std::move(block);
  ledger.Opened(resource, reinterpret_cast<std::uintptr_t>(memory), operation, std::move(detail));
  return memory;
}

BOOL Fail(DWORD code) {
  SetLastPlatformError(code);
  return 0;
}

TextView ViewOf(const char16_t* text) { return text == nullptr ? TextView() : TextView(text); }

bool CopyText(TextView text, LPWSTR buffer, std::size_t room) {
  if (room <= text.size()) return false;
  buffer[text.copy(buffer, text.size())] = u'\0';
  return true;
}

std::uintptr_t ValueOf(HANDLE handle) { return reinterpret_cast<std::uintptr_t>(handle); }

HANDLE HandleOf(std::uintptr_t value) { return reinterpret_cast<HANDLE>(value); }

}  // namespace veldmark::simulated
