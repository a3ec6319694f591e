#include "currenttime/KTX_TIM_TimeText.h"

#include <limits>

#include <boost/date_time/gregorian/greg_year.hpp>
#include <gtest/gtest.h>

namespace KTX::TIM::TEST {
namespace {

TEST(TimeText, ShowsDayNumberReadingAndCalendar) {
  EXPECT_EQ("Time: 60376.000000000000000d @ -5ms (2024-03-07 00:00:00:000000)",
            timeText({60376.0, -5}));
  EXPECT_EQ("Time: 60376.500000000000000d @ 9223372036854775807ms (2024-03-07 12:00:00:000000)",
            timeText({60376.5, std::numeric_limits<std::int64_t>::max()}));
}

TEST(TimeText, ShowsADayNumberWithoutCalendarAsZeros) {
  EXPECT_EQ("Time: -3.500000000000000d @ 0ms (0000-00-00 00:00:00:000000)", timeText({-3.5, 0}));
}

TEST(TimeText, PassesTheDateLibrarysRefusalOn) {
  EXPECT_THROW(timeText({2973484.0, 0}), boost::gregorian::bad_year);
}

TEST(TimeText, TheEstimateAddsTruncatedNoise) {
  EXPECT_EQ(
      "Time: 60376.000000000000000d @ 1ms (2024-03-07 00:00:00:000000) Noise (std. dev.): "
      "0.000000115740741d (10ms)",
      estimateText({{60376.0, 1}, 10 / DAY_MS}));
}

TEST(TimeText, NoiseLosesAMillisecondWhereTheDivisionDoes) {
  struct {
    int noiseMs;
    char const* end;
  } const cases[] = {{31, "(30ms)"}, {47, "(46ms)"}, {62, "(61ms)"},     {10, "(10ms)"},
                     {19, "(19ms)"}, {20, "(20ms)"}, {5000, "(5000ms)"}, {-10, "(-10ms)"}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.noiseMs);
    std::string const text = estimateText({{60376.0, 1}, c.noiseMs / DAY_MS});
    std::string const end(c.end);
    ASSERT_GT(text.size(), end.size());
    EXPECT_EQ(end, text.substr(text.size() - end.size()));
  }
}

TEST(TimeText, FifteenDecimalsHoldForEveryDouble) {
  std::string text;
  appendFixed15(text, -std::numeric_limits<double>::max());
  EXPECT_EQ(1u + 309u + 1u + 15u, text.size());
  text.clear();
  appendFixed15(text, -1.5e-16);
  EXPECT_EQ("-0.000000000000000", text);
}

}  // namespace
}  // namespace KTX::TIM::TEST
