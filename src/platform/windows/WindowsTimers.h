#pragma once

#include "platform/operations/Timers.h"

namespace veldmark {

/// Timers and the message loop of the operating system that this process runs on.
class WindowsTimers final : public Timers {
 public:
  UINT_PTR SetTimer(HWND window, UINT_PTR id, UINT elapse, TIMERPROC callback) override;
  BOOL KillTimer(HWND window, UINT_PTR id) override;
  void DoEvents() override;
};

}  // namespace veldmark
