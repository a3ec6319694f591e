#ifndef KTX_TIM_NUMERIC_H
#define KTX_TIM_NUMERIC_H

#include <cstdint>

namespace KTX::TIM {

/// Truncates toward zero; not-a-number gives 0, a value out of range the nearest limit.
std::int64_t truncToInt64(double value);

}  // namespace KTX::TIM

#endif  // KTX_TIM_NUMERIC_H
