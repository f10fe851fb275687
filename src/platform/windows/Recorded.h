#pragma once

#include <windows.h>

#include <type_traits>

#include "automation/LastError.h"

namespace veldmark {

/// Makes one platform call and records the thread's last error for `Err.LastDllError`. The error is
/// cleared before the call, since many calls leave it alone when they succeed: what is recorded is
/// this call's or 0.
template <typename Call>
auto Recorded(Call&& call) {
  ::SetLastError(0);
  if constexpr (std::is_void_v<decltype(call())>) {
    call();
    SetLastPlatformError(::GetLastError());
  } else {
    auto result = call();
    SetLastPlatformError(::GetLastError());
    return result;
  }
}

/// A code that is a result and no last error.
inline unsigned long Answer(unsigned long code) {
  SetLastPlatformError(0);
  return code;
}

}  // namespace veldmark
