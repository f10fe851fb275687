#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "platform/operations/TaskScheduler.h"

namespace veldmark {

// A moment of local time: seconds since 1601-01-01 00:00 of that time.
using LocalSeconds = std::int64_t;

// A record of zeros for nothing.
SYSTEMTIME SystemTimeOf(std::optional<LocalSeconds> moment);
// Nothing for a moment that doesn't exist.
std::optional<LocalSeconds> ToLocalSeconds(const SYSTEMTIME& moment);

// Whether the scheduler takes this record, by all but its size.
bool IsSound(const TASK_TRIGGER& trigger);

// A start of a work item, and when its trigger wants its end.
struct TriggeredRun {
  LocalSeconds start = 0;
  std::optional<LocalSeconds> kill_at{};
};

// The earliest run after a moment; nothing if the trigger is disabled, none of time, not sound, or
// has no more. Any record will do.
std::optional<TriggeredRun> NextRun(const TASK_TRIGGER& trigger, LocalSeconds after);
std::optional<TriggeredRun> NextRun(std::span<const TASK_TRIGGER> triggers, LocalSeconds after);

// Why a task with these triggers has no next run: kTaskNoValidTriggers, kTaskEventTrigger or
// kTaskNoMoreRuns.
HRESULT WhyNoRun(std::span<const TASK_TRIGGER> triggers);

// The trigger as the platform puts it in English: "At 9:00 AM every day, starting 3/5/2024".
std::u16string TriggerText(const TASK_TRIGGER& trigger);

}  // namespace veldmark
