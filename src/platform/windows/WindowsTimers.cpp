#include "platform/windows/WindowsTimers.h"

#include <windows.h>

#include <set>
#include <utility>

#include "platform/windows/Recorded.h"
#include "platform/windows/Sdk.h"

namespace veldmark {

UINT_PTR WindowsTimers::SetTimer(HWND window, UINT_PTR id, UINT elapse, TIMERPROC callback) {
  return Recorded([&] { return UINT_PTR{::SetTimer(Sdk(window), id, elapse, Sdk(callback))}; });
}

BOOL WindowsTimers::KillTimer(HWND window, UINT_PTR id) {
  return Recorded([&] { return ::KillTimer(Sdk(window), id); });
}

void WindowsTimers::DoEvents() {
  Recorded([] {
    // A timer seen twice has become due again during this turn; it ends the turn, or a callback
    // slower than its own timer would never let go.
    std::set<std::pair<::HWND, WPARAM>> fired;
    ::MSG message;
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      if (message.message == WM_QUIT) {
        // Meant for the caller's own loop.
        ::PostQuitMessage(static_cast<int>(message.wParam));
        return;
      }
      const bool again =
          message.message == WM_TIMER && !fired.emplace(message.hwnd, message.wParam).second;
      ::TranslateMessage(&message);
      ::DispatchMessageW(&message);
      if (again) return;
    }
  });
}

}  // namespace veldmark
