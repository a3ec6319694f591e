// A walk through a real leap second, the one at the end of 2016-12-31, and through its negative
// twin. The walk is told by docs/LEAPSECONDS.md.
#include <cstdint>
#include <map>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "leapseconds/KTX_TIM_LeapSecondModel.h"
#include "leapseconds/KTX_TIM_LeapSecondScopes.h"

namespace KTX::TIM::TEST {
namespace {

constexpr std::int64_t ANNOUNCED_UTC_MS = 1473206400000;   // 2016-09-07 00:00:00
constexpr std::int64_t AFTERWARDS_UTC_MS = 1485907200000;  // 2017-02-01 00:00:00
constexpr std::int64_t SECOND = 1000;
// 2017-01-01 00:00:00 on a clock that counts every day as 86400 seconds from 1980-01-06.
constexpr std::int64_t NEW_YEAR_MS = 1930 * MODEL_WEEK_MS;

GpsC valueOf(std::int64_t ms) {
  return GpsC(GPSTimeC(0, 0) + ms);
}

std::int64_t utcOf(std::int64_t gpsMs) {
  GpsC time = valueOf(gpsMs);
  time.gpsToUtc();
  return static_cast<std::int64_t>(time.toMilliseconds64());
}

std::int64_t gpsOf(std::int64_t utcMs) {
  GpsC time = valueOf(utcMs);
  time.utcToGps();
  return static_cast<std::int64_t>(time.toMilliseconds64());
}

std::string textOf(std::int64_t gpsMs) {
  std::ostringstream stream;
  stream << YmdhmsC(GpsTimeC(valueOf(gpsMs)));
  return stream.str();
}

class LeapSecondWalk : public ::testing::Test {
 protected:
  static std::uint32_t set(UtcLeapSecondRecord const& r) {
    return setUtcLeapSecond(r.current, r.future, r.week, r.day, r.source);
  }

  /// Every second of the three days around the new year, and every millisecond of its last four
  /// seconds before and after.
  template <class StepT>
  static void walk(StepT const& step) {
    std::int64_t const from = NEW_YEAR_MS - 36 * 3600 * SECOND;
    std::int64_t const to = NEW_YEAR_MS + 36 * 3600 * SECOND;
    for (std::int64_t gpsMs = from; gpsMs <= to; gpsMs += SECOND) {
      ASSERT_NO_FATAL_FAILURE(step(gpsMs));
    }
    std::int64_t const change = NEW_YEAR_MS + 18 * SECOND;
    for (std::int64_t gpsMs = change - 4 * SECOND; gpsMs <= change + 4 * SECOND; ++gpsMs) {
      ASSERT_NO_FATAL_FAILURE(step(gpsMs));
    }
  }

  ScopedLeapSecondsC const leapSeconds;
  ScopedPresentC present{ANNOUNCED_UTC_MS};
};

TEST_F(LeapSecondWalk, CountsTheInsertedSecondOf2016) {
  // As the satellites announced it in the autumn of 2016.
  UtcLeapSecondRecord const announced{LEAPSECOND_GPS, 17, 18, 1929, 7, true};

  // Held from the leap second before, the one at the end of 2015-06-30.
  UtcLeapSecondRecord const held{LEAPSECOND_GPS, 16, 17, 1851, 3, true};
  resetSatelliteLeapSecond(&held);
  ASSERT_EQ(RC_OK, set(announced));

  std::int64_t const change = NEW_YEAR_MS + 18 * SECOND;
  std::map<std::int64_t, int> visits;  // of the UTC seconds around the change
  walk([&](std::int64_t gpsMs) {
    std::int64_t const count = gpsMs < change ? 17 : 18;
    ASSERT_EQ(count, getUtcLeapSecondsAt(valueOf(gpsMs))) << gpsMs - change;

    // The inserted second has no number of its own: it repeats 23:59:59.
    bool const isInserted = gpsMs >= change - SECOND && gpsMs < change;
    std::int64_t const utcMs = gpsMs - (isInserted ? 18 : count) * SECOND;
    ASSERT_EQ(utcMs, utcOf(gpsMs)) << gpsMs - change;

    // On the way back 23:59:59 is the first of the two.
    std::int64_t const backMs = gpsMs - (isInserted ? SECOND : 0);
    ASSERT_EQ(backMs, gpsOf(utcMs)) << gpsMs - change;
    ++visits[utcMs];
  });
  // Of the milliseconds of UTC, those of 23:59:59 came twice.
  EXPECT_EQ(1, visits[NEW_YEAR_MS - 1001]);
  EXPECT_EQ(2, visits[NEW_YEAR_MS - 999]);
  EXPECT_EQ(2, visits[NEW_YEAR_MS - 1]);
  EXPECT_EQ(1, visits[NEW_YEAR_MS + 1]);

  EXPECT_EQ("2016-12-31T23:59:58.0Z", textOf(change - 3 * SECOND));
  EXPECT_EQ("2016-12-31T23:59:59.0Z", textOf(change - 2 * SECOND));
  EXPECT_EQ("2016-12-31T23:59:59.0Z", textOf(change - SECOND));
  EXPECT_EQ("2017-01-01T00:00:00.0Z", textOf(change));

  // Afterwards the satellites send the same day with equal counts: refused, and nothing changes.
  present.set(AFTERWARDS_UTC_MS);
  EXPECT_EQ(RC_LEAPSECOND_NOT_ACCEPTED, set({LEAPSECOND_GPS, 18, 18, 1929, 7, true}));
  EXPECT_EQ(NEW_YEAR_MS - 17 * SECOND, utcOf(NEW_YEAR_MS));
}

TEST_F(LeapSecondWalk, CountsADeletedSecond) {
  UtcLeapSecondRecord const held{LEAPSECOND_GPS, 17, 18, 1851, 3, true};
  resetSatelliteLeapSecond(&held);
  ASSERT_EQ(RC_OK, set({LEAPSECOND_GPS, 18, 17, 1929, 7, true}));

  std::int64_t const change = NEW_YEAR_MS + 17 * SECOND;
  walk([&](std::int64_t gpsMs) {
    std::int64_t const count = gpsMs < change ? 18 : 17;
    ASSERT_EQ(count, getUtcLeapSecondsAt(valueOf(gpsMs))) << gpsMs - change;
    std::int64_t const utcMs = gpsMs - count * SECOND;
    ASSERT_EQ(utcMs, utcOf(gpsMs)) << gpsMs - change;
    ASSERT_EQ(gpsMs, gpsOf(utcMs)) << gpsMs - change;
  });
  EXPECT_EQ("2016-12-31T23:59:58.0Z", textOf(change - SECOND));
  EXPECT_EQ("2017-01-01T00:00:00.0Z", textOf(change));

  // 23:59:59 does not exist. Asked for all the same, it is the second after 23:59:58.
  for (std::int64_t ms = 0; ms < SECOND; ++ms) {
    EXPECT_EQ(change + ms, gpsOf(NEW_YEAR_MS - SECOND + ms));
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
