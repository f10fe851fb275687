#pragma once

#include <cstdint>
#include <limits>

namespace veldmark {

struct Enumeration;

/// What is shared, with the platform's values. `ST_SPECIAL` is a flag beside the others.
enum ShareTypeEnum : std::int32_t {
  ST_DISKTREE = 0,
  ST_PRINTQ = 1,
  ST_DEVICE = 2,
  ST_IPC = 3,
  ST_SPECIAL = std::numeric_limits<std::int32_t>::min(),
};

const Enumeration& DescribeEnumeration(ShareTypeEnum);

}  // namespace veldmark
