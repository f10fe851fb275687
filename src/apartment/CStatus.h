#pragma once

#include "automation/Events.h"
#include "automation/Object.h"
#include "automation/Text.h"

namespace veldmark {

/// Narrates the progress of long walks and asks whether to stop them. One instance an apartment, in
/// `status`.
class CStatus : public Exported<CStatus> {
 public:
  static const Interface& Describe();
  EventSource* Events() override { return &events_; }

  /// The object counts report for "ObjectCounts"; for any other text a sentence that it isn't
  /// recognized.
  Text GetDebugInfo(const Text& debug_type);

  /// Fires the event Status with what `make_text` gives, which is asked only when somebody listens.
  template <class MakeText>
  void RaiseStatus(MakeText&& make_text) {
    if (events_.HasSinks()) RaiseStatusText(make_text());
  }
  /// Fires the event CancelLoading; `cancel` is what the listeners left in it, False without one.
  void RaiseCancelLoading(std::int32_t object_count, bool& cancel);

 private:
  void RaiseStatusText(const Text& text);

  EventSource events_;
};

}  // namespace veldmark
