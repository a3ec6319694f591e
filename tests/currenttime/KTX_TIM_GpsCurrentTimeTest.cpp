#include <cstdint>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "common/KTX_TIM_FakePresent.h"
#include "currenttime/KTX_TIM_SysTimeOffset.h"
#include "values/KTX_TIM_DayNumber.h"

namespace KTX::TIM::TEST {
namespace {

constexpr std::int64_t GPS_EPOCH_UNIX_MS = 315964800000;

class NoLeapSecondsC final : public LeapSecondProviderI {
 public:
  std::uint32_t getLeapSecond(GpsC const& /*time*/,
                              UtcLeapSecondRecord& record,
                              GpsC* /*effectivity*/) override {
    record.current = 0;
    record.future = 0;
    return 0;
  }
};

class GpsCurrentTime : public ::testing::Test {
 protected:
  // The leap seconds in force before 2017 are those of the default record as well.
  void setPresent(std::uint16_t week, std::uint32_t msOfWeek) const {
    present.seed(GPS_EPOCH_UNIX_MS + std::int64_t{week} * MS_PER_WEEK + msOfWeek - 18000);
    ASSERT_EQ(GPSTimeC(week, msOfWeek), GpsC::currentTime());
  }

  // Makes a day number of UTC the present, exactly.
  static void setPresentDay(double mjd) {
    Guard const guard(getTimeLock());
    bool isReleased = false;
    std::int64_t differenceMs = 0;
    SysTimeOffsetT::instance().update(mjd, 0, isReleased, differenceMs);
    ASSERT_TRUE(isReleased);
  }

  FakePresentC present;
};

TEST_F(GpsCurrentTime, GivesMilliseconds) {
  present.seed(FakePresentC::THURSDAY_MS + 123);
  EXPECT_EQ(GPSTimeC(2304, 374963123), GpsC::currentTime());
  EXPECT_EQ(getDefaultLeapSecondProvider(), GpsC::currentTime().getLeapSecondProvider());
}

TEST_F(GpsCurrentTime, SetToNowKeepsProviderAndTimeBase) {
  NoLeapSecondsC provider;
  GpsC value(&provider);
  value.makeToCurrentTime();
  EXPECT_EQ(GPSTimeC(2304, 374963000), value);
  EXPECT_EQ(&provider, value.getLeapSecondProvider());
  GpsTimeC based;
  based.setTimeBase(TIMEBASE_UTC);
  based.makeToCurrentTime();
  EXPECT_EQ(GPSTimeC(2304, 374963000), based);
  EXPECT_EQ(TIMEBASE_UTC, based.getTimeBase());
}

TEST_F(GpsCurrentTime, RoundsHalfAMillisecondUp) {
  struct {
    double mjd;
    std::uint32_t msOfWeek;
  } const cases[] = {{44244.0 + 3.0 / 2048.0, 126563}, {44244.0 + 1.0 / 2048.0, 42188}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.mjd);
    setPresentDay(c.mjd);
    EXPECT_EQ(GPSTimeC(0, c.msOfWeek + 18000), GpsC::currentTime());
  }
}

TEST_F(GpsCurrentTime, CrossesTheEndOfAWeek) {
  setPresent(2304, MS_PER_WEEK - 1);
  present.steady->advanceMs(1);
  EXPECT_EQ(GPSTimeC(2305, 0), GpsC::currentTime());
}

TEST_F(GpsCurrentTime, AgreesWithTheRoadThroughTheCalendarToTheMillisecond) {
  constexpr unsigned SEED = 20240307;
  std::mt19937_64 random(SEED);
  for (int i = 0; i < 20000; ++i) {
    double const mjd =
        44244.0 +
        static_cast<double>(random() % 65536 * 7 * MS_PER_DAY + random() % MS_PER_WEEK) / 8.64e7;
    SCOPED_TRACE(::testing::Message() << "seed " << SEED << " number " << i << " day " << mjd);
    setPresentDay(mjd);
    present.steady->advanceMs(static_cast<std::int64_t>(random() % MS_PER_DAY));
    YmdhmsC calendar = YmdhmsC::zero(TIMEBASE_LOCAL, 1);
    calendar.makeToCurrentTime();
    ASSERT_EQ(gpsTimeOf(MjdTimeC(calendar).getDayNumber()), GpsC::currentTime());
  }
}

TEST_F(GpsCurrentTime, AFrameResolvesToTheOneNearestThePresent) {
  struct {
    std::uint16_t week;
    std::uint32_t presentMs;
    std::uint32_t msInFrame;
    std::uint16_t frameWeek;
    std::uint32_t frameMs;
  } const cases[] = {
      {2000, 1000000, 230000, 2000, 950000},
      {2000, 1000000, 10000, 2000, 970000},
      {2000, 1150000, 10000, 2000, 1210000},
      {2000, 0, 230000, 1999, 604790000},
      {2000, 0, 180000, 2000, 180000},
      {2000, 0, 180001, 1999, 604740001},
      {2000, 604799999, 1000, 2001, 1000},
      {2000, 604799999, 0, 2001, 0},
      {2000, 604799999, 179998, 2001, 179998},
      {2000, 604799999, 179999, 2000, 604739999},
      {2000, 60000, 0, 2000, 0},
      {2000, 60001, 0, 2000, 240000},
      {2000, 59999, 0, 2000, 0},
  };
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.week << " " << c.presentMs << " " << c.msInFrame);
    setPresent(c.week, c.presentMs);
    GpsC const resolved(c.msInFrame);
    EXPECT_EQ(c.frameWeek, resolved.getWeek());
    EXPECT_EQ(c.frameMs, resolved.getMsOfWeek());
    EXPECT_EQ(getDefaultLeapSecondProvider(), resolved.getLeapSecondProvider());
  }
}

TEST_F(GpsCurrentTime, MillisecondsBeyondTheFrameAreNotCarriedIntoTheWeek) {
  setPresent(2000, 604799000);
  GpsC const beyond(std::uint32_t{240000});
  EXPECT_EQ(2000, beyond.getWeek());
  EXPECT_EQ(604800000u, beyond.getMsOfWeek());
  setPresent(2000, 0);
  EXPECT_EQ(GPSTimeC(2000, 0), GpsC(std::uint32_t{240000}));
  setPresent(2000, 1000000);
  EXPECT_EQ(GPSTimeC(2000, 959999), GpsC(std::uint32_t{4294967295}));  // the sum wraps
}

TEST_F(GpsCurrentTime, TheFrameWrapsBeforeTheEpoch) {
  setPresent(0, 18000);
  present.steady->advanceMs(-17990);
  ASSERT_EQ(GPSTimeC(0, 10), GpsC::currentTime());
  EXPECT_EQ(GPSTimeC(0, 250000), GpsC(std::uint32_t{10000}));
}

TEST_F(GpsCurrentTime, TheFrameLiesOneMinuteBeforeToThreeMinutesAfter) {
  constexpr unsigned SEED = 4;
  std::mt19937 random(SEED);
  setPresent(2304, 374963000);
  for (int i = 0; i < 5000; ++i) {
    present.steady->advanceMs(static_cast<std::int64_t>(random() % 10000));
    auto const msInFrame = static_cast<std::uint32_t>(random() % 240000);
    SCOPED_TRACE(::testing::Message() << "seed " << SEED << " number " << i);
    std::int64_t const aheadMs = differenceMs(GpsC(msInFrame), GpsC::currentTime());
    ASSERT_GE(aheadMs, -60000);
    ASSERT_LE(aheadMs, 180000);
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
