#include "leapseconds/KTX_TIM_LeapSecondLog.h"

#include <cstdio>

#include "KTX/TIM/KTX_TIM_LogAssert.h"
#include "leapseconds/KTX_TIM_GpsCalendar.h"
#include "leapseconds/KTX_TIM_LeapSecondEffectivity.h"
#include "support/KTX_TIM_LogChannels.h"
#include "support/KTX_TIM_ThreadId.h"

namespace KTX::TIM {

bool isLeapSecondTraced() {
  return leapSecondLog().isLevelEnabled(3);
}

void logLeapSecondAssertions(LeapSecondAssertionsT const& assertions) {
  for (char const* const text : assertions) {
    logAssertion(text);
  }
}

void logNotAccepted(UtcLeapSecondRecord const& incoming, UtcLeapSecondRecord const& held) {
  leapSecondLog().printLine(6,
                            "New leap second not accepted! - Source: %s/%s, Current: %d/%d, "
                            "Future: %d/%d, Week: %d/%d, Day: %d/%d, EffectivityKnown: %d/%d\n",
                            leapSecondSourceName(incoming.source),
                            leapSecondSourceName(held.source), incoming.current, held.current,
                            incoming.future, held.future, incoming.week, held.week, incoming.day,
                            held.day, incoming.effectivityKnown, held.effectivityKnown);
}

void logSetting(UtcLeapSecondRecord const& record, GPSTimeC const& now) {
  CalendarDateC const date = calendarDate(effectivityDayEnd(record).toMilliseconds64());
  char text[32];
  std::snprintf(text, sizeof text, "%04u-%02u-%02u 00:00:00", static_cast<unsigned>(date.year),
                static_cast<unsigned>(date.month), static_cast<unsigned>(date.day));
  leapSecondLog().printLine(3,
                            "Setting new UTC leap second - Source: %s, GPSTime: %ld, GPSWeek: %ld, "
                            "Current: %d, Future: %d, Date: %s, EffectivityKnown: %d\n",
                            leapSecondSourceName(record.source),
                            static_cast<long>(now.getMsOfWeek()), static_cast<long>(now.getWeek()),
                            record.current, record.future, text, record.effectivityKnown);
}

void logChanged(UtcLeapSecondRecord const& record) {
  leapSecondLog().printLine(3,
                            "Active UTC Leap Second has changed - Source: %s, Current: %d, "
                            "Future: %d, Week: %d, Day: %d, EffectivityKnown: %d\n",
                            leapSecondSourceName(record.source), record.current, record.future,
                            record.week, record.day, record.effectivityKnown);
}

void logResetRefused(UtcLeapSecondRecord const& record) {
  leapSecondLog().printLine(6,
                            "Reset UTC leap second (satellite) failed - Source: %s, Current: %d, "
                            "Future: %d, Week: %d, Day: %d, EffectivityKnown: %d\n",
                            leapSecondSourceName(record.source), record.current, record.future,
                            record.week, record.day, record.effectivityKnown);
}

void logReset(UtcLeapSecondRecord const& record) {
  leapSecondLog().printLine(3,
                            "New UTC leap second (satellite) after reset - Source: %s, "
                            "Current: %d, Future: %d, Week: %d, Day: %d, EffectivityKnown: %d\n",
                            leapSecondSourceName(record.source), record.current, record.future,
                            record.week, record.day, record.effectivityKnown);
}

void logSettingResult(std::uint32_t result) {
  leapSecondLog().printLine(3, "SetLeapSecond returns %d.\n", static_cast<int>(result));
}

void logNotChanged() {
  leapSecondLog().printLine(3, "Active UTC Leap Second has NOT changed.\n");
}

void logCarryOver(GPSTimeC const& now) {
  leapSecondLog().printLine(3,
                            "%s - setGpsUTCParameters call to makeToCurrentTime:: "
                            "GPSweek: %ld GPSmsecs: %ld\n",
                            currentThreadIdText().c_str(), static_cast<long>(now.getWeek()),
                            static_cast<long>(now.getMsOfWeek()));
}

}  // namespace KTX::TIM
