#pragma once

#include <cstdint>

namespace veldmark {

struct Enumeration;

/// What an entry of an access control list does.
enum AceTypeEnum : std::int32_t {
  ACCESS_ALLOWED_ACE_TYPE = 0,
  ACCESS_DENIED_ACE_TYPE = 1,
  SYSTEM_AUDIT_ACE_TYPE = 2,
  SYSTEM_ALARM_ACE_TYPE = 3,
  ACCESS_ALLOWED_COMPOUND_ACE_TYPE = 4,
  ACCESS_ALLOWED_OBJECT_ACE_TYPE = 5,
  ACCESS_DENIED_OBJECT_ACE_TYPE = 6,
  SYSTEM_AUDIT_OBJECT_ACE_TYPE = 7,
  SYSTEM_ALARM_OBJECT_ACE_TYPE = 8,
};

const Enumeration& DescribeEnumeration(AceTypeEnum);

}  // namespace veldmark
