#include "currenttime/KTX_TIM_Observation.h"

#include <string>

#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "currenttime/KTX_TIM_Present.h"
#include "currenttime/KTX_TIM_SysTimeOffset.h"
#include "currenttime/KTX_TIM_TimeSignals.h"
#include "currenttime/KTX_TIM_TimeText.h"
#include "support/KTX_TIM_LogChannels.h"
#include "support/KTX_TIM_ThreadId.h"
#include "values/KTX_TIM_DayNumber.h"

namespace KTX::TIM {

namespace {

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

void announceCorrection(ObservationResultC const& result) {
  int const week = result.present.getWeek();
  int const msOfWeek = static_cast<int>(result.present.getMsOfWeek());
  if (result.isCorrected && (week != 0 || msOfWeek != 0)) {
    notifyTimeCorrected(week, msOfWeek, result.differenceMs);
  }
}

}  // namespace

ObservationResultC observe(YmdhmsC const& observation, std::int64_t noiseMs) {
  Guard const guard(getTimeLock());
  logObservation(observation);
  SysTimeOffsetT& offset = SysTimeOffsetT::instance();
  SysTimeOffsetT::StateC const before = offset.state();
  try {
    ObservationResultC result = updatePresent(offset, observation, noiseMs);
    result.step = offset.commitStep();
    return result;
  } catch (...) {
    offset.setState(before);
    throw;
  }
}

ObservationResultC observe(GpsC const& observation,
                           std::int64_t noiseMs,
                           std::int32_t precisionFlag) {
  YmdhmsC const calendar(MjdTimeC(observation), precisionFlag == 1 ? 1 : 0);
  if (timeLog().isLevelEnabled(0)) {
    std::string const line = currentThreadIdText() +
                             " - GpsC makeToCurrentTime call to makeToCurrentTime:: GPSweek: " +
                             std::to_string(observation.getWeek()) +
                             " GPSmsecs: " + std::to_string(observation.getMsOfWeek()) +
                             " noise (std. dev.): " + std::to_string(noiseMs);
    timeLog().writeText(line.c_str());
  }
  return observe(calendar, noiseMs);
}

void announce(ObservationResultC const& result) {
  try {
    notifyTimeEstimated(result.step);
  } catch (...) {
    announceCorrection(result);
    throw;
  }
  announceCorrection(result);
}

}  // namespace KTX::TIM
