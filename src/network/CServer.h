#pragma once

#include "apartment/Counted.h"
#include "automation/Object.h"
#include "automation/Text.h"

namespace veldmark {

/// A computer in the network.
class CServer : public Exported<CServer>, Counted<Counter::kServer> {
 public:
  static const Interface& Describe();

  Text ServerName;
};

}  // namespace veldmark
