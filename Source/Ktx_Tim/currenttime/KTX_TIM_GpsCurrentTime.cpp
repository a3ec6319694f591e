#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "currenttime/KTX_TIM_Observation.h"
#include "currenttime/KTX_TIM_Present.h"
#include "currenttime/KTX_TIM_SysTimeOffset.h"
#include "values/KTX_TIM_WeekTime.h"

namespace KTX::TIM {

namespace {

constexpr std::uint32_t FRAME_MS = 240000;
constexpr std::int64_t LATEST_AHEAD_MS = 180000;
constexpr std::int64_t EARLIEST_BEHIND_MS = 60000;

}  // namespace

GpsC::GpsC(std::uint32_t msInFrame) : provider(getDefaultLeapSecondProvider()) {
  makeToCurrentTime();
  GPSTimeC const now = *this;
  // The frame's milliseconds are not carried into the week, and wrap; both are meant.
  setRaw(now.getWeek(), now.getMsOfWeek() / FRAME_MS * FRAME_MS + msInFrame);
  if (now + LATEST_AHEAD_MS < *this) {
    *this -= std::int64_t{FRAME_MS};
  } else if (*this < now - EARLIEST_BEHIND_MS) {
    *this += std::int64_t{FRAME_MS};
  }
}

GpsC GpsC::currentTime() {
  GpsC present;
  present.makeToCurrentTime();
  return present;
}

// The detour through calendar fields to milliseconds, and back, that this operation stands for
// changes no millisecond, so it is not taken.
void GpsC::makeToCurrentTime() {
  Guard const guard(getTimeLock());
  LeapSecondProviderI* const ownProvider = provider;
  WeekTimeC const utc = weekTimeOf(presentUtc(SysTimeOffsetT::instance()).getDayNumber());
  setRaw(utc.week, utc.msOfWeek);
  provider = getDefaultLeapSecondProvider();
  utcToGps();  // by the default provider, whatever this value's own is
  provider = ownProvider;
}

std::uint32_t GpsC::makeToCurrentTime(std::int64_t noiseMs, std::int32_t precisionFlag) const {
  announce(observe(*this, noiseMs, precisionFlag));
  return RC_OK;
}

std::uint32_t GpsC::emitTimeSignal() const {
  return YmdhmsC(MjdTimeC(*this), 1).emitTimeSignal();
}

}  // namespace KTX::TIM
