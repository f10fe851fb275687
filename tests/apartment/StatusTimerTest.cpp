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
  Engine().RaiseObjectFound(StatusObject(), cancel);
  EXPECT_EQ(first.heard, 1) << "subscribed twice";
  EXPECT_EQ(second->heard, 0);
  second = nullptr;
  Engine().RaiseObjectFound(StatusObject(), cancel);
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
