#include "support/KTX_TIM_Numeric.h"

#include <cmath>
#include <limits>

namespace KTX::TIM {

std::int64_t truncToInt64(double value) {
  constexpr double LIMIT = 9223372036854775808.0;  // 2^63
  if (std::isnan(value)) {
    return 0;
  }
  if (value >= LIMIT) {
    return std::numeric_limits<std::int64_t>::max();
  }
  if (value < -LIMIT) {
    return std::numeric_limits<std::int64_t>::min();
  }
  return static_cast<std::int64_t>(value);
}

}  // namespace KTX::TIM
