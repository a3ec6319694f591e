// What the library builds while it is loaded, in this order; unload destroys it in reverse, and the
// end of the process leaves it as it is (support/KTX_TIM_ProcessObject.h).
//
// Each object lives in the accessor of the file that owns it, so an earlier use is safe too. The
// system's loader may hold its lock meanwhile: no registry, no waiting, no thread here.
#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "KTX/TIM/KTX_TIM_TimeZone.h"
#include "currenttime/KTX_TIM_PosixClock.h"
#include "currenttime/KTX_TIM_SysTimeOffset.h"
#include "currenttime/KTX_TIM_TimeSignals.h"
#include "support/KTX_TIM_ForkLocks.h"
#include "support/KTX_TIM_LogChannels.h"
#include "support/KTX_TIM_SystemCalls.h"

namespace KTX::TIM {

namespace {

bool startLibrary() {
  openLogChannels();
  getTimeLock();
  operatingSystemCalls();
  getTimeZoneInstance();
  getDefaultLeapSecondProvider();
  timeCorrectedSignal();
  timeEstimatedSignal();
  timeSignal();
  posixEpoch<boost::milli>();
  posixEpoch<boost::nano>();
  SysTimeOffsetT::instance();
  watchForks();
  return true;
}

[[maybe_unused]] bool const IS_STARTED = startLibrary();

}  // namespace

}  // namespace KTX::TIM
