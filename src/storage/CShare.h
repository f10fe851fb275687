#pragma once

#include <cstdint>
#include <limits>

#include "apartment/Counted.h"
#include "automation/Object.h"
#include "automation/Text.h"

namespace veldmark {

enum ShareTypeEnum : std::int32_t {
  ST_DISKTREE = 0,
  ST_PRINTQ = 1,
  ST_DEVICE = 2,
  ST_IPC = 3,
  ST_SPECIAL = std::numeric_limits<std::int32_t>::min(),
};

/// A shared folder or device of a computer.
class CShare : public Exported<CShare>, Counted<Counter::kShare> {
 public:
  static const Interface& Describe();

  Text ShareName;
  ShareTypeEnum ShareType = ST_DISKTREE;
};

}  // namespace veldmark
