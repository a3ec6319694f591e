#include <ctime>
#include <sstream>

#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_GpsLocal.h"
#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "common/KTX_TIM_AllocationFault.h"
#include "values/KTX_TIM_ZoneOffset.h"

namespace KTX::TIM::TEST {
namespace {

class ValuesAllocation : public ::testing::Test {
 protected:
  ZoneOffsetC const zone{60};
  // Process-wide objects may allocate when they are first used.
  LeapSecondProviderI* const store = getDefaultLeapSecondProvider();
  YmdhmsC const warmUp = [] {
    YmdhmsC value(MjdTimeC(51544.0, TIMEBASE_LOCAL));
    value.toGps();
    return value;
  }();
};

TEST_F(ValuesAllocation, OfArithmeticIsNone) {
  AllocationWatchC const watch;
  GPSTimeC time(2304, 1000);
  time += GPSTimeC(1, 604799999);
  time -= GPSTimeC(1, 1);
  time = time + time - GPSTimeC(1, 2) + std::int64_t{5} - std::int64_t{7};
  time += -1;
  time -= -1;
  time.addSeconds(-604801);
  GPSTimeC const distance(time, GPSTimeC(1, 1));
  EXPECT_LT(distance, time);
  EXPECT_NE(0, differenceMs(time, distance));
  EXPECT_NE(0U, time.toMilliseconds32() + time.toMilliseconds64());
  EXPECT_EQ(0U, watch.allocationCount());
}

TEST_F(ValuesAllocation, OfWeekConversionsIsNone) {
  AllocationWatchC const watch;
  GpsTimeC time(GPSTimeC(2304, 1000));
  time.gpsToUtc();
  time.utcToGps();
  EXPECT_EQ(18, time.getLeapSeconds());
  GpsLocalC local(store);
  local = time;
  EXPECT_EQ(GPSTimeC(2304, 1000), local);
  EXPECT_EQ(0U, watch.allocationCount());
}

TEST_F(ValuesAllocation, OfDayNumberConversionsIsNone) {
  AllocationWatchC const watch;
  MjdTimeC time(GPSTimeC(2304, 1000));
  for (TimeBaseE const base :
       {TIMEBASE_LOCAL, TIMEBASE_GPS, TIMEBASE_UTC, TIMEBASE_LOCAL, TIMEBASE_UTC, TIMEBASE_GPS}) {
    EXPECT_TRUE(time.convertTo(base));
  }
  EXPECT_TRUE(time < MjdTimeC(70000.0));
  EXPECT_EQ(GPSTimeC(2304, 1000), GpsTimeC(time));
  EXPECT_EQ(63, time.dayOfYear());
  EXPECT_EQ(0U, watch.allocationCount());
}

TEST_F(ValuesAllocation, OfCalendarConversionsIsNone) {
  AllocationWatchC const watch;
  YmdhmsC value{GPSTimeC(2304, 1000)};
  value.toUtc();
  value.utcToLocal();
  value.localToUtc();
  value.utcToLocal();
  value.toGps();
  EXPECT_TRUE(value == YmdhmsC(GPSTimeC(2304, 1000)));
  EXPECT_EQ(GPSTimeC(2304, 1000), GpsTimeC(value));
  std::uint16_t fatTime = 0;
  std::uint16_t fatDate = 0;
  value.toFatDateTime(fatTime, fatDate);
  EXPECT_NE(0.0, MjdTimeC(fatTime, fatDate).getDayNumber());
  std::tm brokenDown{};
  value.toTm(&brokenDown);
  value.fromTm(&brokenDown);
  EXPECT_EQ(0U, watch.allocationCount());
}

TEST_F(ValuesAllocation, OfTextInReusedStreamsIsNone) {
  YmdhmsC value{GPSTimeC(2304, 1000)};
  std::stringstream stream;
  stream << GpsTimeC(value) << value << "grown to the size of the texts";
  stream.seekp(0);
  AllocationWatchC const watch;
  stream << value;
  stream >> value;
  EXPECT_TRUE(stream.good());
  EXPECT_EQ(TIMEBASE_UTC, value.timeBase);
  stream << GpsTimeC(value);
  EXPECT_EQ(0U, watch.allocationCount());
}

}  // namespace
}  // namespace KTX::TIM::TEST
