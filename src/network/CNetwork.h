#pragma once

#include "apartment/Counted.h"
#include "automation/Object.h"
#include "automation/Text.h"

namespace veldmark {

/// A network of the network neighbourhood.
class CNetwork : public Exported<CNetwork>, Counted<Counter::kNetwork> {
 public:
  static const Interface& Describe();

  Text NetworkName;
};

}  // namespace veldmark
