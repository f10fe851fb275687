#pragma once

#include "platform/operations/ServiceControl.h"

namespace veldmark {

/// Services of a computer, kept by its service control manager.
class WindowsServiceControl final : public ServiceControl {};

}  // namespace veldmark
