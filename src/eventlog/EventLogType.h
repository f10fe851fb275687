#pragma once

#include <cstdint>

namespace veldmark {

struct Enumeration;

/// What kind of event an entry tells of. A record may hold other numbers too.
enum EventLogTypesEnum : std::int32_t {
  EVENTLOG_SUCCESS = 0,
  EVENTLOG_ERROR_TYPE = 1,
  EVENTLOG_WARNING_TYPE = 2,
  EVENTLOG_INFORMATION_TYPE = 4,
  EVENTLOG_AUDIT_SUCCESS = 8,
  EVENTLOG_AUDIT_FAILURE = 16,
};

const Enumeration& DescribeEnumeration(EventLogTypesEnum);

}  // namespace veldmark
