#pragma once

namespace veldmark::thread_slot {

/// The calling thread's value; null until one is put.
void* Get() noexcept;

/// Puts the calling thread's value. When the thread ends with a value that isn't null, `end` is
/// called there with it, outside the loader lock; the value is still in its place during the call.
/// Raises 7 where the platform has no room for it, and has put nothing then.
void Put(void* value, void (*end)(void* value));

/// Leaves the calling thread without a value.
void Clear() noexcept;

}  // namespace veldmark::thread_slot
