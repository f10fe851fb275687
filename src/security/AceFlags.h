#pragma once

#include <cstdint>

namespace veldmark {

struct Enumeration;

/// Where an entry of an access control list applies, to be combined.
enum AceFlagsEnum : std::int32_t {
  OBJECT_INHERIT_ACE = 1,
  CONTAINER_INHERIT_ACE = 2,
  NO_PROPAGATE_INHERIT_ACE = 4,
  INHERIT_ONLY_ACE = 8,
  INHERITED_ACE = 16,
  VALID_INHERIT_FLAGS = 31,
};

const Enumeration& DescribeEnumeration(AceFlagsEnum);

}  // namespace veldmark
