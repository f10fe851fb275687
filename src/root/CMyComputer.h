#pragma once

#include "apartment/Counted.h"
#include "automation/Object.h"

namespace veldmark {

class CDrives;

/// The local computer.
class CMyComputer : public Exported<CMyComputer>, Counted<Counter::kMyComputer> {
 public:
  static const Interface& Describe();

  /// The drives of this computer. None where the platform doesn't tell.
  Ref<CDrives> GetDrives();
};

}  // namespace veldmark
