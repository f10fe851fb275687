#pragma once

#include <cstdint>

namespace veldmark {

struct Enumeration;

/// The kinds of user account.
enum UserTypeEnum : std::int32_t {
  UT_LocalUser = 0,
  UT_GlobalUser = 1,
  UT_AccountUnknown = 2,
};

const Enumeration& DescribeEnumeration(UserTypeEnum);

}  // namespace veldmark
