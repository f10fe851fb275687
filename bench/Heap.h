#pragma once

#include <malloc.h>

#include <cstddef>

namespace veldmark {

/// What the program has allocated, with the large blocks that have a mapping of their own.
inline std::size_t HeapBytes() {
  const auto heap = mallinfo2();
  return heap.uordblks + heap.hblkhd;
}

/// Leaves what was freed with the program, so that no run pays for pages that the run before it
/// gave back to the kernel.
inline void KeepHeap() {
  mallopt(M_MMAP_THRESHOLD, 32 << 20);  // the most that is taken
  mallopt(M_TRIM_THRESHOLD, 1 << 30);
  mallopt(M_TOP_PAD, 64 << 20);
}

}  // namespace veldmark
