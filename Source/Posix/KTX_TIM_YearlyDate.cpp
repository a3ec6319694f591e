#include "Posix/KTX_TIM_YearlyDate.h"

#include <algorithm>

#include "Posix/KTX_TIM_CivilDate.h"
#include "Posix/KTX_TIM_TextNumbers.h"

namespace KTX::TIM {

namespace {

constexpr std::int32_t DAYS_PER_WEEK = 7;
constexpr std::int32_t LAST_WEEK = 5;
constexpr std::int32_t LAST_WEEKDAY = 6;
constexpr std::int32_t LAST_MONTH = 12;
constexpr std::int32_t LAST_DAY_OF_YEAR = 365;
constexpr std::int32_t FEBRUARY_28 = 59;
// A week, less an hour: what the extended form of the text allows.
constexpr std::int32_t HOUR_LIMIT = 167;

std::int64_t monthWeekDay(YearlyDateC const& date, std::int64_t year) {
  std::int64_t const first = daysSinceEpoch({year, date.month, 1});
  std::int32_t const toWeekday = (date.weekday - weekdayOf(first) + DAYS_PER_WEEK) % DAYS_PER_WEEK;
  std::int32_t day = toWeekday + (date.week - 1) * DAYS_PER_WEEK;
  if (day >= daysInMonth(year, date.month)) {
    day -= DAYS_PER_WEEK;
  }
  return first + day;
}

std::int64_t dayInYear(YearlyDateC const& date, std::int64_t year) {
  if (date.form == YearlyDateC::FORM_MONTH_WEEK_DAY) {
    return monthWeekDay(date, year);
  }
  std::int64_t const first = daysSinceEpoch({year, 1, 1});
  if (date.form == YearlyDateC::FORM_DAY_OF_YEAR) {
    return first + date.day;
  }
  bool const isAfterLeapDay = date.day > FEBRUARY_28 && daysInMonth(year, 2) == 29;
  return first + date.day - (isAfterLeapDay ? 0 : 1);
}

bool parseMonthWeekDay(std::string_view& text, YearlyDateC& date) {
  date.form = YearlyDateC::FORM_MONTH_WEEK_DAY;
  return takeNumber(text, LAST_MONTH, date.month) && date.month >= 1 && takeCharacter(text, '.') &&
         takeNumber(text, LAST_WEEK, date.week) && date.week >= 1 && takeCharacter(text, '.') &&
         takeNumber(text, LAST_WEEKDAY, date.weekday);
}

bool parseDay(std::string_view& text, YearlyDateC& date) {
  if (takeCharacter(text, 'M')) {
    return parseMonthWeekDay(text, date);
  }
  if (takeCharacter(text, 'J')) {
    date.form = YearlyDateC::FORM_JULIAN_DAY;
    return takeNumber(text, LAST_DAY_OF_YEAR, date.day) && date.day >= 1;
  }
  date.form = YearlyDateC::FORM_DAY_OF_YEAR;
  return takeNumber(text, LAST_DAY_OF_YEAR, date.day);
}

}  // namespace

std::int64_t YearlyDateC::inYear(std::int64_t year) const {
  return dayInYear(*this, year) * SECONDS_PER_DAY + secondsOfDay;
}

bool parseYearlyDate(std::string_view& text, YearlyDateC& date) {
  date = {};
  if (!parseDay(text, date)) {
    return false;
  }
  return !takeCharacter(text, '/') || takeSignedTime(text, HOUR_LIMIT, date.secondsOfDay);
}

}  // namespace KTX::TIM
