#include "platform/operations/LastError.h"

namespace veldmark {
namespace {

thread_local constinit DWORD last_platform_error = 0;

}  // namespace

DWORD LastPlatformError() noexcept { return last_platform_error; }

void SetLastPlatformError(DWORD code) noexcept { last_platform_error = code; }

}  // namespace veldmark
