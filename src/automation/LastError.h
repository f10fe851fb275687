#pragma once

#include <cstdint>

namespace veldmark {

// The calling thread's last platform error, the source of `Err.LastDllError`. Every operation of
// every family sets it to 0 before it calls the platform and to the thread's last error afterwards,
// so that it always speaks of the latest operation: a value left over from an earlier one can't be
// read as this one's. An operation that reports by its result (registry, network provider) leaves
// here what the thread's last error then is, which says nothing about the outcome.
std::uint32_t LastPlatformError() noexcept;
void SetLastPlatformError(std::uint32_t code) noexcept;

}  // namespace veldmark
