#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <string_view>

#include "accounts/CGroups.h"
#include "apartment/Apartment.h"
#include "collections/Collection.h"
#include "network/CServer.h"
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
  /// The calls since the last time whose names begin with one of `starts`, each told by the rest of
  /// its name and what it asked: "GetInfo \\\\SRV ann 3;" for "NetUser". Frees are left out.
  std::string Called(std::initializer_list<std::string_view> starts) {
    std::string calls;
    for (const auto& [operation, argument] : journal().entries()) {
      for (const std::string_view start : starts) {
        if (!operation.starts_with(start) || operation.ends_with("Free")) continue;
        const std::string rest = operation.substr(start.size());
        calls += rest + (rest.empty() || argument.empty() ? "" : " ") + argument + ";";
      }
    }
    journal().Clear();
    return calls;
  }
  /// A server object of which nothing is known but its name and domain.
  static Ref<CServer> Server(TextView name, TextView domain = {}) {
    auto server = Make<CServer>();
    server->ServerName = name;
    server->DomainName = domain;
    return server;
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
