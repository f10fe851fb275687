#include "platform/operations/Timers.h"

#include <windows.h>

namespace veldmark {

static_assert(kMessageTimer == WM_TIMER);

}  // namespace veldmark
