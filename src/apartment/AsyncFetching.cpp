#include "apartment/AsyncFetching.h"

namespace veldmark {

void ForwardFound(EventSource& events, Object& owner, Object& object, bool& cancel,
                  std::initializer_list<FoundEvent> found_events) {
  if (!events.HasSinks()) return;
  const Interface* table = &object.GetInterface();
  for (const FoundEvent& found : found_events) {
    if (table != &found.describe()) continue;
    events.Raise(owner, found.event, {Variant(Ref<Object>(&object)), Variant::ByReference(cancel)});
    return;
  }
}

}  // namespace veldmark
