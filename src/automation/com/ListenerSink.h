#pragma once

#include "automation/Events.h"
#include "automation/com/ComRef.h"

namespace veldmark::com {

/// A client's listener: each event is a late-bound call on it. It may leave events unhandled, and
/// holds nothing of the source.
class ListenerSink final : public EventSink {
 public:
  explicit ListenerSink(ComRef<IDispatch> listener) : listener_(std::move(listener)) {}

  void Receive(std::int32_t event, std::span<Variant> arguments) override;

  IDispatch* Listener() const { return listener_.Get(); }

 private:
  ComRef<IDispatch> listener_;
};

}  // namespace veldmark::com
