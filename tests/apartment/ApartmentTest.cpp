#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "apartment/DebugLog.h"
#include "automation/CaseMapping.h"
#include "automation/Interface.h"
#include "collections/Collection.h"
#include "network/CNetHood.h"
#include "registry/CRegistry.h"
#include "root/CMyComputer.h"
#include "root/ObjectModel.h"
#include "root/SystemRoot.h"
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
  const std::pair<const char16_t*, bool> cases[] = {
      {nullptr, false}, {u"True", true}, {u"False", false}, {u"perhaps", false}, {u"-1", true}};
  for (const auto& [setting, debug] : cases) {
    simulated::SimulatedPlatform simulated;
    if (setting) SetDebug(simulated.estate().local(), setting);
    Platform platform = simulated.platform();
    Apartment& apartment = Apartment::Start(platform);
    EXPECT_EQ(apartment.debug, debug) << ToUtf8(setting ? setting : u"absent");
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

TEST(StartUp, GivesEachThreadItsOwnModuleStateWhichObjectsMayOutlive) {
  const SimulatedApartment here;
  const CStatus* other_status = nullptr;
  std::thread([&] {
    Ref<SystemRoot> last;  // ends after the apartment
    const SimulatedApartment there;
    last = Make<SystemRoot>();
    other_status = &StatusObject();
    Err().Set(AutomationError(5, u"", u""));
  }).join();
  EXPECT_TRUE(other_status);
  EXPECT_NE(other_status, &StatusObject());
  EXPECT_EQ(Err().Number(), 0);
}

TEST_F(FrameTest, SharesStateBetweenRootsAndMakesNewObjectsWhereItSaysSo) {
  const auto one = Make<SystemRoot>();
  EXPECT_EQ(one->GetStatusObject(), Make<SystemRoot>()->GetStatusObject());
  EXPECT_NE(one->GetMyComputer(), one->GetMyComputer());
  EXPECT_NE(one->GetNetHood(), one->GetNetHood());
  EXPECT_NE(one->GetRegistry(), one->GetRegistry());

  const Ref<Collection> accounts = Apartment::Current().account_cache;
  for (const auto& cache : {Apartment::Current().sid_cache, accounts}) cache->Add(Variant(1));
  one->ClearSidCache();
  EXPECT_EQ(Apartment::Current().sid_cache->Count(), 0);
  EXPECT_EQ(Apartment::Current().account_cache, accounts);
  EXPECT_EQ(accounts->Count(), 1);

  EXPECT_EQ(one->LocalComputerName() + one->LocalUserName(), u"LOCALHOSTuser");
  faults().FailEvery("GetComputerNameW", 5);
  faults().FailEvery("GetUserNameW", 5);
  EXPECT_EQ(one->LocalComputerName() + one->LocalUserName(), u"(unknown)(unknown)");
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

TEST_F(FrameTest, ReportsItsObjectsInTheirOrderWhereSomethingIsAlive) {
  constexpr TextView kReported =
      u"SystemRoot MyComputer NetHood Networks Network Domains Domain Servers Server Groups Group "
      u"Users User Drives Drive Shares Share Services Service Printers Printer Volumes Volume "
      u"SecurityDescriptor Acl Aces Ace Sids Sid Files File Folders Folder PathNames PathName "
      u"EventLogEntries EventLogEntry ";
  Apartment::Current().well_known_groups = nullptr;
  const Text titles = u"Current Object Counts\r\n=====================";
  const auto report = [] { return StatusObject().GetDebugInfo(u"ObjectCounts"); };
  EXPECT_EQ(report(), titles);
  EXPECT_EQ(StatusObject().GetDebugInfo(u"objectcounts"),
            u"Debug Type 'objectcounts' not recognized.");
  std::vector<Ref<Object>> alive;
  for (const Interface* table : ObjectModel()) {
    const Text name = table->name == u"SystemRoot" ? table->name : table->name.substr(1);
    const bool reported = (u" " + Text(kReported)).find(u" " + name + u" ") != Text::npos;
    const Ref<Object> one = table->create();
    EXPECT_EQ(report(), reported ? titles + u"\r\n" + name + u" = 1" : titles);
  }
  for (const Interface* table : ObjectModel()) alive.push_back(table->create());
  Apartment& apartment = Apartment::Current();
  for (const auto& cache : {apartment.sid_cache, apartment.pdc_cache, apartment.machine_paths}) {
    cache->Add(Variant(1));
  }
  apartment.account_cache = nullptr;
  EXPECT_EQ(report(), titles + u"\r\n" + ReplaceAll(kReported, u" ", u" = 1\r\n") +
                          u"PDC's Collection = 1\r\nSID's Collection = 1");
}

TEST_F(FrameTest, LogsLinesInTheSystemsCodePageWhileTheFlagIsOn) {
  local().AddFolder(u"C:\\Program Files\\Veldmark2");
  DebugLog(u"unheard");
  EXPECT_TRUE(journal().entries().empty());
  Apartment::Current().debug = true;
  for (const char16_t* line : {u"first", u"", u"Gr\u00F6\u00DFe 5 \u20AC, \u4E2D"}) DebugLog(line);
  EXPECT_EQ(ContentOf(u"C:\\Program Files\\Veldmark2\\VK2_DEBUG.LOG"),
            "first\r\n\r\nGr\xF6\xDF\x65 5 \x80, ?\r\n");
  estate().SetModuleFolder(u"C:\\");
  DebugLog(u"at the root");
  EXPECT_EQ(ContentOf(u"C:\\VK2_DEBUG.LOG"), "at the root\r\n");
  estate().SetModuleFolder(u"C:\\Missing");
  EXPECT_EQ(FailureOf([] { DebugLog(u"lost"); }), u"76|Veldmark2|Path not found");
}

}  // namespace
}  // namespace veldmark
