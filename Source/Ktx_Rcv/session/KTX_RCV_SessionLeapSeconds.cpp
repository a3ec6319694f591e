#include "session/KTX_RCV_SessionLeapSeconds.h"

#include <limits>
#include <utility>

#include "KTX/RCV/KTX_RCV_Observation.h"
#include "KTX/RCV/KTX_RCV_ReceiverSession.h"
#include "KTX/RCV/KTX_RCV_TimeConversion.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondChanged.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"

namespace KTX::RCV {
namespace {

TIM::LeapSecondSource sourceOf(LeapSystemE system) {
  switch (system) {
    case LEAPSYSTEM_GPS:
      return TIM::LEAPSECOND_GPS;
    case LEAPSYSTEM_GLONASS:
      return TIM::LEAPSECOND_GLONASS;
    case LEAPSYSTEM_GALILEO:
      return TIM::LEAPSECOND_GALILEO;
    case LEAPSYSTEM_SBAS:
      return TIM::LEAPSECOND_SBAS;
    case LEAPSYSTEM_QZSS:
      return TIM::LEAPSECOND_QZSS;
    case LEAPSYSTEM_BEIDOU:
      return TIM::LEAPSECOND_BEIDOU;
    default:
      return TIM::LEAPSECOND_DEFAULT;
  }
}

template <class Integer>
bool fits(std::int32_t value) {
  return value >= std::numeric_limits<Integer>::min() &&
         value <= std::numeric_limits<Integer>::max();
}

bool isAnnouncement(LeapStatementC const& leap) {
  return leap.hasEffectivity && leap.system != LEAPSYSTEM_UNKNOWN;
}

bool isCountInRange(std::int32_t count) {
  return count >= ReceiverSessionC::MIN_LEAP_COUNT && count <= ReceiverSessionC::MAX_LEAP_COUNT;
}

bool hasCountsInRange(LeapStatementC const& leap) {
  return isCountInRange(leap.current) && (!leap.hasEffectivity || isCountInRange(leap.future));
}

// False for numbers that the library's record cannot hold.
bool makeRecord(LeapStatementC const& leap, TIM::UtcLeapSecondRecord& record) {
  bool const isWhole = isAnnouncement(leap);
  std::int32_t const future = isWhole ? leap.future : leap.current;
  std::int32_t const week = isWhole ? leap.week : 0;
  std::int32_t const day = isWhole ? leap.day : 0;
  if (!fits<std::int16_t>(leap.current) || !fits<std::int16_t>(future) ||
      !fits<std::uint16_t>(week) || !fits<std::uint8_t>(day)) {
    return false;
  }
  record.source = isWhole ? sourceOf(leap.system) : TIM::LEAPSECOND_DEFAULT;
  record.current = static_cast<std::int16_t>(leap.current);
  record.future = static_cast<std::int16_t>(future);
  record.week = static_cast<std::uint16_t>(week);
  record.day = static_cast<std::uint8_t>(day);
  record.effectivityKnown = isWhole;
  return true;
}

}  // namespace

SessionLeapSecondsC::SessionLeapSecondsC(bool usesHistory,
                                         SessionListenerI& sessionListener,
                                         SessionCountsC& sessionCounts,
                                         PresentEventsC& presentEvents)
    : usesLeapHistory(usesHistory),
      listener(sessionListener),
      counts(sessionCounts),
      events(presentEvents) {
  connection = TIM::connectUtcLeapSecondChanged(
      [this](boost::shared_ptr<TIM::UtcLeapSecondChanged> const& change) {
        hasChanged = true;
        previous = change->previous;
        current = change->current;
      });
}

std::int16_t SessionLeapSecondsC::countInForce() {
  TIM::UtcLeapSecondRecord record{};
  TIM::getCurrentUtcLeapSecond(record);
  return record.current;
}

TIM::LeapSecondProviderI& SessionLeapSecondsC::provider() {
  return usesLeapHistory ? history : *TIM::getDefaultLeapSecondProvider();
}

void SessionLeapSecondsC::seed(ReceiverMessageC const& message) {
  if (isSeeded || !usesLeapHistory) {
    return;
  }
  isSeeded = true;
  // The host's date rather than that of a receiver, which may be 1024 weeks off.
  TIM::GpsC const start = message.place.hasHostTime
                              ? gpsOfUtc(utcCalendarOf(message.place.hostUnixMs), history)
                              : ObservationC(message).gps(history);
  TIM::UtcLeapSecondRecord const record = LeapHistoryC::statementAt(start);
  TIM::resetSatelliteLeapSecond(&record);
}

std::optional<ReceiverMessageC> SessionLeapSecondsC::takePending() {
  return std::exchange(pending, std::nullopt);
}

void SessionLeapSecondsC::offer(MessageReportC const& message) {
  LeapStatementC const& leap = message.message.leap;
  LeapReportC report;
  if (!isAnnouncement(leap) && leap.current == countInForce()) {
    ++counts.leapStatements;
    listener.onLeapStatement(message, report);
    return;
  }
  if (!hasCountsInRange(leap)) {
    refuse(message, report, REFUSAL_LEAP_OUT_OF_RANGE);
    return;
  }
  if (!makeRecord(leap, report.record)) {
    ++counts.refused[REFUSAL_MALFORMED];
    listener.onRefusal(message, REFUSAL_MALFORMED);
    return;
  }
  set(report);
  if (report.outcome == LEAP_REFUSED) {
    ++counts.refused[report.refusal];
  } else {
    ++counts.leapStatements;
  }
  listener.onLeapStatement(message, report);
  if (report.outcome == LEAP_ACCEPTED) {
    ++counts.leapChanges;
    listener.onLeapChange(previous, current);
  }
  events.reportCorrections();
}

void SessionLeapSecondsC::refuse(MessageReportC const& message,
                                 LeapReportC& report,
                                 RefusalE refusal) {
  report.outcome = LEAP_REFUSED;
  report.refusal = refusal;
  ++counts.refused[refusal];
  listener.onLeapStatement(message, report);
}

void SessionLeapSecondsC::set(LeapReportC& report) {
  hasChanged = false;
  report.isOffered = true;
  report.resultCode = TIM::setUtcLeapSecond(report.record, true);
  if (report.resultCode == TIM::RC_OK) {
    report.outcome = hasChanged ? LEAP_ACCEPTED : LEAP_UNCHANGED;
  } else {
    report.outcome = LEAP_REFUSED;
    report.refusal = report.resultCode == TIM::RC_INVALID_LEAPSECOND ? REFUSAL_LEAP_INVALID
                                                                     : REFUSAL_LEAP_REJECTED;
  }
  // A change makes the library observe its own present anew, without noise.
  events.handOverSteps();
}

}  // namespace KTX::RCV
