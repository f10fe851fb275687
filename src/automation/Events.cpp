#include "automation/Events.h"

#include <algorithm>

namespace veldmark {

std::uint32_t EventSource::Advise(Ref<EventSink> sink) {
  sinks_.emplace_back(++last_cookie_, std::move(sink));
  return last_cookie_;
}

bool EventSource::Unadvise(std::uint32_t cookie) {
  const auto found =
      std::ranges::find(sinks_, cookie, &std::pair<std::uint32_t, Ref<EventSink>>::first);
  if (found == sinks_.end()) return false;
  const Ref<EventSink> dropped = std::move(found->second);  // its end may come back here
  sinks_.erase(found);
  return true;
}

bool EventSource::IsConnected(std::uint32_t cookie) const {
  return std::ranges::find(sinks_, cookie, &std::pair<std::uint32_t, Ref<EventSink>>::first) !=
         sinks_.end();
}

void EventSource::Raise(Object& owner, std::int32_t event,
                        std::initializer_list<Variant> arguments) {
  if (sinks_.empty()) return;
  const Ref<Object> keep_alive(&owner);
  const auto turn = sinks_;
  for (const auto& [cookie, sink] : turn) {
    if (!IsConnected(cookie)) continue;
    std::vector<Variant> own(arguments);
    sink->Receive(event, own);
  }
}

}  // namespace veldmark
