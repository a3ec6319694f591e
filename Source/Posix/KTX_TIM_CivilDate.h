#ifndef KTX_TIM_CIVILDATE_H
#define KTX_TIM_CIVILDATE_H

#include <cstdint>

namespace KTX::TIM {

constexpr std::int64_t SECONDS_PER_DAY = 86400;

/// A day of the proleptic Gregorian calendar.
struct CivilDateC {
  std::int64_t year;
  std::int32_t month;
  std::int32_t day;
};

/// Days from 1970-01-01 to the date. A day outside its month counts on into its neighbours.
std::int64_t daysSinceEpoch(CivilDateC const& date);

/// The date that many days after 1970-01-01.
CivilDateC civilDate(std::int64_t days);

/// 0 for Sunday to 6 for Saturday.
std::int32_t weekdayOf(std::int64_t days);

std::int32_t daysInMonth(std::int64_t year, std::int32_t month);

/// The days in seconds, rounded down.
std::int64_t wholeDays(std::int64_t seconds);

/// The year that has begun at this time, in seconds since 1970-01-01.
std::int64_t yearOf(std::int64_t seconds);

/// The first moment of the year, in seconds since 1970-01-01.
std::int64_t startOfYear(std::int64_t year);

}  // namespace KTX::TIM

#endif  // KTX_TIM_CIVILDATE_H
