#pragma once

#include "platform/operations/Types.h"

namespace veldmark {

inline constexpr UINT kMessageTimer = 0x113;

// Called when a timer is due: the window (null here), kMessageTimer, the timer's identifier, and
// the system's milliseconds.
using TIMERPROC = void(VELDMARK_CALLBACK*)(HWND, UINT, UINT_PTR, DWORD);

// Timers and the message loop that they fire from. A family of its own, so that a simulated
// computer can run on the host's real timers.
class Timers {
 public:
  virtual ~Timers() = default;

  // Starts a timer of the calling thread that calls `callback` every `elapse` milliseconds (at
  // least 10) out of the thread's message loop. With no window the identifier is ignored, unless it
  // names a running timer of this thread, which is then set anew. Returns the timer's identifier
  // for KillTimer, 0 on failure.
  virtual UINT_PTR SetTimer(HWND window, UINT_PTR id, UINT elapse, TIMERPROC callback) = 0;

  // Ends a timer. Non-zero on success; 0 if there is none of this identifier.
  virtual BOOL KillTimer(HWND window, UINT_PTR id) = 0;

  // Our own: one turn of the calling thread's message loop. Dispatches everything that waits,
  // timers that are due included, and returns without waiting for more.
  virtual void DoEvents() = 0;
};

}  // namespace veldmark
