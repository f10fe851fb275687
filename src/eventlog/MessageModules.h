#pragma once

namespace veldmark {

/// Frees every message file that the apartment's cache holds loaded and empties the cache, if
/// exactly one event log is alive. Errors are left in `Err`.
void ReleaseMessageModulesOfLastLog() noexcept;

}  // namespace veldmark
