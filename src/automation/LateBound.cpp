#include "automation/LateBound.h"

#include "automation/Interface.h"

namespace veldmark {

Variant CallMethod(Object& object, TextView name, std::vector<Variant> arguments) {
  if (auto* const late_bound = dynamic_cast<LateBoundObject*>(&object)) {
    return late_bound->CallMethod(name, arguments);
  }
  return Call(object, name, MemberKind::kMethod, std::move(arguments));
}

}  // namespace veldmark
