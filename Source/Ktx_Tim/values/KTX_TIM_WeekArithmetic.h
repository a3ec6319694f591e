#ifndef KTX_TIM_WEEKARITHMETIC_H
#define KTX_TIM_WEEKARITHMETIC_H

#include <cstdint>

#include "KTX/TIM/KTX_TIM_TimeConstants.h"

namespace KTX::TIM {

/// Distance from 0, defined for the least value too.
inline std::uint64_t magnitudeOf(std::int64_t value) {
  auto const bits = static_cast<std::uint64_t>(value);
  return value < 0 ? 0 - bits : bits;
}

/// Adds milliseconds to a week and its milliseconds; the week wraps at 16 bits.
inline void addMilliseconds(std::uint16_t& week, std::uint32_t& msOfWeek, std::uint64_t amount) {
  std::uint64_t weeks = amount / MS_PER_WEEK;
  msOfWeek += static_cast<std::uint32_t>(amount % MS_PER_WEEK);
  if (msOfWeek >= MS_PER_WEEK) {
    msOfWeek -= MS_PER_WEEK;
    ++weeks;
  }
  week = static_cast<std::uint16_t>(week + weeks);
}

/// Takes milliseconds off a week and its milliseconds; the week wraps at 16 bits.
inline void takeMilliseconds(std::uint16_t& week, std::uint32_t& msOfWeek, std::uint64_t amount) {
  std::uint64_t weeks = amount / MS_PER_WEEK;
  auto const rest = static_cast<std::uint32_t>(amount % MS_PER_WEEK);
  if (msOfWeek < rest) {
    msOfWeek += MS_PER_WEEK;
    ++weeks;
  }
  msOfWeek -= rest;
  week = static_cast<std::uint16_t>(week - weeks);
}

}  // namespace KTX::TIM

#endif  // KTX_TIM_WEEKARITHMETIC_H
