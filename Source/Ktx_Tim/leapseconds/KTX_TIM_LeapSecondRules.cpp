#include "leapseconds/KTX_TIM_LeapSecondRules.h"

#include <cstdlib>

#include "leapseconds/KTX_TIM_GpsCalendar.h"
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

bool endsMonth(UtcLeapSecondRecord const& record) {
  return calendarDate(effectivityDayEnd(record).toMilliseconds64()).day == 1;
}

bool isTooFarAhead(UtcLeapSecondRecord const& incoming, GPSTimeC const& now) {
  return isBeyondMonths(effectivityInstant(incoming).toMilliseconds64(), now.toMilliseconds64(),
                        MAX_MONTHS_AHEAD);
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
  if (!record.effectivityKnown && record.source == LEAPSECOND_DEFAULT) {
    return true;
  }
  if (!record.effectivityKnown || std::abs(record.current - record.future) >= 2 ||
      record.day == 0 || record.day > 7) {
    return refuse(record);
  }
  if (record.source == LEAPSECOND_FORCED) {
    return true;
  }
  if (record.source != LEAPSECOND_DEFAULT && record.source != LEAPSECOND_GPS) {
    return false;  // Without a line in the log; this is meant.
  }
  // A leap second takes effect only at the end of the last day of a month.
  if (!endsMonth(record)) {
    return refuse(record);
  }
  return true;
}

LeapSecondVerdictE compareLeapSecond(UtcLeapSecondRecord const& held,
                                     UtcLeapSecondRecord const& incoming,
                                     PresentT const& present,
                                     LeapSecondAssertionsT& assertions) {
  if (incoming.source == LEAPSECOND_FORCED) {
    return LEAPSECOND_ACCEPT;
  }
  GPSTimeC const now = incoming.effectivityKnown ? present() : GPSTimeC();
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
    assertions.push_back("New leap second has no known effectivity!");
    return LEAPSECOND_REJECT;
  }
  if (!held.effectivityKnown) {
    assertions.push_back("Held leap second has no known effectivity!");
    return LEAPSECOND_ACCEPT;
  }
  return compareAnnouncements(held, incoming, now);
}

}  // namespace KTX::TIM
