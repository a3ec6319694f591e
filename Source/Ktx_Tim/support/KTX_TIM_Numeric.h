#ifndef KTX_TIM_NUMERIC_H
#define KTX_TIM_NUMERIC_H

#include <cstdint>
#include <limits>

namespace KTX::TIM {

/// Truncates toward zero; not-a-number gives 0, a value out of range the nearest limit.
inline std::int64_t truncToInt64(double value) {
  constexpr double LIMIT = 9223372036854775808.0;  // 2^63
  if (value >= -LIMIT && value < LIMIT) {
    return static_cast<std::int64_t>(value);
  }
  if (value >= LIMIT) {
    return std::numeric_limits<std::int64_t>::max();
  }
  return value < -LIMIT ? std::numeric_limits<std::int64_t>::min() : 0;
}

}  // namespace KTX::TIM

#endif  // KTX_TIM_NUMERIC_H
