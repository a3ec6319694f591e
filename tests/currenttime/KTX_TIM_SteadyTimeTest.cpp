#include "currenttime/KTX_TIM_SteadyTime.h"

#include <limits>

#include <gtest/gtest.h>

namespace KTX::TIM::TEST {
namespace {

constexpr std::int64_t LOWEST = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t HIGHEST = std::numeric_limits<std::int64_t>::max();

TEST(SteadyTime, ElapsedTimeIsSignedAndWraps) {
  EXPECT_EQ(5, elapsedMs(15, 10));
  EXPECT_EQ(-5, elapsedMs(10, 15));
  EXPECT_EQ(1, elapsedMs(LOWEST, HIGHEST));
  EXPECT_EQ(LOWEST, elapsedMs(LOWEST, 0));
}

TEST(SteadyTime, OffsetDifferenceTakesBothReadingsIntoAccount) {
  EXPECT_EQ(0, offsetDifferenceMs({60000.0, 0}, {60000.0, 0}));
  EXPECT_EQ(86400000, offsetDifferenceMs({60001.0, 0}, {60000.0, 0}));
  EXPECT_EQ(0, offsetDifferenceMs({60001.0, 86400000}, {60000.0, 0}));
  EXPECT_EQ(-250, offsetDifferenceMs({60000.0, 250}, {60000.0, 0}));
  EXPECT_EQ(250, offsetDifferenceMs({60000.0, 0}, {60000.0, 250}));
}

TEST(SteadyTime, OffsetDifferenceTruncatesTowardZero) {
  double const threeQuartersMs = 0.75 / DAY_MS;
  EXPECT_EQ(0, offsetDifferenceMs({threeQuartersMs, 0}, {0.0, 0}));
  EXPECT_EQ(0, offsetDifferenceMs({0.0, 0}, {threeQuartersMs, 0}));
}

TEST(SteadyTime, OffsetDifferenceSaturates) {
  EXPECT_EQ(HIGHEST, offsetDifferenceMs({1e300, 0}, {0.0, 0}));
  EXPECT_EQ(LOWEST, offsetDifferenceMs({-1e300, 0}, {0.0, 0}));
  EXPECT_EQ(0, offsetDifferenceMs({std::numeric_limits<double>::quiet_NaN(), 0}, {0.0, 0}));
  EXPECT_EQ(1, offsetDifferenceMs({0.0, HIGHEST}, {0.0, LOWEST}));
}

}  // namespace
}  // namespace KTX::TIM::TEST
