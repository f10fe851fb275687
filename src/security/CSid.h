#pragma once

#include <utility>

#include "frame/Counted.h"
#include "platform/automation/Object.h"
#include "platform/automation/Text.h"

namespace veldmark {

/// A security identifier.
class CSid : public Exported<CSid>, Counted<Counter::kSid> {
 public:
  static const Interface& Describe();

  /// As put by the library itself; clients only read it.
  const Text& SidText() const { return sid_text_; }
  void SetSidText(Text sid_text) { sid_text_ = std::move(sid_text); }

 private:
  Text sid_text_;
};

}  // namespace veldmark
