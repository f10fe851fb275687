#pragma once

#include <cstdint>

namespace veldmark {

struct Enumeration;

/// The kinds of network resource that a connection can lead to, with the platform's names and
/// values.
enum ResourceTypeEnum : std::int32_t {
  RESOURCETYPE_ANY = 0,
  RESOURCETYPE_DISK = 1,
  RESOURCETYPE_PRINT = 2,
  RESOURCETYPE_RESERVED = 8,
  RESOURCETYPE_UNKNOWN = -1,
};

const Enumeration& DescribeEnumeration(ResourceTypeEnum);

}  // namespace veldmark
