#pragma once

#include <cstdint>

namespace veldmark {

struct Enumeration;

/// How the platform reads a log. No member takes them.
enum EventLogReadFlagsEnum : std::int32_t {
  EVENTLOG_SEQUENTIAL_READ = 1,
  EVENTLOG_SEEK_READ = 2,
  EVENTLOG_FORWARDS_READ = 4,
  EVENTLOG_BACKWARDS_READ = 8,
};

/// What the platform can be told with an event that is written. No member takes them.
enum EventLogWriteFlagsEnum : std::int32_t {
  EVENTLOG_START_PAIRED_EVENT = 1,
  EVENTLOG_END_PAIRED_EVENT = 2,
  EVENTLOG_END_ALL_PAIRED_EVENTS = 4,
  EVENTLOG_PAIRED_EVENT_ACTIVE = 8,
  EVENTLOG_PAIRED_EVENT_INACTIVE = 16,
};

const Enumeration& DescribeEnumeration(EventLogReadFlagsEnum);
const Enumeration& DescribeEnumeration(EventLogWriteFlagsEnum);

}  // namespace veldmark
