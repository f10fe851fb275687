#pragma once

#include "platform/operations/TaskScheduler.h"

namespace veldmark {

/// Scheduled tasks of a computer.
class WindowsTaskScheduler final : public TaskScheduler {};

}  // namespace veldmark
