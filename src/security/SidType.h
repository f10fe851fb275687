#pragma once

#include <cstdint>

namespace veldmark {

struct Enumeration;

/// What a SID stands for. 0, which has no name, means that it was not looked up.
enum SidTypeEnum : std::int32_t {
  SidTypeUser = 1,
  SidTypeGroup = 2,
  SidTypeDomain = 3,
  SidTypeAlias = 4,
  SidTypeWellKnownGroup = 5,
  SidTypeDeletedAccount = 6,
  SidTypeInvalid = 7,
  SidTypeUnknown = 8,
  SidTypeComputer = 9,
};

const Enumeration& DescribeEnumeration(SidTypeEnum);

}  // namespace veldmark
