#pragma once

#include "frame/Counted.h"
#include "platform/automation/Object.h"
#include "platform/automation/Text.h"

namespace veldmark {

/// One line of a folder listing.
class CPathName : public Exported<CPathName>, Counted<Counter::kPathName> {
 public:
  static const Interface& Describe();

  Text PathName;
  bool IsDirectory = false;
};

}  // namespace veldmark
