#include <memory>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

#include <boost/chrono/duration.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_TimeCorrection.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "common/KTX_TIM_FakePresent.h"
#include "common/KTX_TIM_FakeSystemCalls.h"
#include "common/KTX_TIM_LogCapture.h"
#include "common/KTX_TIM_ScopedSystemCalls.h"

namespace KTX::TIM::TEST {
namespace {

using ::testing::ElementsAre;
using ::testing::Pair;

static_assert(std::is_same_v<TimeChangeT::rep, long long>);
static_assert(std::is_same_v<TimeChangeT::period, boost::milli>);
static_assert(std::is_same_v<TimeCorrectedSlot::result_type, void>);

class TimeSignals : public ::testing::Test {
 protected:
  boost::signals2::scoped_connection listen() {
    return connectTimeSignal([this](int week, int ms) { times.emplace_back(week, ms); });
  }

  LogCaptureC log;
  FakePresentC present;
  std::vector<std::pair<int, int>> times;
};

YmdhmsC calendar(TimeBaseE timeBase, std::int64_t ms, std::uint32_t precision) {
  YmdhmsC time = YmdhmsC::zero(timeBase, precision);
  time.year = 2024;
  time.month = 3;
  time.day = 7;
  time.hour = 8;
  time.minute = 9;
  time.second = 5;
  time.milliseconds = ms;
  time.hundredths = static_cast<std::uint8_t>(ms / 10);
  return time;
}

TEST_F(TimeSignals, AWeekIsEmittedToTheMillisecond) {
  boost::signals2::scoped_connection const connection = listen();
  EXPECT_EQ(0u, GpsC(2000, 123).emitTimeSignal());
  EXPECT_EQ(0u, GpsC(65535, 604799999).emitTimeSignal());
  EXPECT_EQ(0u, GpsC(0, 0).emitTimeSignal());
  EXPECT_THAT(times, ElementsAre(Pair(2000, 123), Pair(65535, 604799999), Pair(0, 0)));
}

TEST_F(TimeSignals, ACalendarValueIsEmittedInGpsTime) {
  boost::signals2::scoped_connection const connection = listen();
  calendar(TIMEBASE_GPS, 123, 1).emitTimeSignal();
  calendar(TIMEBASE_UTC, 123, 1).emitTimeSignal();
  calendar(TIMEBASE_INV, 123, 1).emitTimeSignal();
  EXPECT_THAT(times,
              ElementsAre(Pair(2304, 374945123), Pair(2304, 374963123), Pair(2304, 374945123)));
}

TEST_F(TimeSignals, ALocalValueGoesThroughUtc) {
  FakeSystemCallsC calls;
  ScopedSystemCallsC const scope(calls);
  calls.setZone(-60, u"W. Europe Standard Time");
  boost::signals2::scoped_connection const connection = listen();
  calendar(TIMEBASE_LOCAL, 123, 1).emitTimeSignal();
  EXPECT_THAT(times, ElementsAre(Pair(2304, 374963123 - 3600000)));
}

TEST_F(TimeSignals, ConvertingRoundsToThePrecisionOfTheValue) {
  boost::signals2::scoped_connection const connection = listen();
  calendar(TIMEBASE_UTC, 123, 0).emitTimeSignal();
  calendar(TIMEBASE_GPS, 123, 0).emitTimeSignal();
  EXPECT_THAT(times, ElementsAre(Pair(2304, 374963120), Pair(2304, 374945123)));
}

TEST_F(TimeSignals, NothingIsLoggedNorReadNorChanged) {
  log.clear();
  std::size_t const reads = present.steady->readCount();
  YmdhmsC const time = calendar(TIMEBASE_UTC, 120, 1);
  YmdhmsC const before = time;
  time.emitTimeSignal();
  EXPECT_TRUE(before == time);
  EXPECT_EQ(TIMEBASE_UTC, time.timeBase);
  EXPECT_EQ(0u, log.count());
  EXPECT_EQ(reads, present.steady->readCount());
}

TEST_F(TimeSignals, ADisconnectedListenerHearsNothing) {
  {
    boost::signals2::scoped_connection const connection = listen();
    GpsC(1, 2).emitTimeSignal();
  }
  GpsC(3, 4).emitTimeSignal();
  EXPECT_THAT(times, ElementsAre(Pair(1, 2)));
}

TEST_F(TimeSignals, ListenersRunInOrderOfConnection) {
  std::vector<int> order;
  boost::signals2::scoped_connection const first =
      connectTimeSignal([&](int, int) { order.push_back(1); });
  boost::signals2::scoped_connection const second =
      connectTimeSignal([&](int, int) { order.push_back(2); });
  GpsC(1, 2).emitTimeSignal();
  EXPECT_THAT(order, ElementsAre(1, 2));
}

TEST_F(TimeSignals, WhatAListenerThrowsComesBack) {
  boost::signals2::scoped_connection const connection =
      connectTimeSignal([](int, int) { throw std::runtime_error("slot"); });
  EXPECT_THROW(GpsC(1, 2).emitTimeSignal(), std::runtime_error);
}

}  // namespace
}  // namespace KTX::TIM::TEST
