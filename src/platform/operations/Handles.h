#pragma once

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

struct FindHandleTraits {
  using Value = HANDLE;
  using Family = FileSystem;
  static Value Empty() noexcept { return kInvalidHandleValue; }
  static bool IsEmpty(Value value) noexcept { return value == kInvalidHandleValue; }
  static void Close(Family& family, Value value) { family.FindClose(value); }
};

struct FileHandleTraits {
  using Value = HANDLE;
  using Family = FileSystem;
  static Value Empty() noexcept { return kInvalidHandleValue; }
  static bool IsEmpty(Value value) noexcept {
    return value == kInvalidHandleValue || value == nullptr;
  }
  static void Close(Family& family, Value value) { family.CloseHandle(value); }
};

struct RegistryKeyTraits {
  using Value = HKEY;
  using Family = Registry;
  static Value Empty() noexcept { return HKEY{0}; }
  static bool IsEmpty(Value value) noexcept { return value == HKEY{0}; }
  static void Close(Family& family, Value value) { family.RegCloseKey(value); }
};

struct ModuleTraits {
  using Value = HMODULE;
  using Family = Messages;
  static Value Empty() noexcept { return HMODULE{0}; }
  static bool IsEmpty(Value value) noexcept { return value == HMODULE{0}; }
  static void Close(Family& family, Value value) { family.FreeLibrary(value); }
};

template <typename T>
struct LocalMemoryTraits {
  using Value = T*;
  using Family = System;
  static Value Empty() noexcept { return nullptr; }
  static bool IsEmpty(Value value) noexcept { return value == nullptr; }
  static void Close(Family& family, Value value) { family.LocalFree(value); }
};

template <typename T>
struct TaskMemoryTraits {
  using Value = T*;
  using Family = System;
  static Value Empty() noexcept { return nullptr; }
  static bool IsEmpty(Value value) noexcept { return value == nullptr; }
  static void Close(Family& family, Value value) { family.CoTaskMemFree(value); }
};

struct NetworkBufferTraits {
  using Value = BYTE*;
  using Family = NetworkManagement;
  static Value Empty() noexcept { return nullptr; }
  static bool IsEmpty(Value value) noexcept { return value == nullptr; }
  static void Close(Family& family, Value value) { family.NetApiBufferFree(value); }
};

struct NetworkEnumerationTraits {
  using Value = HANDLE;
  using Family = NetworkProvider;
  static Value Empty() noexcept { return nullptr; }
  static bool IsEmpty(Value value) noexcept { return value == nullptr; }
  static void Close(Family& family, Value value) { family.WNetCloseEnum(value); }
};

struct PolicyTraits {
  using Value = HANDLE;
  using Family = LocalSecurityAuthority;
  static Value Empty() noexcept { return nullptr; }
  static bool IsEmpty(Value value) noexcept { return value == nullptr; }
  static void Close(Family& family, Value value) { family.LsaClose(value); }
};

struct AuthorityMemoryTraits {
  using Value = void*;
  using Family = LocalSecurityAuthority;
  static Value Empty() noexcept { return nullptr; }
  static bool IsEmpty(Value value) noexcept { return value == nullptr; }
  static void Close(Family& family, Value value) { family.LsaFreeMemory(value); }
};

struct ServiceHandleTraits {
  using Value = SC_HANDLE;
  using Family = ServiceControl;
  static Value Empty() noexcept { return SC_HANDLE{0}; }
  static bool IsEmpty(Value value) noexcept { return value == SC_HANDLE{0}; }
  static void Close(Family& family, Value value) { family.CloseServiceHandle(value); }
};

struct ServiceDatabaseLockTraits {
  using Value = SC_LOCK;
  using Family = ServiceControl;
  static Value Empty() noexcept { return SC_LOCK{0}; }
  static bool IsEmpty(Value value) noexcept { return value == SC_LOCK{0}; }
  static void Close(Family& family, Value value) { family.UnlockServiceDatabase(value); }
};

struct EventLogTraits {
  using Value = HANDLE;
  using Family = EventLog;
  static Value Empty() noexcept { return nullptr; }
  static bool IsEmpty(Value value) noexcept { return value == nullptr; }
  static void Close(Family& family, Value value) { family.CloseEventLog(value); }
};

using EventLogHandle = UniqueHandle<EventLogTraits>;
using FindHandle = UniqueHandle<FindHandleTraits>;
using FileHandle = UniqueHandle<FileHandleTraits>;
using AuthorityMemory = UniqueHandle<AuthorityMemoryTraits>;
using NetworkBuffer = UniqueHandle<NetworkBufferTraits>;
using NetworkEnumeration = UniqueHandle<NetworkEnumerationTraits>;
using Policy = UniqueHandle<PolicyTraits>;
using RegistryKey = UniqueHandle<RegistryKeyTraits>;
using Module = UniqueHandle<ModuleTraits>;
using ServiceHandle = UniqueHandle<ServiceHandleTraits>;
using ServiceDatabaseLock = UniqueHandle<ServiceDatabaseLockTraits>;
template <typename T>
using LocalMemory = UniqueHandle<LocalMemoryTraits<T>>;
template <typename T>
using TaskMemory = UniqueHandle<TaskMemoryTraits<T>>;

}  // namespace veldmark
