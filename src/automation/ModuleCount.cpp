#include "automation/ModuleCount.h"

#include <atomic>

namespace veldmark {
namespace {

// The one value that apartments share: an object of any of them keeps the module.
constinit std::atomic<std::int32_t> holds{0};

}  // namespace

std::int32_t ModuleHolds() noexcept { return holds.load(); }
void HoldModule() noexcept { ++holds; }
void ReleaseModule() noexcept { --holds; }

}  // namespace veldmark
