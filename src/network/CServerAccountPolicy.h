#pragma once

#include "automation/Object.h"

namespace veldmark {

/// The account policy of a computer or domain.
class CServerAccountPolicy : public Exported<CServerAccountPolicy> {
 public:
  static const Interface& Describe();
};

}  // namespace veldmark
