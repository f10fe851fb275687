#pragma once

#include <type_traits>
#include <utility>

#include "automation/LastError.h"
#include "platform/operations/EventLog.h"
#include "platform/operations/FileSystem.h"
#include "platform/operations/LocalSecurityAuthority.h"
#include "platform/operations/Messages.h"
#include "platform/operations/NetworkManagement.h"
#include "platform/operations/NetworkProvider.h"
#include "platform/operations/Registry.h"
#include "platform/operations/ServiceControl.h"
#include "platform/operations/System.h"

namespace veldmark {

// Sole owner of one handle or block, closed by the family that gave it. `Traits` names the kind's
// `Value` and `Family`, the value that means none (`Empty`), which values own nothing (`IsEmpty`),
// and how to close. Closing leaves the last platform error as it was, so that a failure can still
// be read after its clean-up.
template <typename Traits>
class UniqueHandle {
 public:
  using Value = typename Traits::Value;
  using Family = typename Traits::Family;

  explicit UniqueHandle(Family& family, Value value = Traits::Empty()) noexcept
      : family_(&family), value_(value) {}
  UniqueHandle(UniqueHandle&& other) noexcept : family_(other.family_), value_(other.Release()) {}
  UniqueHandle& operator=(UniqueHandle&& other) noexcept {
    if (this != &other) {
      Reset();
      family_ = other.family_;
      value_ = other.Release();
    }
    return *this;
  }
  UniqueHandle(const UniqueHandle&) = delete;
  UniqueHandle& operator=(const UniqueHandle&) = delete;
  ~UniqueHandle() { Reset(); }

  explicit operator bool() const noexcept { return !Traits::IsEmpty(value_); }
  Value Get() const noexcept { return value_; }

  // The place for an operation to store what it hands out; what was held is closed first.
  Value* Receive() noexcept {
    Reset();
    return &value_;
  }

  // Hands the value to the caller, who closes it from then on.
  Value Release() noexcept { return std::exchange(value_, Traits::Empty()); }

  void Reset(Value value = Traits::Empty()) noexcept {
    const Value old = std::exchange(value_, value);
    if (Traits::IsEmpty(old)) return;
    const DWORD error = LastPlatformError();
    Traits::Close(*family_, old);
    SetLastPlatformError(error);
  }

 private:
  Family* family_;
  Value value_;
};

// The kinds that the member `kClose` of a family closes; a null one owns nothing.
template <auto kClose, typename Held = void>
struct ClosedBy;
template <typename Result, typename Owner, typename Closed, Result (Owner::*kClose)(Closed),
          typename Held>
struct ClosedBy<kClose, Held> {
  // What is held, where that is more than the closing member is told.
  using Value = std::conditional_t<std::is_void_v<Held>, Closed, Held>;
  using Family = Owner;
  static Value Empty() noexcept { return Value{}; }
  static bool IsEmpty(Value value) noexcept { return value == Value{}; }
  static void Close(Family& family, Value value) { (family.*kClose)(value); }
};

// The same for the kinds of which there is none at `kInvalidHandleValue` either.
template <auto kClose>
struct FileClosedBy : ClosedBy<kClose> {
  static HANDLE Empty() noexcept { return kInvalidHandleValue; }
  static bool IsEmpty(HANDLE value) noexcept {
    return value == kInvalidHandleValue || value == nullptr;
  }
};

// A type of its own, which can be declared without this file.
struct RegistryKeyTraits : ClosedBy<&Registry::RegCloseKey> {};

using EventLogHandle = UniqueHandle<ClosedBy<&EventLog::CloseEventLog>>;
using FindHandle = UniqueHandle<FileClosedBy<&FileSystem::FindClose>>;
using FileHandle = UniqueHandle<FileClosedBy<&FileSystem::CloseHandle>>;
using AuthorityMemory = UniqueHandle<ClosedBy<&LocalSecurityAuthority::LsaFreeMemory>>;
using NetworkBuffer = UniqueHandle<ClosedBy<&NetworkManagement::NetApiBufferFree, BYTE*>>;
using NetworkEnumeration = UniqueHandle<ClosedBy<&NetworkProvider::WNetCloseEnum>>;
using Policy = UniqueHandle<ClosedBy<&LocalSecurityAuthority::LsaClose>>;
using RegistryKey = UniqueHandle<RegistryKeyTraits>;
using Module = UniqueHandle<ClosedBy<&Messages::FreeLibrary>>;
using ServiceHandle = UniqueHandle<ClosedBy<&ServiceControl::CloseServiceHandle>>;
using ServiceDatabaseLock = UniqueHandle<ClosedBy<&ServiceControl::UnlockServiceDatabase>>;
template <typename T>
using LocalMemory = UniqueHandle<ClosedBy<&System::LocalFree, T*>>;
template <typename T>
using TaskMemory = UniqueHandle<ClosedBy<&System::CoTaskMemFree, T*>>;

}  // namespace veldmark
