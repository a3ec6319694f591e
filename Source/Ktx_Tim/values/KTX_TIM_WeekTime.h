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
  if (milliseconds >= MS_PER_WEEK) {
    time.week = static_cast<std::uint16_t>(time.week + milliseconds / MS_PER_WEEK);
    milliseconds %= MS_PER_WEEK;
  }
  time.msOfWeek += static_cast<std::uint32_t>(milliseconds);
  if (time.msOfWeek >= MS_PER_WEEK) {
    time.msOfWeek -= MS_PER_WEEK;
    ++time.week;
  }
  return time;
}

/// Takes off milliseconds; the week wraps at 16 bits.
inline WeekTimeC taken(WeekTimeC time, std::uint64_t milliseconds) {
  if (milliseconds >= MS_PER_WEEK) {
    time.week = static_cast<std::uint16_t>(time.week - milliseconds / MS_PER_WEEK);
    milliseconds %= MS_PER_WEEK;
  }
  if (time.msOfWeek < milliseconds) {
    time.msOfWeek += MS_PER_WEEK;
    --time.week;
  }
  time.msOfWeek -= static_cast<std::uint32_t>(milliseconds);
  return time;
}

/// Moves by seconds of either sign; the week wraps at 16 bits.
inline WeekTimeC shifted(WeekTimeC time, std::int32_t seconds) {
  std::uint64_t const milliseconds = magnitudeOf(seconds) * 1000;
  return seconds < 0 ? taken(time, milliseconds) : added(time, milliseconds);
}

inline bool isBefore(WeekTimeC a, WeekTimeC b) {
  return a.week != b.week ? a.week < b.week : a.msOfWeek < b.msOfWeek;
}

/// The Modified Julian Date, unrounded.
inline double dayNumberOf(WeekTimeC time) {
  double const wholeDays = GPS_EPOCH_MJD + time.week * 7;
  return wholeDays + time.msOfWeek / 1000.0 / 86400.0;
}

/// Truncation is not the floor below zero, as for days before the epoch.
inline std::int64_t floorToInt64(double value) {
  std::int64_t const truncated = truncToInt64(value);
  bool const isLowest = truncated == std::numeric_limits<std::int64_t>::min();
  return static_cast<double>(truncated) > value && !isLowest ? truncated - 1 : truncated;
}

/// Whole weeks in d days, truncated toward zero.
inline std::int64_t wholeWeeks(double d) {
  constexpr double LIMIT = 1e9;
  if (d > -LIMIT && d < LIMIT) {
    // Where d / 7.0 rounds up to a week that is not quite full, this is one less; the milliseconds
    // then round up to the same instant.
    return static_cast<std::int32_t>(d) / 7;
  }
  return truncToInt64(d / 7.0);
}

/// The week and milliseconds nearest a Modified Julian Date; the week is cut to 16 bits.
inline WeekTimeC weekTimeOf(double dayNumber) {
  constexpr std::int64_t WEEK = MS_PER_WEEK;
  double const d = dayNumber - GPS_EPOCH_MJD;
  std::int64_t const weeks = wholeWeeks(d);
  double const exactMs = (d - static_cast<double>(weeks) * 7.0) * 86400.0 * 1000.0;
  std::int64_t ms = floorToInt64(exactMs + 0.5);
  auto week = static_cast<std::uint64_t>(weeks);
  // Days before the epoch give negative milliseconds, and rounding up may give a whole week.
  if (ms < 0 || ms >= WEEK) {
    week += static_cast<std::uint64_t>(ms / WEEK);
    ms %= WEEK;
    if (ms < 0) {
      ms += WEEK;
      --week;
    }
  }
  return {static_cast<std::uint16_t>(week), static_cast<std::uint32_t>(ms)};
}

}  // namespace KTX::TIM

#endif  // KTX_TIM_WEEKTIME_H
