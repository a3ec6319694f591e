#include "values/KTX_TIM_CalendarText.h"

#include <boost/date_time/gregorian/greg_year.hpp>
#include <gtest/gtest.h>

namespace KTX::TIM::TEST {
namespace {

TEST(CalendarText, PrintsMillisecondsInMicroseconds) {
  struct {
    double dayNumber;
    char const* text;
  } const cases[] = {{-1, "0000-00-00 00:00:00:000000"},
                     {0, "0000-00-00 00:00:00:000000"},
                     {0.5, "1858-11-17 12:00:00:000000"},
                     {60376.339641689815, "2024-03-07 08:09:05:042000"},
                     {51544 + 3.0 / 2048, "2000-01-01 00:02:06:563000"},
                     {51544.9999999999, "2000-01-02 00:00:00:000000"},
                     {2973483.5, "9999-12-31 12:00:00:000000"}};
  for (auto const& c : cases) {
    EXPECT_EQ(c.text, calendarText(c.dayNumber));
  }
}

TEST(CalendarText, ThrowsForADayAfter9999) {
  EXPECT_THROW(calendarText(2973484), boost::gregorian::bad_year);
}

}  // namespace
}  // namespace KTX::TIM::TEST
