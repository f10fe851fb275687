#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <utility>

#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "automation/Conversion.h"
#include "automation/Events.h"
#include "automation/Interface.h"

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

/// Writes progress texts to a log, and what a source finds with them, by its property `name`.
/// The event number `cancelled`, counted from 1, is answered with Cancel.
inline void Log(std::string& log, Object* source = nullptr, TextView name = {}, int cancelled = 0) {
  Listen(StatusObject(), [&log](std::int32_t, std::span<Variant> arguments) {
    log += ToUtf8(ToText(arguments[0])) + "\n";
  });
  if (!source) return;
  Listen(*source, [&log, name, cancelled, count = 0](std::int32_t event,
                                                     std::span<Variant> arguments) mutable {
    const Ref<Object> found = ToObject(arguments[0]);
    log += std::to_string(event) + " " + ToUtf8(found->GetInterface().name) + " " +
           ToUtf8(ToText(Call(*found, name, MemberKind::kGet))) + "\n";
    if (++count == cancelled) arguments[1].Assign(Variant(true));
  });
}

}  // namespace veldmark
