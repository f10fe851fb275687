#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/operations/Types.h"

namespace veldmark::simulated {

// Makes calls fail with a code. A failed call has no effect and returns its operation's failure
// form. The one exception are the operations that give something back (FindClose, CloseHandle,
// RegCloseKey, FreeLibrary, LocalFree, NetApiBufferFree, WNetCloseEnum, LsaFreeMemory, LsaClose,
// WSACleanup, CloseServiceHandle, UnlockServiceDatabase, CloseEventLog): those report the failure
// and yet take it back, so that a sweep over all calls can ask for a clean ledger. Calls that can't
// fail (CoTaskMemFree, lstrlenW, DoEvents, Sleep, GetLocalTime, ModuleFolder,
// GetSecurityDescriptorLength, LsaNtStatusToWinError) are not counted.
class FaultHook {
 public:
  // What a call is to do, by codes that are 0 for nothing.
  struct Effect {
    DWORD fails = 0;   // fail with this
    DWORD leaves = 0;  // do its work, and leave this as the last error
  };

  // Fails the `nth` call from here on, counted from 1, whatever its name.
  void FailNth(std::size_t nth, DWORD code);

  // Fails every call of a name.
  void FailEvery(std::string_view operation, DWORD code);

  // Fails the `nth` call of a name from here on, counted from 1.
  void FailNthOf(std::string_view operation, std::size_t nth, DWORD code);

  // Lets every call of a name do its work, and leave a code as the thread's last error all the
  // same.
  void LeaveEvery(std::string_view operation, DWORD code);

  // Forgets what is to fail, and the counts.
  void Clear();

  std::size_t calls() const { return calls_; }
  std::size_t fired() const { return fired_; }
  // The call that did something else last.
  const std::string& last_fired() const { return last_fired_; }

  // Counts a call.
  Effect Next(std::string_view operation);

 private:
  struct Rule {
    std::string operation;  // empty: any
    std::size_t countdown;  // 0: every call
    Effect effect;
  };

  std::vector<Rule> rules_;
  std::size_t calls_ = 0;
  std::size_t fired_ = 0;
  std::string last_fired_;
};

}  // namespace veldmark::simulated
