#include <thread>

#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "automation/Interface.h"
#include "collections/Collection.h"
#include "network/CDomain.h"
#include "network/CNetHood.h"
#include "registry/CRegistry.h"
#include "root/CMyComputer.h"
#include "root/SystemRoot.h"
#include "security/CSecurityDescriptor.h"
#include "storage/CFolder.h"
#include "support/ErrorOf.h"
#include "support/FaultSweep.h"

namespace veldmark {
namespace {

using FrameTest = ApartmentFixture;

/// Writes the debug setting of a computer.
void SetDebug(simulated::Computer& computer, TextView setting) {
  computer.local_machine().Key(u"SOFTWARE\\Quillmoss\\Veldmark2\\Config").String(u"Debug", setting);
}

TEST(StartUp, TurnsTheDebugFlagOnForATextThatSaysSoAndForNothingElse) {
  const struct {
    std::optional<Text> setting;
    bool debug;
  } cases[] = {{{}, false},         {u"True", true}, {u"tRUE", true}, {u"False", false},
               {u"perhaps", false}, {u"-1", true},   {u"0", false},   {u"", false}};
  for (const auto& [setting, debug] : cases) {
    simulated::SimulatedPlatform simulated;
    if (setting) SetDebug(simulated.estate().local(), *setting);
    Platform platform = simulated.platform();
    Apartment& apartment = Apartment::Start(platform);
    EXPECT_EQ(apartment.debug, debug) << ToUtf8(setting.value_or(u"absent"));
    EXPECT_EQ(apartment.err.Number(), 0);
    EXPECT_TRUE(apartment.engine && apartment.status && apartment.sid_cache &&
                apartment.machine_paths);
    EXPECT_EQ(&Apartment::Start(platform), &apartment) << "start-up runs once a thread";
    Apartment::End();
    EXPECT_EQ(Apartment::TryCurrent(), nullptr);
    EXPECT_EQ(simulated.ledger().Report(), "");
  }
}

TEST(StartUp, SwallowsTheFailureOfAnyPlatformCall) {
  SweepFaults<SimulatedApartment>(
      {"RegOpenKeyExW", "RegQueryValueExW", "RegCloseKey", "LoadLibraryExW", "FormatMessageW",
       "LookupAccountSidW", "GetComputerNameW", "NetWkstaGetInfo", "NetServerGetInfo",
       "NetApiBufferFree"},
      [](SimulatedApartment& world) {
        Apartment::End();
        SetDebug(world.local(), u"True");
        Apartment::Start(world.platform);
      },
      [](SimulatedApartment&, const std::string& failed, bool) {
        EXPECT_EQ(Err().Number(), 0);
        EXPECT_TRUE(Apartment::Current().engine && Apartment::Current().sid_cache);
        EXPECT_EQ(Apartment::Current().debug,
                  failed != "RegOpenKeyExW" && failed != "RegQueryValueExW");
      });
}

TEST(StartUp, GivesEachThreadItsOwnModuleState) {
  SimulatedApartment here;
  const CStatus* other_status = nullptr;
  bool ended = false;
  std::thread([&] {
    SimulatedApartment there;
    const auto root = Make<SystemRoot>();
    other_status = root->GetStatusObject().Get();
    EXPECT_EQ(Apartment::Current().counters[Counter::kSystemRoot], 1);
    Apartment::Current().err.Set(AutomationError(5, u"", u""));
    ended = true;
  }).join();
  ASSERT_TRUE(ended);
  EXPECT_NE(other_status, Apartment::Current().status.Get());
  EXPECT_EQ(Apartment::Current().counters[Counter::kSystemRoot], 0);
  EXPECT_EQ(Err().Number(), 0);
}

TEST(StartUp, LetsAnObjectOutliveItsApartment) {
  Ref<SystemRoot> root;
  {
    SimulatedApartment apartment;
    root = Make<SystemRoot>();
  }
  EXPECT_EQ(TypeName(root.Get()), u"SystemRoot");
  root = nullptr;
}

TEST_F(FrameTest, SharesStateBetweenRootsAndMakesNewObjectsWhereItSaysSo) {
  const auto one = Make<SystemRoot>();
  const auto two = Make<SystemRoot>();
  EXPECT_EQ(one->GetStatusObject(), two->GetStatusObject());
  EXPECT_NE(one->GetMyComputer(), one->GetMyComputer());
  EXPECT_NE(one->GetNetHood(), one->GetNetHood());
  EXPECT_NE(one->GetRegistry(), one->GetRegistry());
  EXPECT_EQ(one->GetDomain(u"HARBOUR")->DomainName, u"HARBOUR");
  EXPECT_EQ(Apartment::Current().counters[Counter::kSystemRoot], 2);

  const Ref<Collection> accounts = Apartment::Current().account_cache;
  Apartment::Current().sid_cache->Add(Variant(1));
  accounts->Add(Variant(1));
  one->ClearSidCache();
  EXPECT_EQ(Apartment::Current().sid_cache->Count(), 0);
  EXPECT_EQ(Apartment::Current().account_cache, accounts);
  EXPECT_EQ(accounts->Count(), 1);
}

TEST_F(FrameTest, NamesComputerAndUserAndSaysUnknownWhereThePlatformFails) {
  const auto root = Make<SystemRoot>();
  EXPECT_EQ(root->LocalComputerName(), u"LOCALHOST");
  EXPECT_EQ(root->LocalUserName(), u"user");
  faults().FailEvery("GetComputerNameW", 5);
  faults().FailEvery("GetUserNameW", 5);
  EXPECT_EQ(root->LocalComputerName(), u"(unknown)");
  EXPECT_EQ(root->LocalUserName(), u"(unknown)");
}

TEST_F(FrameTest, FailsWith91WhereStartUpLeftNothingAndOtherwiseAsItsMembersSay) {
  const auto root = Make<SystemRoot>();
  Apartment::Current().engine = nullptr;
  Apartment::Current().status = nullptr;
  EXPECT_EQ(root->GetStatusObject(), nullptr);
  EXPECT_EQ(ErrorOf([] { StatusObject(); }), runtime_error::kObjectNotSet);
  EXPECT_EQ(FailureOf([&] { root->GetFolder(u"C:\\"); }),
            u"91|Veldmark2.SystemRoot|Object variable or With block variable not set");
  // A member without a handler leaves its error in `Err` all the same.
  EXPECT_EQ(FailureOf([&] { Call(*root, u"CreateSD", MemberKind::kMethod, {Variant(0)}); }),
            u"-2147220593|Veldmark|Function is obsolete");
  EXPECT_EQ(Err().Number(), -2147220593);
}

}  // namespace
}  // namespace veldmark
