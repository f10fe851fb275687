#pragma once

#include <gtest/gtest.h>

#include <string>

#include "accounts/CGroups.h"
#include "apartment/Apartment.h"
#include "collections/Collection.h"
#include "platform/simulated/families/SimulatedPlatform.h"

namespace veldmark {

/// An apartment of this thread over a simulated estate, from construction to destruction. What the
/// start-up routine asked the platform is forgotten, and so are the answers but for the well-known
/// groups.
class SimulatedApartment {
 public:
  SimulatedApartment() : platform(simulated.platform()) {
    Apartment& apartment = Apartment::Start(platform);
    for (Ref<Collection>* cache : {&apartment.sid_cache, &apartment.account_cache,
                                   &apartment.domain_cache, &apartment.server_cache}) {
      *cache = Make<Collection>();
    }
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

  /// Biases in minutes, from local time to universal time.
  void SetZone(LONG bias, LONG standard = 0, LONG daylight = 0,
               DWORD current = kTimeZoneIdStandard) {
    TIME_ZONE_INFORMATION zone{};
    zone.Bias = bias;
    zone.StandardBias = standard;
    zone.DaylightBias = daylight;
    estate().SetTimeZone(zone, current);
  }
  /// The calls since the last time that have this mark in their names, told by what is behind it.
  std::string Called(std::string_view mark) {
    std::string calls;
    for (const auto& call : journal().entries()) {
      const std::size_t at = call.operation.find(mark);
      if (at != std::string::npos) calls += call.operation.substr(at + mark.size()) + " ";
    }
    journal().Clear();
    return calls;
  }
  /// The bytes of a file of this computer; "no file" where there is none.
  std::string ContentOf(TextView path) {
    const auto file = local().Find(path);
    if (!file) return "no file";
    std::string bytes(file->size(), '\0');
    bytes.resize(file->Read(0, bytes.data(), bytes.size()));
    return bytes;
  }

  simulated::SimulatedPlatform simulated;
  Platform platform;
};

/// A test in a world of its own, an apartment that may be furnished. It fails when an object or
/// something that the platform handed out outlives it.
template <class World>
class TestIn : public testing::Test, protected World {
 protected:
  ~TestIn() override {
    Apartment* const apartment = Apartment::TryCurrent();
    if (apartment) {
      // What the apartment itself keeps is none of the test's.
      apartment->well_known_groups = nullptr;
      apartment->server_cache = nullptr;
    }
    for (int i = 0; apartment && i < static_cast<int>(Counter::kCount); ++i) {
      EXPECT_EQ(apartment->counters[static_cast<Counter>(i)], 0) << "counter " << i;
    }
    EXPECT_EQ(this->ledger().Report(), "");
  }
};

using ApartmentFixture = TestIn<SimulatedApartment>;

}  // namespace veldmark
