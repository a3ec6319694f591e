#include "values/KTX_TIM_DayNumber.h"

#include <cstdint>
#include <limits>

#include "support/KTX_TIM_Numeric.h"

namespace KTX::TIM {
namespace {

/// The greatest whole number not above value.
std::int64_t floorToInt64(double value) {
  std::int64_t const whole = truncToInt64(value);
  bool const isSaturated = whole == std::numeric_limits<std::int64_t>::min();
  return static_cast<double>(whole) > value && !isSaturated ? whole - 1 : whole;
}

}  // namespace

double dayNumberOf(GPSTimeC const& time) {
  double const wholeDays = GPS_EPOCH_MJD + time.getWeek() * 7;
  return wholeDays + time.getMsOfWeek() / 1000.0 / 86400.0;
}

GPSTimeC gpsTimeOf(double dayNumber) {
  constexpr std::int64_t WEEK = MS_PER_WEEK;
  double const d = dayNumber - GPS_EPOCH_MJD;
  std::int64_t const weeks = truncToInt64(d / 7.0);
  double const exactMs = (d - static_cast<double>(weeks) * 7.0) * 86400.0 * 1000.0;
  std::int64_t const ms = floorToInt64(exactMs + 0.5);
  // Days before the epoch give negative milliseconds, rounding up may give a whole week.
  std::int64_t carry = ms / WEEK;
  std::int64_t msOfWeek = ms % WEEK;
  if (msOfWeek < 0) {
    msOfWeek += WEEK;
    --carry;
  }
  auto const week = static_cast<std::uint64_t>(weeks) + static_cast<std::uint64_t>(carry);
  return GPSTimeC(static_cast<std::uint16_t>(week), static_cast<std::uint32_t>(msOfWeek));
}

}  // namespace KTX::TIM
