#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>

#include "automation/Error.h"
#include "platform/operations/ErrorCodes.h"
#include "support/ApartmentFixture.h"

namespace veldmark {

/// Runs a scenario again and again in a world of its own, with its first platform call failing,
/// then its second, and so on until a run ends untouched. A run must raise the error that the call
/// failed with, unless `swallowed` names the call: then it must not raise. With a call of `either`
/// that depends on where it stands, and any error will do. Nothing that the platform handed out may
/// stay open.
///
/// `World` is a `SimulatedApartment` that its constructor furnishes. `after(world, failed, raised)`
/// looks at what a run left behind: the name of the call that failed, and whether the run raised.
template <class World, class Scenario, class After = void (*)(World&, const std::string&, bool)>
void SweepFaults(
    const std::set<std::string>& swallowed, Scenario&& scenario,
    After&& after = [](World&, const std::string&, bool) {},
    const std::set<std::string>& either = {}) {
  constexpr DWORD kFault = 1117;
  for (std::size_t nth = 1;; ++nth) {
    World world;
    world.journal().Clear();
    world.faults().Clear();
    world.faults().FailNth(nth, kFault);
    std::optional<std::int32_t> raised;
    try {
      scenario(world);
    } catch (const AutomationError& error) {
      raised = error.number;
    }
    EXPECT_EQ(world.ledger().Report(), "");
    if (world.faults().fired() == 0) {
      EXPECT_EQ(raised, std::nullopt) << "without a fault";
      EXPECT_GT(nth, 1u) << "the scenario asked nothing of the platform";
      return;
    }
    const std::string operation = world.faults().last_fired();
    SCOPED_TRACE("call " + std::to_string(nth) + ", " + operation);
    if (swallowed.contains(operation)) {
      EXPECT_EQ(raised, std::nullopt);
    } else if (!either.contains(operation)) {
      // The scheduler's methods tell it as a result of their own kind.
      const bool is_method =
          operation.find("::") != std::string::npos || operation == "CoCreateInstance";
      EXPECT_EQ(raised, is_method ? ResultOf(kFault) : static_cast<std::int32_t>(kFault));
    }
    after(world, operation, raised.has_value());
  }
}

}  // namespace veldmark
