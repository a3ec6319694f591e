#ifndef KTX_TIM_STEADYREADING_H
#define KTX_TIM_STEADYREADING_H

#include <cstdint>

namespace KTX::TIM {

/// The steady counter of the machine, in nanoseconds and in whole milliseconds.
std::int64_t steadyNs();
std::int64_t steadyMs();

}  // namespace KTX::TIM

#endif  // KTX_TIM_STEADYREADING_H
