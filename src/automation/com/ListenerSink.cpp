#include "automation/com/ListenerSink.h"

#include "automation/com/ForeignObject.h"

namespace veldmark::com {

void ListenerSink::Receive(std::int32_t event, std::span<Variant> arguments) {
  const Ref<ListenerSink> keep_alive(this);  // the listener may unadvise itself
  InvokeForeign(*listener_.Get(), event, DISPATCH_METHOD, arguments);
}

}  // namespace veldmark::com
