#pragma once

#include "apartment/CSupport.h"

namespace veldmark {

/// Hands an object that a walk found to the listeners of the engine with `async`, or else to the
/// list. False when a listener ends the walk.
template <class List, class Element>
bool Deliver(CSupport& engine, const Ref<List>& list, const Ref<Element>& object, bool async) {
  bool cancel = false;
  if (async) {
    engine.RaiseObjectFound(*object, cancel);
  } else {
    list->Add(object.Get());
  }
  return !cancel;
}

}  // namespace veldmark
