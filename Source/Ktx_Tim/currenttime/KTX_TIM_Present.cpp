#include "currenttime/KTX_TIM_Present.h"

#include <cstdint>
#include <cstdio>

#include "currenttime/KTX_TIM_SteadyTime.h"
#include "currenttime/KTX_TIM_SysTimeOffset.h"

namespace KTX::TIM {

MjdTimeC presentUtc(SysTimeOffsetT const& offset) {
  std::int64_t const steadyMs = offset.getSteadyClock().now().count();
  SteadyTimeC const& mapping = offset.getCurrentSysTime();
  double const dt = static_cast<double>(elapsedMs(steadyMs, mapping.steadyMs)) / DAY_MS;
  if (dt > 1.0) {
    std::fputs("[KTX::TIM] Hoops wrong correction!\n", stdout);
    std::fflush(stdout);
  }
  return MjdTimeC(mapping.mjd + dt, TIMEBASE_UTC);
}

}  // namespace KTX::TIM
