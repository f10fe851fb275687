#pragma once

#include "apartment/Apartment.h"
#include "apartment/Conversions.h"
#include "automation/Error.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"

namespace veldmark {

/// A text that the scheduler hands out, to be freed.
using SchedulerText = TaskMemory<WCHAR>;

/// Raises what a method of the scheduler failed with, as an error of a class.
inline void Require(HRESULT result, TextView class_name) {
  if (Failed(result)) RaisePlatformError(result, SourceOf(class_name));
}

/// A scheduler object, for a computer "\\SRV". Raises as `Require`.
inline Ref<ITaskScheduler> OpenScheduler(const Text& computer, TextView class_name) {
  Ref<ITaskScheduler> scheduler;
  Require(Apartment::Current().platform.tasks.CoCreateInstance(&scheduler), class_name);
  Require(scheduler->SetTargetComputer(computer.c_str()), class_name);
  return scheduler;
}

}  // namespace veldmark
