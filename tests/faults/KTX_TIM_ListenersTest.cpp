// What a listener may do, on every signal of the library, and what the others see of it.
#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_PresentStatus.h"
#include "KTX/TIM/KTX_TIM_TimeCorrection.h"
#include "KTX/TIM/KTX_TIM_TimeEstimate.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "KTX/TIM/KTX_TIM_TimeZoneWindows.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondChanged.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "common/KTX_TIM_FakePresent.h"
#include "faults/KTX_TIM_FaultOperation.h"
#include "leapseconds/KTX_TIM_LeapSecondScopes.h"
#include "timezones/KTX_TIM_FakeZoneRegistry.h"

namespace KTX::TIM::TEST {
namespace {

using ::testing::ElementsAre;
using ConnectionT = boost::signals2::connection;
/// told is what the signal hands over.
using ListenerT = std::function<void(std::string const& told)>;

/// One signal, whatever it hands over.
struct SignalC {
  std::string name;
  std::function<ConnectionT(ListenerT const&)> connect;
  /// Changes what the signal tells of, and so lets it speak.
  std::function<void()> announce;
  /// What it tells of, as it is now.
  std::function<std::string()> read;
  /// Whether a listener may change it too.
  bool maySet = true;
};

ConnectionT connectCorrection(ListenerT const& listener) {
  return connectTimeCorrected([listener](int week, int ms, TimeChangeT /*change*/) {
    listener(std::to_string(week) + ":" + std::to_string(ms));
  });
}

std::string presentText() {
  return textOf(GPSTimeC(GpsC::currentTime()));
}

void observeLater() {
  GpsC(GpsC::currentTime() + std::int64_t{2500}).makeToCurrentTime(0, 1);
}

std::string countInForce() {
  return std::to_string(recordInForce().current);
}

void changeCount(bool makeCurrent) {
  UtcLeapSecondRecord const forced{LEAPSECOND_FORCED, 17, 17, 1929, 7, true};
  bool const isForced = recordInForce() == forced;
  setUtcLeapSecond(isForced ? withdrawForcedRecord() : forced, makeCurrent);
}

SignalC correctionSignal() {
  return {"correction", connectCorrection, observeLater, presentText};
}

// Inside the setter, with its locks held; GPS time goes on as it was.
SignalC correctionOfACountSignal() {
  return {"correction of a leap second", connectCorrection, [] { changeCount(true); }, presentText,
          false};
}

SignalC stepSignal() {
  return {"step of the filter",
          [](ListenerT const& listener) {
            return connectTimeEstimated([listener](TimeEstimateStepC const& step) {
              listener(std::to_string(step.mappedSteadyMs) + ":" + std::to_string(step.mappedMjd));
            });
          },
          observeLater,
          [] {
            PresentStatusC const status = getPresentStatus();
            return std::to_string(status.mappedSteadyMs) + ":" + std::to_string(status.mappedMjd);
          }};
}

SignalC timeSignalOfAClient() {
  auto const last = std::make_shared<std::uint32_t>(0);
  return {"time signal",
          [](ListenerT const& listener) {
            return connectTimeSignal([listener](int week, int ms) {
              listener(std::to_string(week) + ":" + std::to_string(ms));
            });
          },
          [last] {
            *last += 1000;
            GpsC(2304, *last).emitTimeSignal();
          },
          [last] { return "2304:" + std::to_string(*last); }};
}

SignalC leapSecondSignal() {
  return {"leap second",
          [](ListenerT const& listener) {
            return connectUtcLeapSecondChanged(
                [listener](boost::shared_ptr<UtcLeapSecondChanged> const& event) {
                  listener(std::to_string(event->current.current));
                });
          },
          [] { changeCount(false); }, countInForce, false};
}

SignalC zoneSignal(std::string const& name, TimeZoneC& zone) {
  auto const read = [&zone] {
    std::wstring held;
    zone.getTimeZone(held);
    return std::string(held.begin(), held.end());
  };
  return {name,
          [&zone](ListenerT const& listener) {
            return zone.connectTimeZoneChanged([listener] { listener(""); });
          },
          [&zone, read] {
            bool const isBerlin = read() == "W. Europe Standard Time";
            zone.setTimeZone(isBerlin ? L"GMT Standard Time" : L"W. Europe Standard Time");
          },
          read};
}

class Listeners : public ::testing::Test {
 protected:
  Listeners() {
    addFourZones(registry);
    registry.calls.setZone(-540, u"Tokyo Standard Time");
    getTimeZoneInstance().setTimeZone(L"Tokyo Standard Time");
    zone.setTimeZone(L"Tokyo Standard Time");
  }

  std::vector<SignalC> signals() {
    return {correctionSignal(),
            correctionOfACountSignal(),
            stepSignal(),
            timeSignalOfAClient(),
            leapSecondSignal(),
            zoneSignal("zone", zone),
            zoneSignal("zone of the library", getTimeZoneInstance())};
  }

  /// A listener that notes its name, then acts.
  boost::signals2::scoped_connection listen(
      SignalC const& signal, std::string const& name, std::function<void()> const& action = [] {}) {
    return signal.connect([this, name, action](std::string const& /*told*/) {
      heard.push_back(name);
      action();
    });
  }

  std::vector<std::string> announce(SignalC const& signal) {
    heard.clear();
    signal.announce();
    return std::move(heard);
  }

  /// Another thread would wait for ever where a lock is left.
  void expectLocksFree() {
    std::thread([this] {
      { Guard const guard(getTimeLock()); }
      countInForce();
      presentText();
      for (TimeZoneC* const each : {static_cast<TimeZoneC*>(&zone), &getTimeZoneInstance()}) {
        std::wstring name;
        each->getTimeZone(name);
      }
    }).join();
  }

  ScopedLeapSecondsC const leapSeconds;
  FakePresentC const present;
  FakeZoneRegistryC registry;
  TimeZoneWindowsC zone;
  std::vector<std::string> heard;
};

TEST_F(Listeners, MayThrowWhichEndsTheAnnouncementAndLeavesTheChange) {
  for (SignalC const& signal : signals()) {
    SCOPED_TRACE(signal.name);
    std::string const before = signal.read() + countInForce();
    auto const first = listen(signal, "first");
    {
      auto const thrower = listen(signal, "thrower", [] { throw std::runtime_error("listener"); });
      auto const last = listen(signal, "last");
      heard.clear();
      EXPECT_THROW(signal.announce(), std::runtime_error);
      EXPECT_THAT(heard, ElementsAre("first", "thrower"));
      EXPECT_NE(before, signal.read() + countInForce());
      expectLocksFree();
    }
    auto const last = listen(signal, "last");
    EXPECT_THAT(announce(signal), ElementsAre("first", "last"));
  }
}

TEST_F(Listeners, MayDisconnectThemselves) {
  for (SignalC const& signal : signals()) {
    SCOPED_TRACE(signal.name);
    boost::signals2::scoped_connection leaver;
    auto const first = listen(signal, "first");
    leaver = listen(signal, "leaver", [&leaver] { leaver.disconnect(); });
    auto const last = listen(signal, "last");
    EXPECT_THAT(announce(signal), ElementsAre("first", "leaver", "last"));
    EXPECT_FALSE(leaver.connected());
    EXPECT_THAT(announce(signal), ElementsAre("first", "last"));
    expectLocksFree();
  }
}

TEST_F(Listeners, MayDisconnectThemselvesAndThrow) {
  for (SignalC const& signal : signals()) {
    SCOPED_TRACE(signal.name);
    boost::signals2::scoped_connection leaver;
    leaver = listen(signal, "leaver", [&leaver] {
      leaver.disconnect();
      throw std::runtime_error("listener");
    });
    auto const last = listen(signal, "last");
    heard.clear();
    EXPECT_THROW(signal.announce(), std::runtime_error);
    EXPECT_THAT(heard, ElementsAre("leaver"));
    EXPECT_THAT(announce(signal), ElementsAre("last"));
    expectLocksFree();
  }
}

TEST_F(Listeners, MayDisconnectOneThatIsStillToBeTold) {
  for (SignalC const& signal : signals()) {
    SCOPED_TRACE(signal.name);
    boost::signals2::scoped_connection victim;
    auto const first = listen(signal, "first", [&victim] { victim.disconnect(); });
    victim = listen(signal, "victim");
    auto const last = listen(signal, "last");
    EXPECT_THAT(announce(signal), ElementsAre("first", "last"));
    expectLocksFree();
  }
}

TEST_F(Listeners, MayConnectAnotherWhichHearsTheNextAnnouncement) {
  for (SignalC const& signal : signals()) {
    SCOPED_TRACE(signal.name);
    boost::signals2::scoped_connection late;
    auto const host = listen(signal, "host", [this, &signal, &late] {
      if (!late.connected()) {
        late = listen(signal, "late");
      }
    });
    auto const last = listen(signal, "last");
    EXPECT_THAT(announce(signal), ElementsAre("host", "last"));
    EXPECT_THAT(announce(signal), ElementsAre("host", "last", "late"));
    expectLocksFree();
  }
}

TEST_F(Listeners, MayReadBackAndFindWhatTheyAreTold) {
  for (SignalC const& signal : signals()) {
    SCOPED_TRACE(signal.name);
    std::vector<std::string> found;
    auto const reader = [&](std::string const& told) {
      found.push_back(signal.read());
      EXPECT_TRUE(told.empty() || told == found.back()) << told;
    };
    boost::signals2::scoped_connection const first(signal.connect(reader));
    boost::signals2::scoped_connection const second(signal.connect(reader));
    signal.announce();
    EXPECT_THAT(found, ElementsAre(signal.read(), signal.read()));
    expectLocksFree();
  }
}

// The announcement inside comes to its end first; the one around it goes on with what it tells of,
// while all that is read is the newest.
TEST_F(Listeners, MaySetTheVeryThingThatWasAnnounced) {
  for (SignalC const& signal : signals()) {
    if (!signal.maySet) {
      continue;
    }
    SCOPED_TRACE(signal.name);
    std::vector<std::string> told;
    std::vector<std::string> found;
    bool hasSet = false;
    auto const first = listen(signal, "first");
    auto const setter = listen(signal, "setter", [&] {
      if (!std::exchange(hasSet, true)) {
        signal.announce();
      }
    });
    boost::signals2::scoped_connection const last(signal.connect([&](std::string const& text) {
      heard.emplace_back("last");
      told.push_back(text);
      found.push_back(signal.read());
    }));
    EXPECT_THAT(announce(signal),
                ElementsAre("first", "setter", "first", "setter", "last", "last"));
    EXPECT_THAT(found, ElementsAre(signal.read(), signal.read()));
    EXPECT_TRUE(told[0].empty() || told[0] == found[0]) << told[0];
    EXPECT_TRUE(told[1].empty() || told[1] != found[1]) << told[1];
    expectLocksFree();
  }
}

TEST_F(Listeners, OfACorrectionInsideTheLeapSecondSetterMayThrowAndTheOthersHearOfTheLeapSecond) {
  SignalC const correction = correctionOfACountSignal();
  auto const thrower = listen(correction, "thrower", [] { throw std::runtime_error("listener"); });
  auto const counter = listen(leapSecondSignal(), "leap second");
  EXPECT_THROW(correction.announce(), std::runtime_error);
  EXPECT_THAT(heard, ElementsAre("thrower", "leap second"));
  EXPECT_EQ("17", countInForce());
  expectLocksFree();
}

}  // namespace
}  // namespace KTX::TIM::TEST
