#pragma once

#include "platform/operations/EventLog.h"

namespace veldmark {

/// Event logs: live ones of any computer, and backup files.
class WindowsEventLog final : public EventLog {};

}  // namespace veldmark
