#pragma once

#include "frame/Counted.h"
#include "platform/automation/Object.h"
#include "platform/automation/Text.h"

namespace veldmark {

/// A volume of a server.
class CVolume : public Exported<CVolume>, Counted<Counter::kVolume> {
 public:
  static const Interface& Describe();

  Text VolumeName;
};

}  // namespace veldmark
