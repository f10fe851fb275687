#include "platform/operations/EventLog.h"

#include <windows.h>

#include "platform/windows/layout/SameLayout.h"

namespace veldmark {

VELDMARK_SAME_LAYOUT(EVENTLOGRECORD, Length, Reserved, RecordNumber, TimeGenerated, TimeWritten,
                     EventID, EventType, NumStrings, EventCategory, ReservedFlags,
                     ClosingRecordNumber, StringOffset, UserSidLength, UserSidOffset, DataLength,
                     DataOffset);

static_assert(kEventlogSequentialRead == EVENTLOG_SEQUENTIAL_READ);
static_assert(kEventlogSeekRead == EVENTLOG_SEEK_READ);
static_assert(kEventlogForwardsRead == EVENTLOG_FORWARDS_READ);
static_assert(kEventlogBackwardsRead == EVENTLOG_BACKWARDS_READ);

}  // namespace veldmark
