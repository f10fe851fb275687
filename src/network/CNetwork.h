#pragma once

#include "frame/Counted.h"
#include "platform/automation/Object.h"
#include "platform/automation/Text.h"

namespace veldmark {

/// A network of the network neighbourhood.
class CNetwork : public Exported<CNetwork>, Counted<Counter::kNetwork> {
 public:
  static const Interface& Describe();

  Text NetworkName;
};

}  // namespace veldmark
