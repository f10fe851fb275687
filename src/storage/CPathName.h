#pragma once

#include "apartment/Counted.h"
#include "automation/Object.h"
#include "automation/Text.h"

namespace veldmark {

/// One line of a folder listing.
class CPathName : public Exported<CPathName>, Counted<Counter::kPathName> {
 public:
  static const Interface& Describe();

  Text PathName;
  bool IsDirectory = false;
};

}  // namespace veldmark
