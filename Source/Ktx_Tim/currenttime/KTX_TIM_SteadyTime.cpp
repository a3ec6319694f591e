#include "currenttime/KTX_TIM_SteadyTime.h"

#include "support/KTX_TIM_Numeric.h"

namespace KTX::TIM {

std::int64_t offsetDifferenceMs(SteadyTimeC const& a, SteadyTimeC const& b) {
  return truncToInt64(static_cast<double>(elapsedMs(b.steadyMs, a.steadyMs)) + a.mjd * DAY_MS -
                      b.mjd * DAY_MS);
}

}  // namespace KTX::TIM
