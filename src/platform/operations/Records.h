#pragma once

#include <span>

#include "platform/operations/Types.h"

namespace veldmark {

// The records of a block that an enumeration handed out; none for a null block, whatever it counts.
// The platform vouches for the count, since it says nowhere how large the block is.
template <typename Record>
std::span<const Record> RecordsIn(const void* block, DWORD count) {
  if (block == nullptr) return {};
  return {static_cast<const Record*>(block), count};
}

}  // namespace veldmark
