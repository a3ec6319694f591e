#include "replay/ReplayEngine.h"

#include <algorithm>
#include <limits>

#include <boost/make_shared.hpp>

#include "KTX/TIM/KTX_TIM_ClockFactory.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_SysTimeClocks.h"
#include "KTX/TIM/KTX_TIM_TimeCorrection.h"
#include "KTX/TIM/KTX_TIM_TimeEstimate.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondChanged.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "replay/TimeConversion.h"

namespace KTX::VORTIME {
namespace {

constexpr std::int64_t NS_PER_MS = 1000000;
constexpr double MS_PER_DAY = 8.64e7;

TIM::LeapSecondSource sourceOf(RCV::LeapSystemE system) {
  switch (system) {
    case RCV::LEAPSYSTEM_GPS:
      return TIM::LEAPSECOND_GPS;
    case RCV::LEAPSYSTEM_GLONASS:
      return TIM::LEAPSECOND_GLONASS;
    case RCV::LEAPSYSTEM_GALILEO:
      return TIM::LEAPSECOND_GALILEO;
    case RCV::LEAPSYSTEM_SBAS:
      return TIM::LEAPSECOND_SBAS;
    case RCV::LEAPSYSTEM_QZSS:
      return TIM::LEAPSECOND_QZSS;
    case RCV::LEAPSYSTEM_BEIDOU:
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

bool isAnnouncement(RCV::LeapStatementC const& leap) {
  return leap.hasEffectivity && leap.system != RCV::LEAPSYSTEM_UNKNOWN;
}

bool isCountInRange(std::int32_t count) {
  return count >= ReplayEngineC::MIN_LEAP_COUNT && count <= ReplayEngineC::MAX_LEAP_COUNT;
}

bool hasCountsInRange(RCV::LeapStatementC const& leap) {
  return isCountInRange(leap.current) && (!leap.hasEffectivity || isCountInRange(leap.future));
}

ArrivedTimeC arrivedTime(ObservationC const& observation, PcReadingC const& reading) {
  return {observation.unixMs(), reading.steadyMs, reading.isCalendarKnown, reading.systemUnixMs};
}

// False for numbers that the library's record cannot hold.
bool makeRecord(RCV::LeapStatementC const& leap, TIM::UtcLeapSecondRecord& record) {
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

std::int16_t countInForce() {
  TIM::UtcLeapSecondRecord record{};
  TIM::getCurrentUtcLeapSecond(record);
  return record.current;
}

}  // namespace

ReplayEngineC::ReplayEngineC(HostPcI& hostPc,
                             ReplayOptionsC const& replayOptions,
                             ReplayReportI& replayReport,
                             EstimateSinkI* estimateSink)
    : pc(hostPc),
      options(replayOptions),
      report(replayReport),
      estimates(estimateSink),
      systemClock(boost::make_shared<HeldClockC>(true)),
      steadyClock(boost::make_shared<HeldClockC>(false)),
      detector(options.stepLimitMs) {
  if (options.referenceUnixMs) {
    detector.setReferenceDate(*options.referenceUnixMs);
  }
  estimateConnection = TIM::connectTimeEstimated([this](TIM::TimeEstimateStepC const& step) {
    lastStep = step;
    steps.push_back(step);
  });
  correctionConnection = TIM::connectTimeCorrected(
      [this](int week, int millisecondsOfWeek, TIM::TimeChangeT const& change) {
        CorrectionReportC correction;
        correction.week = static_cast<std::uint16_t>(week);
        correction.msOfWeek = static_cast<std::uint32_t>(millisecondsOfWeek);
        correction.changeMs = change.count();
        corrections.push_back(correction);
        if (clockSetter != nullptr) {
          clockSetter->onCorrection();
        }
      });
  leapConnection = TIM::connectUtcLeapSecondChanged(
      [this](boost::shared_ptr<TIM::UtcLeapSecondChanged> const& change) {
        hasLeapChange = true;
        previousLeap = change->previous;
        currentLeap = change->current;
      });
}

ReplayEngineC::~ReplayEngineC() {
  if (hasClocks) {
    TIM::setSysTimeClocks(
        TIM::createClock<boost::milli>(TIM::CLOCKTYPE_POSIX, TIM::CLOCKREF_DEFAULT),
        TIM::createClock<boost::milli>(TIM::CLOCKTYPE_STEADY, TIM::CLOCKREF_DEFAULT));
  }
}

TIM::LeapSecondProviderI& ReplayEngineC::leapSeconds() {
  return options.usesLeapHistory ? history : *TIM::getDefaultLeapSecondProvider();
}

void ReplayEngineC::beginInput(std::string const& name) {
  inputs.push_back(name);
  isNewInput = true;
  detector.expectStep();
  report.onInput(name);
}

void ReplayEngineC::onMessage(RCV::ReceiverMessageC const& event) {
  switch (event.kind) {
    case RCV::MESSAGE_TIME:
      onTime(event);
      break;
    case RCV::MESSAGE_LEAP:
      onLeap(event);
      break;
    case RCV::MESSAGE_FILE_DATE:
      onFileDate(event);
      break;
  }
}

void ReplayEngineC::onTime(RCV::ReceiverMessageC const& event) {
  if (event.timeForm == RCV::TIMEFORM_NONE) {
    refuse(MessageReportC{event, event.warnings, nullptr}, event.refusal);
    return;
  }
  if (event.refusal == RCV::REFUSAL_NONE) {
    seedLeapSecond(event);
  }
  ObservationC const observation(event);
  MessageReportC message{event, event.warnings, &observation};
  if (event.refusal != RCV::REFUSAL_NONE || !observation.isInRange()) {
    refuse(message, event.refusal != RCV::REFUSAL_NONE ? event.refusal : RCV::REFUSAL_OUT_OF_RANGE);
    return;
  }
  std::optional<PcReadingC> const arrived = arrive(event, observation.unixMs());
  if (!arrived) {
    refuse(message, RCV::REFUSAL_OUT_OF_RANGE);
    return;
  }
  PcReadingC const& reading = *arrived;
  message.signs |= reading.hasRunBack ? RCV::WARNING_HOST_TIME_BACK : RCV::WARNING_NONE;
  ArrivedTimeC const time = arrivedTime(observation, reading);
  message.signs |= detector.signsOfTime(time);
  if (event.leap.hasCount && hasClocks) {
    message.signs |= SignDetectorC::signsOfLeap(event.leap, countInForce());
  }
  countSigns(message.signs);
  if (options.isStrict && message.signs != RCV::WARNING_NONE) {
    leaveOut(message, time);
    return;
  }
  if (!hasClocks) {
    startClocks();
    handPendingLeap();
  }
  useObservation(message, reading);
}

void ReplayEngineC::leaveOut(MessageReportC const& message, ArrivedTimeC const& time) {
  detector.leaveOutTime(time, message.signs);
  if (clockSetter != nullptr &&
      (message.signs & (RCV::WARNING_TIME_STEP | RCV::WARNING_WEEK_ROLLOVER)) != 0) {
    clockSetter->onContradiction();
  }
  refuse(message, RCV::REFUSAL_STRICT);
}

void ReplayEngineC::onLeap(RCV::ReceiverMessageC const& event) {
  MessageReportC message{event, event.warnings, nullptr};
  if (event.refusal != RCV::REFUSAL_NONE) {
    refuse(message, event.refusal);
    return;
  }
  if (!hasClocks) {
    pendingLeap = event;
    return;
  }
  message.signs |= SignDetectorC::signsOfLeap(event.leap, countInForce());
  countSigns(message.signs);
  if (options.isStrict && message.signs != RCV::WARNING_NONE) {
    refuse(message, RCV::REFUSAL_STRICT);
    return;
  }
  offerLeap(message);
}

void ReplayEngineC::onFileDate(RCV::ReceiverMessageC const& event) {
  seedLeapSecond(event);
  ObservationC const observation(event);
  if (!observation.isInRange() || (hasClocks && observation.unixMs() <= latestUnixMs)) {
    return;
  }
  std::optional<PcReadingC> const reading = arrive(event, observation.unixMs());
  if (reading && !hasClocks) {
    startClocks();
    handPendingLeap();
  }
}

void ReplayEngineC::seedLeapSecond(RCV::ReceiverMessageC const& event) {
  if (isSeeded || !options.usesLeapHistory) {
    return;
  }
  isSeeded = true;
  // The host's date rather than that of a receiver, which may be 1024 weeks off.
  TIM::GpsC const start = event.place.hasHostTime
                              ? gpsOfUtc(utcCalendarOf(event.place.hostUnixMs), history)
                              : ObservationC(event).gps(history);
  TIM::UtcLeapSecondRecord const record = LeapHistoryC::statementAt(start);
  TIM::resetSatelliteLeapSecond(&record);
}

std::optional<PcReadingC> ReplayEngineC::arrive(RCV::ReceiverMessageC const& event,
                                                std::int64_t unixMs) {
  ArrivalC arrival;
  arrival.statedUnixMs = unixMs;
  arrival.hasHostTime = event.place.hasHostTime;
  arrival.hostUnixMs = event.place.hostUnixMs;
  arrival.message = event.name;
  arrival.isFirst = !hasClocks;
  arrival.isNewInput = isNewInput;
  std::optional<PcReadingC> const reading = pc.arrive(arrival);
  if (!reading) {
    return reading;
  }
  isNewInput = false;
  latestUnixMs = unixMs;
  systemClock->hold(reading->systemUnixMs);
  steadyClock->hold(reading->steadyMs);
  return reading;
}

void ReplayEngineC::startClocks() {
  hasClocks = true;
  TIM::setSysTimeClocks(systemClock, steadyClock);
}

void ReplayEngineC::useObservation(MessageReportC const& message, PcReadingC const& reading) {
  RCV::ReceiverMessageC const& event = message.event;
  if (event.leap.hasCount && event.leap.current != countInForce()) {
    offerLeap(message);
  }
  std::int64_t const noiseMs = noiseOf(event);
  ObservationC const& observation = *message.observation;
  ObservationEffectC const effect = observe(observation, noiseMs);
  ArrivedTimeC const time = arrivedTime(observation, reading);
  // Before any report: writing one takes time, and the present is that of the arrival.
  std::optional<ClockStepC> const clock = stepClock(time, reading);
  detector.useTime(time, message.signs);
  ++runCounts.used;
  report.onObservation(message, effect);
  handOverSteps();
  reportCorrections();
  if (clock) {
    report.onClock(*clock);
  }
  reportOldMapping();
}

ObservationEffectC ReplayEngineC::observe(ObservationC const& observation, std::int64_t noiseMs) {
  TIM::TimeEstimateStepC const before = lastStep;
  observation.makeToCurrentTime(noiseMs);
  // The step tells the difference cut to whole milliseconds; before the first one the seed defines
  // the present.
  bool const isFirst = before.number == 0;
  double const presentMjd = isFirst ? lastStep.startMjd : before.mappedMjd;
  std::int64_t const mappedMs = isFirst ? lastStep.startSteadyMs : before.mappedSteadyMs;
  double const differenceMs = (lastStep.estimatedMjd - presentMjd) * MS_PER_DAY -
                              static_cast<double>(lastStep.steadyMs - mappedMs);
  return {noiseMs, differenceMs, lastStep.estimatedSigma};
}

std::optional<ClockStepC> ReplayEngineC::stepClock(ArrivedTimeC const& time,
                                                   PcReadingC const& reading) {
  if (clockSetter == nullptr) {
    return std::nullopt;
  }
  return clockSetter->onObservation(time.unixMs, reading);
}

void ReplayEngineC::offerLeap(MessageReportC const& message) {
  RCV::LeapStatementC const& leap = message.event.leap;
  LeapReportC leapReport;
  if (!isAnnouncement(leap) && leap.current == countInForce()) {
    ++runCounts.leapStatements;
    report.onLeapStatement(message, leapReport);
    return;
  }
  if (!hasCountsInRange(leap)) {
    refuseLeap(message, leapReport, RCV::REFUSAL_LEAP_OUT_OF_RANGE);
    return;
  }
  if (!makeRecord(leap, leapReport.record)) {
    refuse(message, RCV::REFUSAL_MALFORMED);
    return;
  }
  setLeapSecond(leapReport);
  if (leapReport.outcome == LEAP_REFUSED) {
    ++runCounts.refused[leapReport.refusal];
  } else {
    ++runCounts.leapStatements;
  }
  report.onLeapStatement(message, leapReport);
  if (leapReport.outcome == LEAP_ACCEPTED) {
    ++runCounts.leapChanges;
    report.onLeapChange(previousLeap, currentLeap);
  }
  reportCorrections();
}

void ReplayEngineC::refuseLeap(MessageReportC const& message,
                               LeapReportC& leapReport,
                               RCV::RefusalE refusal) {
  leapReport.outcome = LEAP_REFUSED;
  leapReport.refusal = refusal;
  ++runCounts.refused[refusal];
  report.onLeapStatement(message, leapReport);
}

void ReplayEngineC::setLeapSecond(LeapReportC& leapReport) {
  hasLeapChange = false;
  leapReport.isOffered = true;
  leapReport.resultCode = TIM::setUtcLeapSecond(leapReport.record, true);
  if (leapReport.resultCode == TIM::RC_OK) {
    leapReport.outcome = hasLeapChange ? LEAP_ACCEPTED : LEAP_UNCHANGED;
  } else {
    leapReport.outcome = LEAP_REFUSED;
    leapReport.refusal = leapReport.resultCode == TIM::RC_INVALID_LEAPSECOND
                             ? RCV::REFUSAL_LEAP_INVALID
                             : RCV::REFUSAL_LEAP_REJECTED;
  }
  // A change makes the library observe its own present anew, without noise.
  handOverSteps();
}

void ReplayEngineC::handPendingLeap() {
  if (pendingLeap) {
    RCV::ReceiverMessageC const event = *pendingLeap;
    pendingLeap.reset();
    onLeap(event);
  }
}

void ReplayEngineC::refuse(MessageReportC const& message, RCV::RefusalE refusal) {
  ++runCounts.refused[refusal];
  report.onRefusal(message, refusal);
}

void ReplayEngineC::countSigns(std::uint32_t signs) {
  for (std::uint32_t i = 0; signs != 0 && i < RCV::WARNING_COUNT; ++i) {
    runCounts.signs[i] += signs >> i & 1U;
  }
}

void ReplayEngineC::handOverSteps() {
  for (TIM::TimeEstimateStepC const& step : steps) {
    if (estimates != nullptr) {
      estimates->onEstimate(step);
    }
  }
  steps.clear();
}

void ReplayEngineC::reportCorrections() {
  if (corrections.empty()) {
    return;
  }
  std::vector<CorrectionReportC> const released = std::move(corrections);
  corrections.clear();
  for (CorrectionReportC const& correction : released) {
    ++runCounts.corrections;
    report.onCorrection(correction);
  }
}

void ReplayEngineC::reportOldMapping() {
  std::int64_t const ageMs = lastStep.steadyMs - lastStep.mappedSteadyMs;
  if (!hasToldOldMapping && ageMs > OLD_MAPPING_MS) {
    hasToldOldMapping = true;
    report.onOldMapping(ageMs);
  }
}

std::int64_t ReplayEngineC::noiseOf(RCV::ReceiverMessageC const& event) const {
  if (options.noiseMs) {
    return *options.noiseMs;
  }
  if (event.accuracyNs < 0) {
    return DEFAULT_NOISE_MS;
  }
  // With no noise at all every residual would set the estimate anew.
  return std::max<std::int64_t>((event.accuracyNs + NS_PER_MS - 1) / NS_PER_MS, 1);
}

void ReplayEngineC::finish(RCV::ReadCountsC const& read, bool isInterrupted) {
  if (pendingLeap) {
    refuse(MessageReportC{*pendingLeap, pendingLeap->warnings, nullptr}, RCV::REFUSAL_NO_TIME);
    pendingLeap.reset();
  }
  SummaryReportC summary{inputs, read, runCounts,    runCounts.used > 0, lastStep.estimatedSigma,
                         0,      {},   isInterrupted};
  TIM::getCurrentUtcLeapSecond(summary.leapRecord);
  summary.leapSeconds = summary.leapRecord.current;
  report.onSummary(summary);
}

}  // namespace KTX::VORTIME
