#pragma once

#include "automation/Text.h"
#include "platform/simulated/estate/NodeSecurity.h"

namespace veldmark::simulated {

// A named object that has a descriptor.
struct NamedObject {
  Text name;
  SecurityRef security;
};

}  // namespace veldmark::simulated
