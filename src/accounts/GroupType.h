#pragma once

#include <cstdint>

namespace veldmark {

struct Enumeration;

/// The kinds of group.
enum GroupTypeEnum : std::int32_t {
  GT_LocalGroup = 0,
  GT_GlobalGroup = 1,
  GT_WellKnownGroup = 2,
  GT_AccountUnknown = 3,
};

const Enumeration& DescribeEnumeration(GroupTypeEnum);

}  // namespace veldmark
