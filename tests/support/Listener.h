#pragma once

#include <functional>

#include "automation/Events.h"
#include "automation/Object.h"

namespace veldmark {

/// A sink that is a function of the event's number and its arguments.
class Listener : public EventSink {
 public:
  using Receiver = std::function<void(std::int32_t, std::span<Variant>)>;
  explicit Listener(Receiver receiver) : receiver_(std::move(receiver)) {}
  void Receive(std::int32_t event, std::span<Variant> arguments) override {
    receiver_(event, arguments);
  }

 private:
  Receiver receiver_;
};

inline void Listen(Object& source, Listener::Receiver receiver) {
  source.Events()->Advise(Make<Listener>(std::move(receiver)));
}

}  // namespace veldmark
