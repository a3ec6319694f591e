#include "leapseconds/KTX_TIM_LeapSecondModel.h"

#include <gtest/gtest.h>

namespace KTX::TIM::TEST {
namespace {

TEST(LeapSecondModel, CountsDaysAsAWalkThroughTheCalendarDoes) {
  CivilDateC date{1980, 1, 6};
  for (std::int64_t days = 0; days < 65536 * 7; ++days) {
    CivilDateC const found = civilOfDays(days);
    ASSERT_TRUE(found.year == date.year && found.month == date.month && found.day == date.day)
        << days;
    ASSERT_EQ(days, daysOfCivil(date));
    bool const isLeap = date.year % 400 == 0 || (date.year % 4 == 0 && date.year % 100 != 0);
    bool const isShort = date.month == 4 || date.month == 6 || date.month == 9 || date.month == 11;
    std::int64_t const february = isLeap ? 29 : 28;
    std::int64_t const length = date.month == 2 ? february : isShort ? 30 : 31;
    if (date.day < length) {
      ++date.day;
    } else if (date.month < 12) {
      date = {date.year, date.month + 1, 1};
    } else {
      date = {date.year + 1, 1, 1};
    }
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
