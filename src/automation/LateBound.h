#pragma once

#include <span>
#include <vector>

#include "automation/Object.h"
#include "automation/Variant.h"

namespace veldmark {

/// An object of another library. It has no table: its members are known to itself alone.
class LateBoundObject : public Object {
 public:
  /// Calls a method by its name. By-reference arguments are written through. Raises 438 where there
  /// is no such method, and what the method raises.
  virtual Variant CallMethod(TextView name, std::span<Variant> arguments) = 0;
};

/// The same for an object of any kind.
Variant CallMethod(Object& object, TextView name, std::vector<Variant> arguments);

}  // namespace veldmark
