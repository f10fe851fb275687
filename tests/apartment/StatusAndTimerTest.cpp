#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "apartment/CTimer.h"
#include "automation/Conversion.h"
#include "automation/ModuleCount.h"
#include "support/ApartmentFixture.h"
#include "support/Listener.h"
#include "support/ValuesOf.h"

namespace veldmark {
namespace {

using StatusTest = ApartmentFixture;

TEST_F(StatusTest, BuildsItsTextsForListenersOnlyAndBringsTheirAnswersBack) {
  bool built = false, answer = false;
  Text heard;
  const auto raise = [&] {
    bool cancel = !answer;
    StatusObject().RaiseStatus([&built] { return built = true, Text(u"half way"); });
    StatusObject().RaiseCancelLoading(2000, cancel);
    return cancel;
  };
  EXPECT_FALSE(raise() || built) << "nobody listens";
  Listen(StatusObject(), [&](std::int32_t event, std::span<Variant> arguments) {
    heard += ToText(std::int64_t{event}) + u": " + ToText(arguments[0]) + u" ";
    if (event == 1) return;
    EXPECT_FALSE(ToBoolean(arguments[1]));
    arguments[1].Assign(answer);
  });
  answer = true;
  EXPECT_TRUE(raise());
  answer = false;
  EXPECT_FALSE(raise());
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
  /// A timer whose beats are heard as this letter.
  Ref<CTimer> NewTimer(char letter) {
    auto timer = Make<CTimer>();
    Listen(*timer, [this, letter](std::int32_t event, std::span<Variant> arguments) {
      EXPECT_TRUE(event == 1 && arguments.empty());
      heard_ += letter;
    });
    return timer;
  }
  /// What is heard when so much time has passed and the message loop gets a turn.
  std::string After(std::uint64_t milliseconds) {
    estate().Advance(milliseconds);
    platform.timers.DoEvents();
    return std::exchange(heard_, {});
  }

 private:
  std::string heard_;
};

TEST_F(TimerTest, BeatsAtItsIntervalWhileItIsEnabled) {
  const Ref<CTimer> timer = NewTimer('a');
  EXPECT_EQ(ValuesOf(*timer), "False|1000");
  timer->PutInterval(200);
  EXPECT_EQ(After(1000), "") << "an interval starts nothing";
  timer->PutEnabled(true);
  EXPECT_EQ(ModuleHolds(), 1) << "a timer calls into the library";
  for (int beat = 0; beat < 2; ++beat) EXPECT_EQ(After(200), "a");
  timer->PutInterval(500);
  EXPECT_EQ(After(200), "");
  EXPECT_EQ(After(300), "a");
  timer->PutEnabled(false);
  EXPECT_EQ(ModuleHolds(), 0);
  EXPECT_EQ(After(5000), "");
}

TEST_F(TimerTest, KeepsATimerThatWasStartedTwiceAndEndsItWithTheApartment) {
  const Ref<CTimer> timer = NewTimer('a');
  for (int start = 0; start < 2; ++start) timer->PutEnabled(true);
  EXPECT_EQ(After(1000), "aa");
  timer->PutEnabled(false);
  EXPECT_EQ(After(1000), "a") << "the first one can't be ended any more";
  EXPECT_EQ(ModuleHolds(), 1);
  Apartment::End();
  EXPECT_EQ(ModuleHolds(), 0);
  EXPECT_EQ(After(1000), "");
}

TEST_F(TimerTest, FiresTheEventOfTheTimerCreatedLastAndKeepsThatOneAlive) {
  Ref<CTimer> first = NewTimer('a');
  first->PutEnabled(true);
  NewTimer('b')->PutEnabled(true);
  EXPECT_EQ(After(1000), "bb") << "both platform timers";
  first = nullptr;
  EXPECT_EQ(After(1000), "b") << "the end of a timer ends its platform timer";
}

TEST_F(TimerTest, StoresWhatKillTimerAnswersAndLetsAListenerFail) {
  const auto timer = Make<CTimer>();
  for (const bool enabled : {false, true, true, false, false}) timer->PutEnabled(enabled);
  EXPECT_EQ(Called({"KillTimer"}), "0;2;1;") << "at last the answer to the call before";

  int held = 0;
  Listen(*timer, [&](auto, auto) {
    timer->PutEnabled(false);
    held = ModuleHolds();
    Raise(77, u"Listener", u"no");
  });
  timer->PutEnabled(true);
  After(1000);
  EXPECT_EQ(Err().Number(), 77);
  EXPECT_EQ(held, 1) << "a beat holds the library, though no timer runs any more";
  // Nobody is there to hear it.
  timer->PutEnabled(true);
  Apartment::Current().timer = nullptr;
  Err().Clear();
  After(1000);
  EXPECT_EQ(Err().Number(), 0);
}

}  // namespace
}  // namespace veldmark
