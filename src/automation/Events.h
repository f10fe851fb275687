#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>
#include <vector>

#include "automation/Object.h"
#include "automation/Variant.h"

namespace veldmark {

/// One listener of an object's events.
class EventSink : public ReferenceCounted {
 public:
  /// Called on the source's thread, synchronously. By-reference arguments are written through. What
  /// the listener raises is thrown as an `AutomationError`.
  virtual void Receive(std::int32_t event, std::span<Variant> arguments) = 0;
};

/// The sinks of one object's events.
class EventSource {
 public:
  /// Adds a sink and returns its cookie, which is never 0. The sink is held until `Unadvise`.
  std::uint32_t Advise(Ref<EventSink> sink);
  /// Removes a sink, in the middle of an event too: it receives nothing more. False for an unknown
  /// cookie.
  bool Unadvise(std::uint32_t cookie);
  std::vector<std::pair<std::uint32_t, Ref<EventSink>>> Sinks() const { return sinks_; }

  bool HasSinks() const { return !sinks_.empty(); }

  /// Calls every sink that is connected when its turn comes, in the order of their connection. A
  /// sink that raises ends the event, and the error goes to the caller. `owner` stays alive until
  /// the event is over, whatever a sink lets go.
  void Raise(Object& owner, std::int32_t event, std::initializer_list<Variant> arguments);

 private:
  bool IsConnected(std::uint32_t cookie) const;

  std::vector<std::pair<std::uint32_t, Ref<EventSink>>> sinks_;
  std::uint32_t last_cookie_ = 0;
};

}  // namespace veldmark
