#pragma once

#include <utility>

#include "apartment/Counted.h"
#include "automation/Object.h"
#include "automation/Text.h"

namespace veldmark {

/// A group of a computer or domain, or a well-known one.
class CGroup : public Exported<CGroup>, Counted<Counter::kGroup> {
 public:
  static const Interface& Describe();

  /// As put by the library itself; clients only read it.
  const Text& AccountDisplayName() const { return account_display_name_; }
  void SetAccountDisplayName(Text account_display_name) {
    account_display_name_ = std::move(account_display_name);
  }

 private:
  Text account_display_name_;
};

}  // namespace veldmark
