#pragma once

namespace veldmark::thread_slot {

/// The calling thread's value; null until one is put.
void* Get() noexcept;

/// Puts the calling thread's value. When the thread ends with a value that isn't null, `end` is
/// called there with it, outside the loader lock; the value is still in its place during the call.
void Put(void* value, void (*end)(void* value)) noexcept;

}  // namespace veldmark::thread_slot
