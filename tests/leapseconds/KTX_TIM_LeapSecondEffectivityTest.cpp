#include "leapseconds/KTX_TIM_LeapSecondEffectivity.h"

#include <gtest/gtest.h>

#include "leapseconds/KTX_TIM_LeapSecondModel.h"

namespace KTX::TIM::TEST {
namespace {

TEST(LeapSecondEffectivity, LiesBehindTheEndOfTheDayByTheFutureCount) {
  struct {
    std::int16_t future;
    std::uint16_t week;
    std::uint8_t day;
    GPSTimeC dayEnd;
    GPSTimeC instant;
  } const cases[] = {{18, 1929, 7, {1930, 0}, {1930, 18000}},
                     {17, 1929, 7, {1930, 0}, {1930, 17000}},
                     {18, 2347, 3, {2347, 259200000}, {2347, 259218000}},
                     {0, 0, 0, {0, 0}, {0, 0}},
                     {-18, 1929, 7, {1930, 0}, {1929, 604782000}},
                     {-1, 0, 0, {0, 0}, {65535, 604799000}},
                     {32767, 1929, 7, {1930, 0}, {1930, 32767000}},
                     {-32768, 1929, 7, {1930, 0}, {1929, 572032000}},
                     {18, 65535, 7, {0, 0}, {0, 18000}},
                     {18, 10, 255, {46, 259200000}, {46, 259218000}}};
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.future << " " << c.week << "/" << int{c.day});
    UtcLeapSecondRecord const record{LEAPSECOND_GPS, 0, c.future, c.week, c.day, true};
    EXPECT_EQ(c.dayEnd, effectivityDayEnd(record));
    EXPECT_EQ(c.instant, effectivityInstant(record));
  }
}

TEST(LeapSecondEffectivity, DayIsTheOneBeforeTheFirstDayWithTheNewCount) {
  struct {
    GPSTimeC firstDay;
    std::uint16_t week;
    int day;
  } const cases[] = {{{1930, 0}, 1929, 7},         {{1930, 18000}, 1929, 7},
                     {{1930, 86399999}, 1929, 7},  {{1930, 86400000}, 1930, 1},
                     {{1930, 604799999}, 1930, 6}, {{0, 0}, 65535, 7},
                     {{0, 86400000}, 0, 1}};
  for (auto const& c : cases) {
    UtcLeapSecondRecord record{LEAPSECOND_GPS, 17, 18, 0, 0, false};
    setEffectivityDayBefore(record, c.firstDay);
    EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_GPS, 17, 18, c.week, static_cast<std::uint8_t>(c.day),
                                   true}),
              record);
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
