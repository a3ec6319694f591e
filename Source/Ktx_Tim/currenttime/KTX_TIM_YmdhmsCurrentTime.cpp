#include <string>

#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_LogAssert.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_SystemTime.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "currenttime/KTX_TIM_Observation.h"
#include "currenttime/KTX_TIM_Present.h"
#include "currenttime/KTX_TIM_SysTimeOffset.h"
#include "currenttime/KTX_TIM_TimeSignals.h"
#include "currenttime/KTX_TIM_TimeText.h"
#include "support/KTX_TIM_LogChannels.h"
#include "support/KTX_TIM_SystemCalls.h"
#include "values/KTX_TIM_DayNumber.h"

namespace KTX::TIM {

namespace {

SystemTimeRecordC systemTimeOf(YmdhmsC const& time) {
  SystemTimeRecordC record{};
  record.year = time.year;
  record.month = time.month;
  record.dayOfWeek = static_cast<std::uint16_t>(time.dayOfWeek - 1);
  record.day = time.day;
  record.hour = time.hour;
  record.minute = time.minute;
  record.second = time.second;
  record.milliseconds = static_cast<std::uint16_t>(time.effectiveMilliseconds());
  return record;
}

// SYSTEMTIME is only declared on Windows; its layout is that of the record.
std::string systemTimeText(SystemTimeRecordC const& record) {
  return systemTimeToString(reinterpret_cast<SYSTEMTIME const&>(record));
}

}  // namespace

YmdhmsC::YmdhmsC() : YmdhmsC(zero()) {
  setToCurrentTime();
}

void YmdhmsC::makeToCurrentTime() {
  Guard const guard(getTimeLock());
  MjdTimeC present = presentUtc(SysTimeOffsetT::instance());
  present.toGps();
  setFrom(present);
  dayOfWeek = 0;
}

void YmdhmsC::setToCurrentTime() {
  makeToCurrentTime();
  setFrom(MjdTimeC(*this));
}

std::uint32_t YmdhmsC::makeToCurrentTime(std::int64_t noiseMs) const {
  announce(observe(*this, noiseMs));
  return RC_OK;
}

bool YmdhmsC::applyToCurrentSystemTime() const {
  if (timeBase != TIMEBASE_UTC) {
    logAssertion("System clock can only be set to a UTC value!");
    return false;
  }
  SystemTimeRecordC const record = systemTimeOf(*this);
  if (ymdhmsLog().isLevelEnabled(3)) {
    printComposed(ymdhmsLog(), 3,
                  "KTX::TIM::YmdhmsC::applyToCurrentSystemTime: Ymdhms: " + isoText(*this) +
                      " -> SYSTEMTIME: " + systemTimeText(record) + "\n");
  }
  return systemCalls().setSystemTime(record) == 1;
}

std::uint32_t YmdhmsC::emitTimeSignal() const {
  YmdhmsC time = *this;
  time.toGps();
  GPSTimeC const instant = gpsTimeOf(MjdTimeC(time).getDayNumber());
  (*timeSignal())(instant.getWeek(), static_cast<int>(instant.getMsOfWeek()));
  return RC_OK;
}

}  // namespace KTX::TIM
