#pragma once

#include "frame/Counted.h"
#include "platform/automation/Object.h"
#include "platform/automation/Text.h"

namespace veldmark {

/// A computer in the network.
class CServer : public Exported<CServer>, Counted<Counter::kServer> {
 public:
  static const Interface& Describe();

  Text ServerName;
};

}  // namespace veldmark
