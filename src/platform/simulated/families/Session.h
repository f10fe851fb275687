#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string_view>
#include <type_traits>

#include "automation/Text.h"
#include "platform/simulated/estate/Estate.h"
#include "platform/simulated/families/FaultHook.h"
#include "platform/simulated/families/Journal.h"
#include "platform/simulated/families/Ledger.h"

namespace veldmark::simulated {

// A file or folder that a handle stands for.
struct OpenFile {
  std::shared_ptr<FileNode> node;
  Sharing sharing;
  DWORD access = 0;  // what the handle may do, without generic bits
  bool deletes_on_close = false;
  std::uint64_t position = 0;

  bool reads() const { return (access & kFileReadData) != 0; }
  bool writes() const { return (access & (kFileWriteData | kFileAppendData)) != 0; }
  bool appends_only() const { return (access & kFileWriteData) == 0; }
};

// A token that a handle stands for.
struct OpenToken {
  std::shared_ptr<Token> token;
  DWORD access = 0;
  bool is_for_impersonation = false;
};

// A call of an operation, from its first statement to its end: meanwhile the platform serves no
// other thread.
class [[nodiscard]] Call {
 public:
  Call(std::unique_lock<std::mutex> turn, FaultHook::Effect effect)
      : turn_(std::move(turn)), effect_(effect) {}
  Call(const Call&) = delete;
  Call& operator=(const Call&) = delete;
  // Leaves the code that a fault of this kind asks for, unless the operation left its own.
  ~Call();

  // 0, or the code that the call is to fail with before it has any effect.
  DWORD fault() const { return effect_.fails; }

 private:
  std::unique_lock<std::mutex> turn_;
  FaultHook::Effect effect_;
};

// What the families of one simulated platform share.
struct Session {
  using Blocks = std::map<void*, std::unique_ptr<std::byte[]>>;

  explicit Session(Estate described) : estate(std::move(described)) {}

  // Begins a call: waits for its turn, clears the last error, notes the call and asks whether it is
  // to fail.
  Call Begin(std::string_view operation, TextView argument = {});

  // The same for a call that can't fail.
  Call BeginSafe(std::string_view operation, TextView argument = {});

  // A turn without a call. Nothing of the caller's may run in it: it might call again.
  std::unique_lock<std::mutex> Turn() { return std::unique_lock(turn_); }

  // A value for a new handle, never handed out before. Handles are small positive numbers.
  std::uintptr_t NewHandle() { return next_handle += 4; }

  // A zeroed block of the local heap, noted as handed out by this operation.
  void* AllocateLocal(std::size_t size, std::string_view operation, std::string detail);

  // The same for a block of the network functions.
  void* AllocateNetwork(std::size_t size, std::string_view operation, std::string detail);

  // The same for a block of the security authority.
  void* AllocateAuthority(std::size_t size, std::string_view operation, std::string detail);

  // The same for a block that goes back by CoTaskMemFree.
  void* AllocateTask(std::size_t size, std::string_view operation, std::string detail);

  Estate estate;
  Ledger ledger;
  Journal journal;
  FaultHook faults;
  std::uintptr_t next_handle = 0x100;
  Blocks local_memory;
  Blocks network_memory;
  Blocks authority_memory;
  Blocks task_memory;
  // Files and tokens are closed by the same operation.
  std::map<std::uintptr_t, std::unique_ptr<OpenFile>> files;
  std::map<std::uintptr_t, OpenToken> tokens;
  // The file handles that hold a connection open: its drive ("Z:") or share, in upper case.
  std::map<std::uintptr_t, Text> network_handles;

 private:
  std::unique_lock<std::mutex> Enter(std::string_view operation, TextView argument);
  void* Allocate(Blocks& blocks, Resource resource, std::size_t size, std::string_view operation,
                 std::string detail);

  std::mutex turn_;
};

// Sets the last error and returns the failure form of most operations.
BOOL Fail(DWORD code);
// The same for an operation that has another failure form.
template <typename Result>
Result Fail(DWORD code, Result failure) {
  Fail(code);
  return failure;
}

// A NUL-terminated text; empty for null.
TextView ViewOf(const char16_t* text);

// Copies a text with its NUL into a buffer of so many units; false where they are too few.
bool CopyText(TextView text, LPWSTR buffer, std::size_t room);

// What the journal notes of a call that names a server: the name as it was given ("-" for null),
// and what else was asked for.
template <typename... Rest>
Text Noted(LPCWSTR server_name, const Rest&... rest) {
  Text noted = server_name == nullptr ? Text(u"-") : Text(server_name);
  [[maybe_unused]] const auto add = [&](const auto& part) {
    noted += u' ';
    if constexpr (std::is_integral_v<std::decay_t<decltype(part)>>) {
      noted += ToText(static_cast<std::int64_t>(part));
    } else {
      noted += TextView(part);
    }
  };
  (add(rest), ...);
  return noted;
}

std::uintptr_t ValueOf(HANDLE handle);
HANDLE HandleOf(std::uintptr_t value);

}  // namespace veldmark::simulated
