#include "currenttime/KTX_TIM_Present.h"

#include <cstdint>
#include <cstdio>

#include "KTX/TIM/KTX_TIM_TimeConstants.h"
#include "currenttime/KTX_TIM_PresentWarningSwitch.h"
#include "currenttime/KTX_TIM_SteadyTime.h"
#include "currenttime/KTX_TIM_SysTimeOffset.h"

namespace KTX::TIM {

MjdTimeC presentUtc(SysTimeOffsetT const& offset) {
  std::int64_t const steadyMs = offset.getSteadyClock().now().count();
  SteadyTimeC const& mapping = offset.getCurrentSysTime();
  std::int64_t const elapsed = elapsedMs(steadyMs, mapping.steadyMs);
  if (elapsed > MS_PER_DAY && isPresentWarningEnabled()) {
    std::fputs("[KTX::TIM] Hoops wrong correction!\n", stdout);
    std::fflush(stdout);
  }
  double const dt = static_cast<double>(elapsed) / DAY_MS;
  return MjdTimeC(mapping.mjd + dt, TIMEBASE_UTC);
}

}  // namespace KTX::TIM
