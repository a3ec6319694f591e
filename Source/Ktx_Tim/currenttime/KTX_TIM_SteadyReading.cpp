#include "currenttime/KTX_TIM_SteadyReading.h"

#include <boost/chrono/system_clocks.hpp>

namespace KTX::TIM {

std::int64_t steadyNs() {
  return boost::chrono::steady_clock::now().time_since_epoch().count();
}

std::int64_t steadyMs() {
  constexpr std::int64_t NS_PER_MS = 1000000;
  return steadyNs() / NS_PER_MS;
}

}  // namespace KTX::TIM
