#include "support/KTX_TIM_Numeric.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace KTX::TIM::TEST {
namespace {

constexpr std::int64_t MAXIMUM = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t MINIMUM = std::numeric_limits<std::int64_t>::min();

TEST(TruncToInt64, TruncatesTowardZero) {
  struct {
    double value;
    std::int64_t expected;
  } const cases[] = {
      {0.0, 0},
      {-0.0, 0},
      {0.9999999999999999, 0},
      {-0.9999999999999999, 0},
      {1.0, 1},
      {-1.0, -1},
      {2.5, 2},
      {-2.5, -2},
      {4503599627370495.5, 4503599627370495},
      {9007199254740993.0, 9007199254740992},
      {std::numeric_limits<double>::denorm_min(), 0},
  };
  for (auto const& c : cases) {
    EXPECT_EQ(c.expected, truncToInt64(c.value)) << c.value;
  }
}

TEST(TruncToInt64, TakesTheNearestLimitOutOfRange) {
  double const limit = std::ldexp(1.0, 63);
  double const infinity = std::numeric_limits<double>::infinity();
  struct {
    double value;
    std::int64_t expected;
  } const cases[] = {
      {std::nextafter(limit, 0.0), 9223372036854774784},
      {limit, MAXIMUM},
      {std::nextafter(limit, infinity), MAXIMUM},
      {1e300, MAXIMUM},
      {infinity, MAXIMUM},
      {std::nextafter(-limit, 0.0), -9223372036854774784},
      {-limit, MINIMUM},
      {std::nextafter(-limit, -infinity), MINIMUM},
      {-1e300, MINIMUM},
      {-infinity, MINIMUM},
  };
  for (auto const& c : cases) {
    EXPECT_EQ(c.expected, truncToInt64(c.value)) << c.value;
  }
}

TEST(TruncToInt64, GivesZeroForWhatIsNoNumber) {
  EXPECT_EQ(0, truncToInt64(std::numeric_limits<double>::quiet_NaN()));
  EXPECT_EQ(0, truncToInt64(-std::numeric_limits<double>::quiet_NaN()));
  EXPECT_EQ(0, truncToInt64(std::numeric_limits<double>::signaling_NaN()));
}

}  // namespace
}  // namespace KTX::TIM::TEST
