#include "session/KTX_RCV_SessionCore.h"

#include <algorithm>

#include <boost/make_shared.hpp>

#include "KTX/RCV/KTX_RCV_Observation.h"
#include "KTX/RCV/KTX_RCV_ReceiverSession.h"
#include "KTX/TIM/KTX_TIM_ClockFactory.h"
#include "KTX/TIM/KTX_TIM_SysTimeClocks.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"

namespace KTX::RCV {
namespace {

constexpr std::int64_t NS_PER_MS = 1000000;
constexpr double MS_PER_DAY = 8.64e7;

ArrivedTimeC arrivedTime(ObservationC const& observation, PcReadingC const& reading) {
  return {observation.unixMs(), reading.steadyMs, reading.isCalendarKnown, reading.systemUnixMs};
}

}  // namespace

SessionCoreC::SessionCoreC(HostPcI& hostPc,
                           SessionOptionsC const& sessionOptions,
                           SessionListenerI& sessionListener,
                           EstimateSinkI* estimateSink)
    : pc(hostPc),
      options(sessionOptions),
      listener(sessionListener),
      systemClock(boost::make_shared<HeldClockC>(true)),
      steadyClock(boost::make_shared<HeldClockC>(false)),
      detector(options.stepLimitMs),
      events(listener, estimateSink, sessionCounts),
      leap(options.usesLeapHistory, listener, sessionCounts, events) {
  if (options.referenceUnixMs) {
    detector.setReferenceDate(*options.referenceUnixMs);
  }
}

SessionCoreC::~SessionCoreC() {
  if (hasClocks) {
    TIM::setSysTimeClocks(
        TIM::createClock<boost::milli>(TIM::CLOCKTYPE_POSIX, TIM::CLOCKREF_DEFAULT),
        TIM::createClock<boost::milli>(TIM::CLOCKTYPE_STEADY, TIM::CLOCKREF_DEFAULT));
  }
}

void SessionCoreC::setClockSetter(ClockSetterC& setter) {
  clockSetter = &setter;
  events.setClockSetter(setter);
}

void SessionCoreC::beginInput(std::string const& name) {
  inputs.push_back(name);
  isNewInput = true;
  detector.expectStep();
  listener.onInput(name);
}

void SessionCoreC::onMessage(ReceiverMessageC const& message) {
  switch (message.kind) {
    case MESSAGE_TIME:
      onTime(message);
      break;
    case MESSAGE_LEAP:
      onLeap(message);
      break;
    case MESSAGE_FILE_DATE:
      onFileDate(message);
      break;
  }
}

void SessionCoreC::onTime(ReceiverMessageC const& message) {
  if (message.timeForm == TIMEFORM_NONE) {
    refuse(MessageReportC{message, message.warnings, nullptr}, message.refusal);
    return;
  }
  if (message.refusal == REFUSAL_NONE) {
    leap.seed(message);
  }
  ObservationC const observation(message);
  MessageReportC report{message, message.warnings, &observation};
  if (message.refusal != REFUSAL_NONE || !observation.isInRange()) {
    refuse(report, message.refusal != REFUSAL_NONE ? message.refusal : REFUSAL_OUT_OF_RANGE);
    return;
  }
  std::optional<PcReadingC> const reading = arrive(message, observation.unixMs());
  if (!reading) {
    refuse(report, REFUSAL_OUT_OF_RANGE);
    return;
  }
  report.warnings |= reading->hasRunBack ? WARNING_HOST_TIME_BACK : WARNING_NONE;
  ArrivedTimeC const time = arrivedTime(observation, *reading);
  report.warnings |= detector.warningsOfTime(time);
  if (message.leap.hasCount && hasClocks) {
    report.warnings |=
        WarningDetectorC::warningsOfLeap(message.leap, SessionLeapSecondsC::countInForce());
  }
  countWarnings(report.warnings);
  if (options.isStrict && report.warnings != WARNING_NONE) {
    leaveOut(report, time);
    return;
  }
  startClocks();
  useObservation(report, *reading);
}

void SessionCoreC::leaveOut(MessageReportC const& report, ArrivedTimeC const& time) {
  detector.leaveOutTime(time, report.warnings);
  if (clockSetter != nullptr &&
      (report.warnings & (WARNING_TIME_STEP | WARNING_WEEK_ROLLOVER)) != 0) {
    clockSetter->onContradiction();
  }
  refuse(report, REFUSAL_STRICT);
}

void SessionCoreC::onLeap(ReceiverMessageC const& message) {
  MessageReportC report{message, message.warnings, nullptr};
  if (message.refusal != REFUSAL_NONE) {
    refuse(report, message.refusal);
    return;
  }
  if (!hasClocks) {
    leap.hold(message);
    return;
  }
  report.warnings |=
      WarningDetectorC::warningsOfLeap(message.leap, SessionLeapSecondsC::countInForce());
  countWarnings(report.warnings);
  if (options.isStrict && report.warnings != WARNING_NONE) {
    refuse(report, REFUSAL_STRICT);
    return;
  }
  leap.offer(report);
}

void SessionCoreC::onFileDate(ReceiverMessageC const& message) {
  leap.seed(message);
  ObservationC const observation(message);
  if (!observation.isInRange() || (hasClocks && observation.unixMs() <= latestUnixMs)) {
    return;
  }
  if (arrive(message, observation.unixMs())) {
    startClocks();
  }
}

std::optional<PcReadingC> SessionCoreC::arrive(ReceiverMessageC const& message,
                                               std::int64_t unixMs) {
  ArrivalC arrival;
  arrival.statedUnixMs = unixMs;
  arrival.hasHostTime = message.place.hasHostTime;
  arrival.hostUnixMs = message.place.hostUnixMs;
  arrival.message = message.name;
  arrival.isFirst = !hasClocks;
  arrival.isNewInput = isNewInput;
  std::optional<PcReadingC> const reading = pc.arrive(arrival);
  if (reading) {
    isNewInput = false;
    latestUnixMs = unixMs;
    systemClock->hold(reading->systemUnixMs);
    steadyClock->hold(reading->steadyMs);
  }
  return reading;
}

// With the first time the present begins, and a statement that was held back can be offered.
void SessionCoreC::startClocks() {
  if (hasClocks) {
    return;
  }
  hasClocks = true;
  TIM::setSysTimeClocks(systemClock, steadyClock);
  if (std::optional<ReceiverMessageC> const held = leap.takePending()) {
    onLeap(*held);
  }
}

void SessionCoreC::useObservation(MessageReportC const& report, PcReadingC const& reading) {
  ReceiverMessageC const& message = report.message;
  if (message.leap.hasCount && message.leap.current != SessionLeapSecondsC::countInForce()) {
    leap.offer(report);
  }
  ObservationEffectC const effect = observe(*report.observation, noiseOf(message));
  ArrivedTimeC const time = arrivedTime(*report.observation, reading);
  // Before any report: writing one takes time, and the present is that of the arrival.
  std::optional<ClockStepC> const clock =
      clockSetter != nullptr ? clockSetter->onObservation(time.unixMs, reading) : std::nullopt;
  detector.useTime(time, report.warnings);
  ++sessionCounts.used;
  listener.onObservation(report, effect);
  events.handOverSteps();
  events.reportCorrections();
  if (clock) {
    listener.onClock(*clock);
  }
  reportOldMapping();
}

ObservationEffectC SessionCoreC::observe(ObservationC const& observation, std::int64_t noiseMs) {
  TIM::TimeEstimateStepC const before = events.last();
  observation.makeToCurrentTime(noiseMs);
  TIM::TimeEstimateStepC const& after = events.last();
  // The step tells the difference cut to whole milliseconds; before the first one the seed defines
  // the present.
  bool const isFirst = before.number == 0;
  double const presentMjd = isFirst ? after.startMjd : before.mappedMjd;
  std::int64_t const mappedMs = isFirst ? after.startSteadyMs : before.mappedSteadyMs;
  double const differenceMs = (after.estimatedMjd - presentMjd) * MS_PER_DAY -
                              static_cast<double>(after.steadyMs - mappedMs);
  return {noiseMs, differenceMs, after.estimatedSigma};
}

void SessionCoreC::refuse(MessageReportC const& report, RefusalE refusal) {
  ++sessionCounts.refused[refusal];
  listener.onRefusal(report, refusal);
}

void SessionCoreC::countWarnings(std::uint32_t warnings) {
  for (std::uint32_t i = 0; warnings != 0 && i < WARNING_COUNT; ++i) {
    sessionCounts.warnings[i] += warnings >> i & 1U;
  }
}

void SessionCoreC::reportOldMapping() {
  std::int64_t const ageMs = events.last().steadyMs - events.last().mappedSteadyMs;
  if (!hasToldOldMapping && ageMs > ReceiverSessionC::OLD_MAPPING_MS) {
    hasToldOldMapping = true;
    listener.onOldMapping(ageMs);
  }
}

std::int64_t SessionCoreC::noiseOf(ReceiverMessageC const& message) const {
  if (options.noiseMs) {
    return *options.noiseMs;
  }
  if (message.accuracyNs < 0) {
    return SessionOptionsC::DEFAULT_NOISE_MS;
  }
  // With no noise at all every residual would set the estimate anew.
  return std::max<std::int64_t>((message.accuracyNs + NS_PER_MS - 1) / NS_PER_MS, 1);
}

void SessionCoreC::finish(ReadCountsC const& read, bool isInterrupted) {
  if (std::optional<ReceiverMessageC> const held = leap.takePending()) {
    refuse(MessageReportC{*held, held->warnings, nullptr}, REFUSAL_NO_TIME);
  }
  SummaryReportC summary{
      inputs, read, sessionCounts, sessionCounts.used > 0, events.last().estimatedSigma,
      0,      {},   isInterrupted};
  TIM::getCurrentUtcLeapSecond(summary.leapRecord);
  summary.leapSeconds = summary.leapRecord.current;
  listener.onSummary(summary);
}

}  // namespace KTX::RCV
