#pragma once

#include <gtest/gtest.h>

#include "apartment/Apartment.h"
#include "platform/simulated/families/SimulatedPlatform.h"

namespace veldmark {

/// An apartment of this thread over a simulated estate, from construction to destruction. What the
/// start-up routine asked the platform is forgotten.
class SimulatedApartment {
 public:
  SimulatedApartment() : platform(simulated.platform()) {
    Apartment::Start(platform);
    simulated.journal().Clear();
    simulated.faults().Clear();
  }
  SimulatedApartment(const SimulatedApartment&) = delete;
  SimulatedApartment& operator=(const SimulatedApartment&) = delete;
  ~SimulatedApartment() { Apartment::End(); }

  simulated::Estate& estate() { return simulated.estate(); }
  simulated::Computer& local() { return simulated.estate().local(); }
  simulated::Ledger& ledger() { return simulated.ledger(); }
  simulated::Journal& journal() { return simulated.journal(); }
  simulated::FaultHook& faults() { return simulated.faults(); }

  simulated::SimulatedPlatform simulated;
  Platform platform;
};

/// A test in an apartment of its own; it fails when something that the platform handed out is still
/// open at its end.
class ApartmentFixture : public testing::Test, protected SimulatedApartment {
 protected:
  void TearDown() override { EXPECT_EQ(ledger().Report(), ""); }
};

}  // namespace veldmark
