// Values used by a global object of the program, before main() and, where the library's objects are
// linked in, before its own start-up has run.
#include <chrono>
#include <cstdint>

#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_ClockFactory.h"
#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_LogAssert.h"
#include "KTX/TIM/KTX_TIM_TickCount.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "KTX/TIM/KTX_TIM_TimeZone.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"

namespace KTX::TIM::TEST {
namespace {

std::int64_t systemMs() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
             std::chrono::system_clock::now().time_since_epoch())
      .count();
}

// Milliseconds since 1970 of a GPS time, by the leap seconds that the library starts with.
std::int64_t utcMsOf(GPSTimeC const& time) {
  constexpr std::int64_t GPS_EPOCH_MS = 315964800000;
  constexpr std::int64_t MS_PER_WEEK = 604800000;
  constexpr std::int64_t LEAP_MS = 18000;
  return GPS_EPOCH_MS + time.getWeek() * MS_PER_WEEK + time.getMsOfWeek() - LEAP_MS;
}

struct EarlyUseC {
  EarlyUseC() {
    Guard const guard(getTimeLock());
    logAssertion("written before main()");
  }

  std::int64_t const systemBeforeMs = systemMs();
  GpsC const present = GpsC::currentTime();
  YmdhmsC const calendar;
  std::int16_t const leapSeconds = GpsTimeC(present).getLeapSeconds();
  std::uint32_t const ticks = getTickCountMs();
  TimeZoneC* const zone = &getTimeZoneInstance();
  LeapSecondProviderI* const store = getDefaultLeapSecondProvider();
  bool const hasClock = createClock<boost::nano>(CLOCKTYPE_POSIX, CLOCKREF_UTC) != nullptr;
};

__attribute__((init_priority(101))) EarlyUseC const early;

TEST(GlobalConstructor, HasThePresent) {
  constexpr std::int64_t MINUTE_MS = 60000;
  EXPECT_LT(std::abs(utcMsOf(early.present) - early.systemBeforeMs), MINUTE_MS);
  EXPECT_LE(early.present, GpsC::currentTime());
  EXPECT_EQ(TIMEBASE_GPS, early.calendar.timeBase);
  EXPECT_EQ(18, early.leapSeconds);
}

TEST(GlobalConstructor, HasTheObjectsThatStay) {
  EXPECT_EQ(&getTimeZoneInstance(), early.zone);
  EXPECT_EQ(getDefaultLeapSecondProvider(), early.store);
  EXPECT_TRUE(early.hasClock);
  EXPECT_LE(getTickCountMs() - early.ticks, 3600000U);
}

}  // namespace
}  // namespace KTX::TIM::TEST
