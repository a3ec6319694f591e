#include "KTX/TIM/KTX_TIM_SysTimeClocks.h"

#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_LogAssert.h"
#include "KTX/TIM/KTX_TIM_PresentStatus.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "currenttime/KTX_TIM_SysTimeOffset.h"

namespace KTX::TIM {

void setSysTimeClocks(boost::shared_ptr<ClockI<boost::milli>> const& systemClock,
                      boost::shared_ptr<ClockI<boost::milli>> const& steadyClock) {
  if (!systemClock || !steadyClock) {
    logAssertion("Clock is null!");
    return;
  }
  SysTimeOffsetT::setClocks(systemClock, steadyClock);
}

void resetSysTime() {
  SysTimeOffsetT::reset();
}

PresentStatusC getPresentStatus() {
  Guard const guard(getTimeLock());
  return SysTimeOffsetT::instance().status();
}

}  // namespace KTX::TIM
