#pragma once

#include <type_traits>

#include "apartment/Apartment.h"
#include "platform/operations/Platform.h"

namespace veldmark {

/// The platform with a test's own family in place of the one of its kind.
template <class Own>
Platform Mixed(const Platform& whole, Own& own) {
  const auto pick = [&own]<class Family>(Family& family) -> Family& {
    if constexpr (std::is_base_of_v<Family, Own>) return own;
    return family;
  };
  const auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q] = whole;
  return {pick(a), pick(b), pick(c), pick(d), pick(e), pick(f), pick(g), pick(h), pick(i),
          pick(j), pick(k), pick(l), pick(m), pick(n), pick(o), pick(p), pick(q)};
}

/// A world in whose platform a test's own family stands, once the world is furnished.
template <class World, class Own>
struct MixedWorld : World {
  MixedWorld() {
    Apartment::End();
    Apartment::Start(mixed);
  }
  ~MixedWorld() { Apartment::End(); }

  Own own{this->simulated.session()};
  Platform mixed = Mixed(this->platform, own);
};

}  // namespace veldmark
