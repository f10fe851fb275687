#pragma once

#include <utility>

#include "automation/Object.h"
#include "automation/Text.h"

namespace veldmark {

/// A trigger of a scheduled task.
class CTrigger : public Exported<CTrigger> {
 public:
  static const Interface& Describe();

  /// As put by the library itself; clients only read it.
  const veldmark::Text& Text() const { return text_; }
  void SetText(veldmark::Text text) { text_ = std::move(text); }

 private:
  veldmark::Text text_;
};

}  // namespace veldmark
