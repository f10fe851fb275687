#pragma once

#include "apartment/Counted.h"
#include "automation/Object.h"
#include "automation/Text.h"

namespace veldmark {

/// A volume of a server.
class CVolume : public Exported<CVolume>, Counted<Counter::kVolume> {
 public:
  static const Interface& Describe();

  Text VolumeName;
};

}  // namespace veldmark
