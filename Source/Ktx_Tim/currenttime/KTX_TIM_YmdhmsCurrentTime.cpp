#include <sstream>
#include <string>

#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_LogAssert.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_SystemTime.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "currenttime/KTX_TIM_Present.h"
#include "currenttime/KTX_TIM_SysTimeOffset.h"
#include "currenttime/KTX_TIM_TimeSignals.h"
#include "currenttime/KTX_TIM_TimeText.h"
#include "support/KTX_TIM_LogChannels.h"
#include "support/KTX_TIM_SystemCalls.h"
#include "values/KTX_TIM_DayNumber.h"

namespace KTX::TIM {

namespace {

// What one observation did; outlives the lock for the signal's sake.
struct ObservationResultC {
  GPSTimeC present;
  std::int64_t differenceMs = 0;
  bool isCorrected = false;
};

std::string isoText(YmdhmsC const& time) {
  std::ostringstream stream;
  stream << time;
  return stream.str();
}

// In GPS time; a LOCAL value goes to UTC in whole milliseconds first.
GPSTimeC gpsWeekAndMs(MjdTimeC time) {
  time.toGps();
  return gpsTimeOf(time.getDayNumber());
}

// A LOCAL value goes to UTC by a fraction of a day here, unlike in gpsWeekAndMs(); both are meant.
double utcDayNumber(YmdhmsC const& observation) {
  MjdTimeC time(observation);
  if (time.getTimeBase() == TIMEBASE_LOCAL) {
    time.localToUtc();
  } else {
    time.toUtc();
  }
  return time.getDayNumber();
}

void logObservation(YmdhmsC const& observation) {
  GPSTimeC const observed = gpsWeekAndMs(observation);
  ymdhmsLog().printLine(3, "YmdhmsC makeToCurrentTime: GPSweek: %ld GPSmsecs: %ld\n",
                        static_cast<long>(observed.getWeek()),
                        static_cast<long>(observed.getMsOfWeek()));
  if (ymdhmsLog().isLevelEnabled(3)) {
    printComposed(ymdhmsLog(), 3, "YmdhmsC makeToCurrentTime: " + isoText(observation) + "\n");
  }
}

void logResult(YmdhmsC const& observation, ObservationResultC const& result) {
  if (!ymdhmsLog().isLevelEnabled(3)) {
    return;
  }
  std::string text = "YmdhmsC makeToCurrentTime ";
  text += result.isCorrected ? "SETSysTime:\n" : "NOTSETSysTime:\n";
  text += timeText(SysTimeOffsetT::instance().getCurrentSysTime());
  text += "\nGPSweek: " + std::to_string(result.present.getWeek());
  text += "\nGPSmsecs: " + std::to_string(result.present.getMsOfWeek());
  text += "\n(change: " + std::to_string(result.differenceMs) + "ms)\n";
  text += isoText(observation) + "\n";
  printComposed(ymdhmsLog(), 3, text);
}

ObservationResultC updatePresent(SysTimeOffsetT& offset,
                                 YmdhmsC const& observation,
                                 std::int64_t noiseMs) {
  ObservationResultC result;
  offset.update(utcDayNumber(observation), noiseMs, result.isCorrected, result.differenceMs);
  YmdhmsC present = observation;
  present.setFrom(presentUtc(offset));
  if (result.isCorrected) {
    printComposed(ymdhmsLog(), 3, "New sys time: " + isoText(present) + "\n");
  }
  result.present = gpsWeekAndMs(present);
  logResult(observation, result);
  return result;
}

// The caller holds the library-wide lock. When something throws, the present is as it was: no
// correction is in force that nobody was told of.
ObservationResultC observe(YmdhmsC const& observation, std::int64_t noiseMs) {
  logObservation(observation);
  SysTimeOffsetT& offset = SysTimeOffsetT::instance();
  SysTimeOffsetT::StateC const before = offset.state();
  try {
    return updatePresent(offset, observation, noiseMs);
  } catch (...) {
    offset.setState(before);
    throw;
  }
}

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
  ObservationResultC result;
  {
    Guard const guard(getTimeLock());
    result = observe(*this, noiseMs);
  }
  int const week = result.present.getWeek();
  int const msOfWeek = static_cast<int>(result.present.getMsOfWeek());
  if (result.isCorrected && (week != 0 || msOfWeek != 0)) {
    (*timeCorrectedSignal())(week, msOfWeek, TimeChangeT(result.differenceMs));
  }
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
