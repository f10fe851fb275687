#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "apartment/CTimer.h"
#include "apartment/DebugLog.h"
#include "automation/CaseMapping.h"
#include "automation/Conversion.h"
#include "automation/Interface.h"
#include "collections/Collection.h"
#include "network/CDomain.h"
#include "network/CNetHood.h"
#include "registry/CRegistry.h"
#include "root/CMyComputer.h"
#include "root/ObjectModel.h"
#include "root/SystemRoot.h"
#include "security/CSecurityDescriptor.h"
#include "storage/CFolder.h"
#include "support/ErrorOf.h"
#include "support/FaultSweep.h"
#include "support/Listener.h"

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
  const SimulatedApartment here;
  const CStatus* other_status = nullptr;
  std::thread([&] {
    const SimulatedApartment there;
    other_status = &StatusObject();
    Err().Set(AutomationError(5, u"", u""));
  }).join();
  EXPECT_TRUE(other_status);
  EXPECT_NE(other_status, &StatusObject());
  EXPECT_EQ(Err().Number(), 0);
}

TEST(StartUp, LetsAnObjectOutliveItsApartment) {
  auto apartment = std::make_unique<SimulatedApartment>();
  const auto root = Make<SystemRoot>();
  apartment = nullptr;
  EXPECT_EQ(TypeName(root.Get()), u"SystemRoot");
}

TEST_F(FrameTest, SharesStateBetweenRootsAndMakesNewObjectsWhereItSaysSo) {
  const auto one = Make<SystemRoot>();
  EXPECT_EQ(one->GetStatusObject(), Make<SystemRoot>()->GetStatusObject());
  EXPECT_NE(one->GetMyComputer(), one->GetMyComputer());
  EXPECT_NE(one->GetNetHood(), one->GetNetHood());
  EXPECT_NE(one->GetRegistry(), one->GetRegistry());
  EXPECT_EQ(one->GetDomain(u"HARBOUR")->DomainName, u"HARBOUR");

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
  apartment.sid_cache->Add(Variant(1));
  apartment.pdc_cache->Add(Variant(1));
  apartment.account_cache = nullptr;
  apartment.machine_paths->Add(Variant(1));
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

using StatusTest = ApartmentFixture;

TEST_F(StatusTest, BuildsItsTextsForListenersOnlyAndBringsTheirAnswersBack) {
  int built = 0;
  bool cancel = true, answer = true;
  Text heard;
  const auto raise = [&] {
    StatusObject().RaiseStatus([&built] { return ++built, Text(u"half way"); });
    StatusObject().RaiseCancelLoading(2000, cancel);
  };
  raise();
  EXPECT_FALSE(built || cancel) << "nobody listens";
  Listen(StatusObject(), [&](std::int32_t event, std::span<Variant> arguments) {
    heard += ToText(std::int64_t{event}) + u": " + ToText(arguments[0]) + u" ";
    if (event == 1) return;
    EXPECT_FALSE(ToBoolean(arguments[1]));
    arguments[1].Assign(answer);
  });
  raise();
  EXPECT_TRUE(cancel);
  answer = false;
  raise();
  EXPECT_FALSE(cancel);
  EXPECT_EQ(heard, u"1: half way 2: 2000 1: half way 2: 2000 ");
}

TEST_F(StatusTest, SurvivesSinksThatLeaveRaiseOrLetGoOfTheSource) {
  const auto timer = Make<CTimer>();
  EventSource& source = *timer->Events();
  std::vector<int> heard;
  std::uint32_t second = 0;
  source.Advise(Make<Listener>([&](auto, auto) {
    heard.push_back(1);
    EXPECT_TRUE(source.Unadvise(second));
    EXPECT_FALSE(source.Unadvise(second));
    // A sink that comes in the middle of an event waits for the next one.
    source.Advise(Make<Listener>([&](auto, auto) { heard.push_back(3); }));
  }));
  second = source.Advise(Make<Listener>([&](auto, auto) { heard.push_back(2); }));
  timer->RaiseTimer();
  EXPECT_EQ(heard, std::vector<int>{1});

  Ref<CTimer> last = Make<CTimer>();
  Apartment::Current().timer = nullptr;
  Listen(*last, [&](auto, auto) { last = nullptr; });
  Listen(*last, [&](auto, auto) { Raise(42, u"Listener", u"no"); });
  EXPECT_THROW(last->RaiseTimer(), AutomationError);
  EXPECT_EQ(last, nullptr);
}

TEST_F(StatusTest, CallsAListenerOnceHoweverOftenItSubscribed) {
  struct : ObjectFoundListener {
    void OnObjectFound(Object&, bool&) override { ++heard; }
    Object& Listener() override { return StatusObject(); }
    int heard = 0;
  } listener;
  for (int i = 0; i < 2; ++i) Engine().Subscribe(listener);
  bool cancel = false;
  Engine().RaiseObjectFound(StatusObject(), cancel);
  EXPECT_EQ(listener.heard, 1);
  Engine().Unsubscribe(listener);
}

class TimerTest : public ApartmentFixture {
 protected:
  /// Lets time pass and gives the message loop one turn.
  void Pass(std::uint64_t milliseconds) {
    estate().Advance(milliseconds);
    platform.timers.DoEvents();
  }
  /// A timer, and a listener that counts its beats.
  static Ref<CTimer> NewTimer(int& beats) {
    auto timer = Make<CTimer>();
    Listen(*timer, [&beats](std::int32_t event, std::span<Variant> arguments) {
      EXPECT_EQ(event, 1);
      EXPECT_TRUE(arguments.empty());
      ++beats;
    });
    return timer;
  }
};

TEST_F(TimerTest, BeatsAtItsIntervalWhileItIsEnabled) {
  int beats = 0;
  const Ref<CTimer> timer = NewTimer(beats);
  EXPECT_EQ(timer->Interval(), 1000);
  EXPECT_FALSE(timer->Enabled());
  timer->PutInterval(200);
  Pass(1000);
  EXPECT_EQ(beats, 0) << "an interval starts nothing";
  timer->PutEnabled(true);
  EXPECT_EQ(ModuleHolds(), 1) << "a timer calls into the library";
  Pass(200);
  Pass(200);
  timer->PutInterval(500);
  Pass(200);
  EXPECT_EQ(beats, 2);
  Pass(300);
  timer->PutEnabled(false);
  EXPECT_EQ(ModuleHolds(), 0);
  Pass(5000);
  EXPECT_EQ(beats, 3);
}

TEST_F(TimerTest, KeepsATimerThatWasStartedTwiceAndEndsItWithTheApartment) {
  int beats = 0;
  const Ref<CTimer> timer = NewTimer(beats);
  timer->PutEnabled(true);
  timer->PutEnabled(true);
  Pass(1000);
  EXPECT_EQ(beats, 2);
  timer->PutEnabled(false);
  Pass(1000);
  EXPECT_EQ(beats, 3) << "the first one can't be ended any more";
  EXPECT_EQ(ModuleHolds(), 1);
  Apartment::End();
  EXPECT_EQ(ModuleHolds(), 0);
  Pass(1000);
  EXPECT_EQ(beats, 3);
}

TEST_F(TimerTest, FiresTheEventOfTheTimerCreatedLastAndKeepsThatOneAlive) {
  int first_beats = 0, second_beats = 0;
  Ref<CTimer> first = NewTimer(first_beats);
  first->PutEnabled(true);
  Ref<CTimer> second = NewTimer(second_beats);
  second->PutEnabled(true);
  second = nullptr;
  Pass(1000);
  EXPECT_EQ(second_beats, 2) << "both platform timers";
  first = nullptr;
  Pass(1000);
  EXPECT_EQ(second_beats, 3) << "the end of a timer ends its platform timer";
  EXPECT_EQ(first_beats, 0);
}

TEST_F(TimerTest, StoresWhatKillTimerAnswersAndLetsAListenerFail) {
  const auto timer = Make<CTimer>();
  timer->PutEnabled(false);
  EXPECT_EQ(journal().entries().back(), (simulated::Journal::Entry{"KillTimer", "0"}));
  timer->PutEnabled(true);
  timer->PutEnabled(true);
  timer->PutEnabled(false);
  EXPECT_EQ(journal().entries().back().argument, "2");
  timer->PutEnabled(false);
  EXPECT_EQ(journal().entries().back().argument, "1") << "the answer to the call before";

  int held = 0;
  Listen(*timer, [&](auto, auto) {
    timer->PutEnabled(false);
    held = ModuleHolds();
    Raise(77, u"Listener", u"no");
  });
  timer->PutEnabled(true);
  Pass(1000);
  EXPECT_EQ(Err().Number(), 77);
  EXPECT_EQ(held, 1) << "a beat holds the library, though no timer runs any more";
  // Nobody is there to hear it.
  timer->PutEnabled(true);
  Apartment::Current().timer = nullptr;
  Err().Clear();
  Pass(1000);
  EXPECT_EQ(Err().Number(), 0);
}

}  // namespace
}  // namespace veldmark
