#include "Posix/KTX_TIM_CivilDate.h"

namespace KTX::TIM {

namespace {

constexpr std::int64_t YEARS_PER_CYCLE = 400;
constexpr std::int64_t DAYS_PER_CYCLE = 146097;
constexpr std::int64_t DAYS_PER_WEEK = 7;
constexpr std::int64_t EPOCH_WEEKDAY = 4;
// From the first of March of year 0 to the epoch; years are counted from March inside.
constexpr std::int64_t EPOCH_OFFSET = 719468;

std::int64_t floorDivide(std::int64_t value, std::int64_t divisor) {
  std::int64_t const quotient = value / divisor;
  return value % divisor < 0 ? quotient - 1 : quotient;
}

bool isLeapYear(std::int64_t year) {
  return year % 4 == 0 && (year % 100 != 0 || year % YEARS_PER_CYCLE == 0);
}

std::int64_t daysBeforeMonth(std::int64_t monthFromMarch) {
  return (153 * monthFromMarch + 2) / 5;
}

}  // namespace

std::int64_t daysSinceEpoch(CivilDateC const& date) {
  std::int64_t const year = date.month > 2 ? date.year : date.year - 1;
  std::int64_t const monthFromMarch = date.month > 2 ? date.month - 3 : date.month + 9;
  std::int64_t const cycle = floorDivide(year, YEARS_PER_CYCLE);
  std::int64_t const yearOfCycle = year - cycle * YEARS_PER_CYCLE;
  std::int64_t const dayOfCycle = yearOfCycle * 365 + yearOfCycle / 4 - yearOfCycle / 100 +
                                  daysBeforeMonth(monthFromMarch) + date.day - 1;
  return cycle * DAYS_PER_CYCLE + dayOfCycle - EPOCH_OFFSET;
}

CivilDateC civilDate(std::int64_t days) {
  std::int64_t const cycle = floorDivide(days + EPOCH_OFFSET, DAYS_PER_CYCLE);
  std::int64_t const dayOfCycle = days + EPOCH_OFFSET - cycle * DAYS_PER_CYCLE;
  std::int64_t const yearOfCycle =
      (dayOfCycle - dayOfCycle / 1460 + dayOfCycle / 36524 - dayOfCycle / 146096) / 365;
  std::int64_t const dayOfYear =
      dayOfCycle - (yearOfCycle * 365 + yearOfCycle / 4 - yearOfCycle / 100);
  std::int64_t const monthFromMarch = (5 * dayOfYear + 2) / 153;
  auto const month =
      static_cast<std::int32_t>(monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9);
  auto const day = static_cast<std::int32_t>(dayOfYear - daysBeforeMonth(monthFromMarch) + 1);
  std::int64_t const year = cycle * YEARS_PER_CYCLE + yearOfCycle;
  return {month > 2 ? year : year + 1, month, day};
}

std::int32_t weekdayOf(std::int64_t days) {
  std::int64_t const weekday = (days % DAYS_PER_WEEK + EPOCH_WEEKDAY) % DAYS_PER_WEEK;
  return static_cast<std::int32_t>(weekday < 0 ? weekday + DAYS_PER_WEEK : weekday);
}

std::int32_t daysInMonth(std::int64_t year, std::int32_t month) {
  if (month == 2) {
    return isLeapYear(year) ? 29 : 28;
  }
  return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

std::int64_t wholeDays(std::int64_t seconds) {
  return floorDivide(seconds, SECONDS_PER_DAY);
}

std::int64_t yearOf(std::int64_t seconds) {
  return civilDate(wholeDays(seconds)).year;
}

std::int64_t startOfYear(std::int64_t year) {
  return daysSinceEpoch({year, 1, 1}) * SECONDS_PER_DAY;
}

}  // namespace KTX::TIM
