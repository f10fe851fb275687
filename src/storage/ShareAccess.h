#pragma once

#include <cstdint>

namespace veldmark {

struct Enumeration;

/// The rights that a share with share-level security gives, with the platform's values.
enum ShareAccessEnum : std::int32_t {
  SA_ACCESS_NONE = 0,
  SA_ACCESS_READ = 1,
  SA_ACCESS_WRITE = 2,
  SA_ACCESS_CREATE = 4,
  SA_ACCESS_EXEC = 8,
  SA_ACCESS_DELETE = 16,
  SA_ACCESS_ATRIB = 32,
  SA_ACCESS_PERM = 64,
  SA_ACCESS_ALL = 127,
  SA_ACCESS_GROUP = -32768,
};

const Enumeration& DescribeEnumeration(ShareAccessEnum);

}  // namespace veldmark
