#pragma once

#include "automation/ModuleCount.h"
#include "automation/Object.h"

namespace veldmark {

/// Held by every call of a client while it lasts: a listener may let go of the object in the middle
/// of its call, and with it of the last thing that keeps the library loaded.
class CallInProgress {
 public:
  explicit CallInProgress(Object& self) : self_(&self) {}

 private:
  ModuleHold module_;  // first, so that it outlasts the object
  Ref<Object> self_;
};

}  // namespace veldmark
