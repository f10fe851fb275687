#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <utility>

#include "apartment/Apartment.h"
#include "automation/Error.h"
#include "platform/simulated/families/SimulatedPlatform.h"

/// What the fuzz targets share. Whatever ends the program is a finding.
namespace veldmark {

inline void Require(bool condition) {
  if (!condition) std::abort();
}

/// Does what may raise one of these errors and no other.
template <class Action>
void Try(std::initializer_list<std::int32_t> settled, Action&& action) {
  try {
    action();
  } catch (const AutomationError& error) {
    Require(std::ranges::find(settled, error.number) != settled.end());
  }
}

/// An apartment on an estate, for all inputs of a run.
struct World {
  template <class... Estate>
  explicit World(Estate&&... estate)
      : simulated(std::forward<Estate>(estate)...), platform(simulated.platform()) {
    Apartment::Start(platform);
  }
  ~World() { Apartment::End(); }
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  simulated::SimulatedPlatform simulated;
  Platform platform;
};

}  // namespace veldmark
