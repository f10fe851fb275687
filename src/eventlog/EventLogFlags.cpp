#include "eventlog/EventLogFlags.h"

#include "automation/Declare.h"

namespace veldmark {

const Enumeration& DescribeEnumeration(EventLogReadFlagsEnum) {
  static const Enumeration table =
      DeclareEnumeration<EventLogReadFlagsEnum>(u"EventLogReadFlagsEnum",
                                                u"How the platform reads an event log.")
          .Value(u"EVENTLOG_SEQUENTIAL_READ", EVENTLOG_SEQUENTIAL_READ,
                 u"From where the last read ended.")
          .Value(u"EVENTLOG_SEEK_READ", EVENTLOG_SEEK_READ, u"From a record on.")
          .Value(u"EVENTLOG_FORWARDS_READ", EVENTLOG_FORWARDS_READ, u"Towards newer records.")
          .Value(u"EVENTLOG_BACKWARDS_READ", EVENTLOG_BACKWARDS_READ, u"Towards older records.");
  return table;
}

const Enumeration& DescribeEnumeration(EventLogWriteFlagsEnum) {
  static const Enumeration table =
      DeclareEnumeration<EventLogWriteFlagsEnum>(
          u"EventLogWriteFlagsEnum", u"What the platform is told with an event that is written.")
          .Value(u"EVENTLOG_START_PAIRED_EVENT", EVENTLOG_START_PAIRED_EVENT,
                 u"It begins a pair of events.")
          .Value(u"EVENTLOG_END_PAIRED_EVENT", EVENTLOG_END_PAIRED_EVENT, u"It ends the pair.")
          .Value(u"EVENTLOG_END_ALL_PAIRED_EVENTS", EVENTLOG_END_ALL_PAIRED_EVENTS,
                 u"It ends all pairs.")
          .Value(u"EVENTLOG_PAIRED_EVENT_ACTIVE", EVENTLOG_PAIRED_EVENT_ACTIVE,
                 u"It lies within a pair that goes on.")
          .Value(u"EVENTLOG_PAIRED_EVENT_INACTIVE", EVENTLOG_PAIRED_EVENT_INACTIVE,
                 u"It lies within a pair that rests.");
  return table;
}

}  // namespace veldmark
