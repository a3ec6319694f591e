#include "values/KTX_TIM_WeekTime.h"

#include <gtest/gtest.h>

namespace KTX::TIM::TEST {
namespace {

constexpr double MS = 1.0 / 86400000.0;  // of a day

TEST(WeekTime, OfADayNumberIsNormalisedOnBothSidesOfAWeek) {
  struct {
    double days;  // since the epoch
    std::uint16_t week;
    std::uint32_t msOfWeek;
  } const cases[] = {
      {0, 0, 0},
      {0.4 * MS, 0, 0},
      {0.6 * MS, 0, 1},
      {-0.4 * MS, 0, 0},
      {-0.6 * MS, 65535, 604799999},
      {-1 * MS, 65535, 604799999},
      {-7, 65535, 0},
      {-7 - 0.4 * MS, 65535, 0},
      {-7 - 0.6 * MS, 65534, 604799999},
      {-14, 65534, 0},
      {7, 1, 0},
      {7 - 0.4 * MS, 1, 0},
      {7 - 0.6 * MS, 0, 604799999},
      {7 + 0.4 * MS, 1, 0},
      {7 + 0.6 * MS, 1, 1},
      {65535.0 * 7 + 6, 65535, 518400000},
      {65536.0 * 7, 0, 0},
  };
  for (auto const& c : cases) {
    SCOPED_TRACE(c.days);
    WeekTimeC const time = weekTimeOf(44244 + c.days);
    EXPECT_EQ(c.week, time.week);
    EXPECT_EQ(c.msOfWeek, time.msOfWeek);
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
