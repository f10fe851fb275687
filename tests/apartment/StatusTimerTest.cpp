#include <memory>
#include <vector>

#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "apartment/CTimer.h"
#include "automation/Conversion.h"
#include "root/SystemRoot.h"
#include "support/ApartmentFixture.h"
#include "support/Listener.h"

namespace veldmark {
namespace {

class StatusTest : public ApartmentFixture {
 protected:
  CStatus& status() { return StatusObject(); }
};

TEST_F(StatusTest, BuildsAProgressTextOnlyWhenSomebodyListens) {
  int built = 0;
  const auto text = [&built] {
    ++built;
    return Text(u"half way");
  };
  status().RaiseStatus(text);
  EXPECT_EQ(built, 0);
  std::vector<Text> heard;
  Listen(status(), [&](std::int32_t event, std::span<Variant> arguments) {
    EXPECT_EQ(event, 1);
    heard.push_back(ToText(arguments[0]));
  });
  status().RaiseStatus(text);
  EXPECT_EQ(heard, std::vector<Text>{u"half way"});
}

TEST_F(StatusTest, BeginsTheQuestionWithFalseAndBringsTheAnswerBack) {
  bool cancel = true;
  status().RaiseCancelLoading(1000, cancel);
  EXPECT_FALSE(cancel) << "nobody listens";
  bool answer = true;
  Listen(status(), [&](std::int32_t event, std::span<Variant> arguments) {
    EXPECT_EQ(event, 2);
    EXPECT_EQ(ToLong(arguments[0]), 2000);
    EXPECT_FALSE(ToBoolean(arguments[1]));
    arguments[1].Assign(Variant(answer));
  });
  status().RaiseCancelLoading(2000, cancel);
  EXPECT_TRUE(cancel);
  answer = false;
  status().RaiseCancelLoading(2000, cancel);
  EXPECT_FALSE(cancel);
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

TEST_F(StatusTest, ReportsTheCountsForThatExactWordOnly) {
  Apartment::Current().well_known_groups = nullptr;
  const auto root = Make<SystemRoot>();
  EXPECT_EQ(status().GetDebugInfo(u"ObjectCounts"),
            u"Current Object Counts\r\n=====================\r\nSystemRoot = 1");
  EXPECT_EQ(status().GetDebugInfo(u"objectcounts"), u"Debug Type 'objectcounts' not recognized.");
  EXPECT_EQ(status().GetDebugInfo(u""), u"Debug Type '' not recognized.");
}

/// Counts what it hears, and may let another one leave.
struct Hearer : ObjectFoundListener {
  void OnObjectFound(Object&, bool&) override {
    ++heard;
    if (leaves) Engine().Unsubscribe(*leaves);
  }
  Object& Listener() override { return StatusObject(); }

  ObjectFoundListener* leaves = nullptr;
  int heard = 0;
};

TEST_F(StatusTest, CallsNoListenerThatLeftEarlierInTheSameEvent) {
  Hearer first;
  auto second = std::make_unique<Hearer>();
  first.leaves = second.get();
  for (Hearer* hearer : {&first, &first, second.get()}) Engine().Subscribe(*hearer);
  bool cancel = false;
  Engine().RaiseObjectFound(status(), cancel);
  EXPECT_EQ(first.heard, 1) << "subscribed twice";
  EXPECT_EQ(second->heard, 0);
  second = nullptr;
  Engine().RaiseObjectFound(status(), cancel);
  EXPECT_EQ(first.heard, 2);
  Engine().Unsubscribe(first);
}

class TimerTest : public ApartmentFixture {
 protected:
  /// Lets time pass and gives the message loop one turn.
  void Pass(std::uint64_t milliseconds) {
    estate().Advance(milliseconds);
    platform.timers.DoEvents();
  }
  void CountBeats(CTimer& timer, int& beats) {
    Listen(timer, [&beats](std::int32_t event, std::span<Variant> arguments) {
      EXPECT_EQ(event, 1);
      EXPECT_TRUE(arguments.empty());
      ++beats;
    });
  }
};

TEST_F(TimerTest, BeatsAtItsIntervalWhileItIsEnabled) {
  const auto timer = Make<CTimer>();
  int beats = 0;
  CountBeats(*timer, beats);
  EXPECT_EQ(timer->Interval(), 1000);
  EXPECT_FALSE(timer->Enabled());
  timer->PutInterval(200);
  Pass(1000);
  EXPECT_EQ(beats, 0) << "an interval starts nothing";

  timer->PutEnabled(true);
  EXPECT_EQ(ModuleHolds(), 1) << "a timer calls into the library";
  Pass(200);
  Pass(200);
  EXPECT_EQ(beats, 2);
  timer->PutInterval(500);
  Pass(200);
  EXPECT_EQ(beats, 2);
  Pass(300);
  EXPECT_EQ(beats, 3);
  timer->PutEnabled(false);
  EXPECT_EQ(ModuleHolds(), 0);
  Pass(5000);
  EXPECT_EQ(beats, 3);
}

TEST_F(TimerTest, KeepsATimerThatWasStartedTwiceAndEndsItWithTheApartment) {
  const auto timer = Make<CTimer>();
  int beats = 0;
  CountBeats(*timer, beats);
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
  auto first = Make<CTimer>();
  int first_beats = 0, second_beats = 0;
  CountBeats(*first, first_beats);
  first->PutEnabled(true);
  auto second = Make<CTimer>();
  CountBeats(*second, second_beats);
  Pass(1000);
  EXPECT_EQ(first_beats, 0);
  EXPECT_EQ(second_beats, 1);
  second->PutEnabled(true);
  second = nullptr;
  Pass(1000);
  EXPECT_EQ(second_beats, 3) << "both platform timers";
  first = nullptr;
  Pass(1000);
  EXPECT_EQ(second_beats, 4) << "the end of a timer ends its platform timer";
}

TEST_F(TimerTest, StoresWhatKillTimerAnswersAndLetsAListenerFail) {
  const auto timer = Make<CTimer>();
  timer->PutEnabled(false);
  ASSERT_EQ(journal().entries().back().operation, "KillTimer");
  EXPECT_EQ(journal().entries().back().argument, "0");
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
