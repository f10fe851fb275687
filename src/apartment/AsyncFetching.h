#pragma once

#include <initializer_list>

#include "apartment/Apartment.h"
#include "apartment/CSupport.h"
#include "automation/Events.h"
#include "automation/Interface.h"
#include "automation/Object.h"

namespace veldmark {

/// An event of a class, and the class of the objects that it is for.
struct FoundEvent {
  const Interface& (*describe)();
  std::int32_t event;
};
/// Raises the event that is for the found object's class, if there is one among them.
void ForwardFound(EventSource& events, Object& owner, Object& object, bool& cancel,
                  std::initializer_list<FoundEvent> found_events);

/// An exported class whose `AsyncFetch` turns the walks' objects into events of its own. While it
/// is on, the object hears of what any walk of the apartment delivers by events, not only its own.
template <class Class>
class AsyncFetching : public Exported<Class>, ObjectFoundListener {
 public:
  ~AsyncFetching() override {
    if (engine_) engine_->Unsubscribe(*this);
  }
  EventSource* Events() override { return &events_; }

  bool AsyncFetch() const { return async_fetch_; }
  void PutAsyncFetch(bool value) {
    async_fetch_ = value;
    if (engine_) engine_->Unsubscribe(*this);
    engine_ = value ? Apartment::Current().engine : nullptr;
    if (engine_) engine_->Subscribe(*this);
  }

 protected:
  /// The engine to which the object is subscribed; null while it isn't.
  const Ref<CSupport>& subscribed_engine() const { return engine_; }

  void Forward(Object& object, bool& cancel, std::initializer_list<FoundEvent> found_events) {
    ForwardFound(events_, *this, object, cancel, found_events);
  }

 private:
  Object& Listener() override { return *this; }

  EventSource events_;
  Ref<CSupport> engine_;
  bool async_fetch_ = false;
};

}  // namespace veldmark
