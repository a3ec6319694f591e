#ifndef KTX_TIM_WEEKTIME_H
#define KTX_TIM_WEEKTIME_H

#include <cstdint>

#include "KTX/TIM/KTX_TIM_TimeConstants.h"
#include "support/KTX_TIM_Numeric.h"

namespace KTX::TIM {

/// A GPS week and its milliseconds, without the cost of a class that can be derived from.
struct WeekTimeC {
  std::uint16_t week;
  std::uint32_t msOfWeek;
};

/// Distance from 0, defined for the least value too.
inline std::uint64_t magnitudeOf(std::int64_t value) {
  auto const bits = static_cast<std::uint64_t>(value);
  return value < 0 ? 0 - bits : bits;
}

/// Adds milliseconds; the week wraps at 16 bits.
inline WeekTimeC added(WeekTimeC time, std::uint64_t milliseconds) {
  std::uint64_t weeks = milliseconds / MS_PER_WEEK;
  time.msOfWeek += static_cast<std::uint32_t>(milliseconds % MS_PER_WEEK);
  if (time.msOfWeek >= MS_PER_WEEK) {
    time.msOfWeek -= MS_PER_WEEK;
    ++weeks;
  }
  time.week = static_cast<std::uint16_t>(time.week + weeks);
  return time;
}

/// Takes off milliseconds; the week wraps at 16 bits.
inline WeekTimeC taken(WeekTimeC time, std::uint64_t milliseconds) {
  std::uint64_t weeks = milliseconds / MS_PER_WEEK;
  auto const rest = static_cast<std::uint32_t>(milliseconds % MS_PER_WEEK);
  if (time.msOfWeek < rest) {
    time.msOfWeek += MS_PER_WEEK;
    ++weeks;
  }
  time.msOfWeek -= rest;
  time.week = static_cast<std::uint16_t>(time.week - weeks);
  return time;
}

/// The Modified Julian Date, unrounded.
inline double dayNumberOf(WeekTimeC time) {
  double const wholeDays = GPS_EPOCH_MJD + time.week * 7;
  return wholeDays + time.msOfWeek / 1000.0 / 86400.0;
}

/// The week and milliseconds nearest a Modified Julian Date; the week is cut to 16 bits.
inline WeekTimeC weekTimeOf(double dayNumber) {
  constexpr std::int64_t WEEK = MS_PER_WEEK;
  double const d = dayNumber - GPS_EPOCH_MJD;
  std::int64_t const weeks = truncToInt64(d / 7.0);
  double const rounded = (d - static_cast<double>(weeks) * 7.0) * 86400.0 * 1000.0 + 0.5;
  std::int64_t const truncated = truncToInt64(rounded);
  std::int64_t carry = truncated / WEEK;
  std::int64_t ms = truncated % WEEK;
  // Truncation is not the floor below zero, as for days before the epoch.
  if (static_cast<double>(truncated) > rounded) {
    --ms;
  }
  if (ms < 0) {
    ms += WEEK;
    --carry;
  }
  // Rounding up may give a whole week.
  auto const week = static_cast<std::uint64_t>(weeks) + static_cast<std::uint64_t>(carry);
  return {static_cast<std::uint16_t>(week), static_cast<std::uint32_t>(ms)};
}

}  // namespace KTX::TIM

#endif  // KTX_TIM_WEEKTIME_H
