#include "automation/LastError.h"

namespace veldmark {
namespace {

thread_local constinit std::uint32_t last_platform_error = 0;

}  // namespace

std::uint32_t LastPlatformError() noexcept { return last_platform_error; }

void SetLastPlatformError(std::uint32_t code) noexcept { last_platform_error = code; }

}  // namespace veldmark
