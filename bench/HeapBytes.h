#pragma once

#include <malloc.h>

#include <cstddef>

namespace veldmark {

/// What the program has allocated, with the large blocks that have a mapping of their own.
inline std::size_t HeapBytes() {
  const auto heap = mallinfo2();
  return heap.uordblks + heap.hblkhd;
}

}  // namespace veldmark
