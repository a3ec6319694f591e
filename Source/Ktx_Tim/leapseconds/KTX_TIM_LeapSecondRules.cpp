#include "leapseconds/KTX_TIM_LeapSecondRules.h"

#include <cstdlib>

#include <boost/date_time/gregorian/gregorian_types.hpp>
#include <boost/date_time/posix_time/posix_time_types.hpp>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_LogAssert.h"
#include "leapseconds/KTX_TIM_LeapSecondEffectivity.h"
#include "support/KTX_TIM_LogChannels.h"

namespace KTX::TIM {
namespace {

constexpr int MAX_MONTHS_AHEAD = 6;

bool refuse(UtcLeapSecondRecord const& record) {
  leapSecondLog().printLine(6,
                            "New leap second invalid! - Source: %s, Current: %d, Future: %d, "
                            "Week: %d, Day: %d, EffectivityKnown: %d\n",
                            leapSecondSourceName(record.source), record.current, record.future,
                            record.week, record.day, record.effectivityKnown);
  return false;
}

/// Calendar date and time of day, counted from the GPS epoch without leap seconds.
boost::posix_time::ptime calendarTime(GPSTimeC const& time) {
  boost::gregorian::date const epoch(1980, 1, 6);
  return {epoch + boost::gregorian::days(7 * static_cast<int>(time.getWeek())),
          boost::posix_time::milliseconds(time.getMsOfWeek())};
}

bool endsMonth(UtcLeapSecondRecord const& record) {
  return calendarTime(effectivityDayEnd(record)).date().day() == 1;
}

bool isTooFarAhead(UtcLeapSecondRecord const& incoming, GPSTimeC const& now) {
  // The last day of a month stays the last day of the month reached.
  boost::posix_time::ptime const limit =
      calendarTime(now) + boost::gregorian::months(MAX_MONTHS_AHEAD);
  return limit < calendarTime(effectivityInstant(incoming));
}

LeapSecondVerdictE compareAnnouncements(UtcLeapSecondRecord const& held,
                                        UtcLeapSecondRecord const& incoming,
                                        GPSTimeC const& now) {
  if (held.week == incoming.week && held.day == incoming.day) {
    return LEAPSECOND_SAME_DAY;
  }
  if (held.week > incoming.week || (held.week == incoming.week && held.day > incoming.day)) {
    return LEAPSECOND_REJECT;
  }
  int const inForce = now >= effectivityInstant(held) ? held.future : held.current;
  return std::abs(inForce - incoming.future) > 1 ? LEAPSECOND_REJECT : LEAPSECOND_ACCEPT;
}

}  // namespace

bool isValidLeapSecond(UtcLeapSecondRecord const& record) {
  if (record.source == LEAPSECOND_SITE) {
    return refuse(record);
  }
  if (!record.effectivityKnown) {
    return record.source == LEAPSECOND_DEFAULT || refuse(record);
  }
  if (std::abs(record.current - record.future) >= 2 || record.day == 0 || record.day > 7) {
    return refuse(record);
  }
  if (record.source == LEAPSECOND_FORCED) {
    return true;
  }
  if (record.source != LEAPSECOND_DEFAULT && record.source != LEAPSECOND_GPS) {
    return false;  // Without a line in the log; this is meant.
  }
  // A leap second takes effect only at the end of the last day of a month.
  return endsMonth(record) || refuse(record);
}

LeapSecondVerdictE compareLeapSecond(UtcLeapSecondRecord const& held,
                                     UtcLeapSecondRecord const& incoming) {
  // Reading the present may print a warning, so it is read only where it decides.
  bool const isPresentNeeded = incoming.source != LEAPSECOND_FORCED && incoming.effectivityKnown;
  return compareLeapSecondAt(held, incoming, isPresentNeeded ? GpsC::currentTime() : GpsC());
}

LeapSecondVerdictE compareLeapSecondAt(UtcLeapSecondRecord const& held,
                                       UtcLeapSecondRecord const& incoming,
                                       GPSTimeC const& now) {
  if (incoming.source == LEAPSECOND_FORCED) {
    return LEAPSECOND_ACCEPT;
  }
  if (incoming.effectivityKnown && isTooFarAhead(incoming, now)) {
    return LEAPSECOND_REJECT;
  }
  if (held.source == LEAPSECOND_DEFAULT) {
    return LEAPSECOND_ACCEPT;
  }
  if (incoming.source == LEAPSECOND_DEFAULT) {
    return LEAPSECOND_REJECT;
  }
  if (!incoming.effectivityKnown) {
    logAssertion();
    return LEAPSECOND_REJECT;
  }
  if (!held.effectivityKnown) {
    logAssertion();
    return LEAPSECOND_ACCEPT;
  }
  return compareAnnouncements(held, incoming, now);
}

}  // namespace KTX::TIM
