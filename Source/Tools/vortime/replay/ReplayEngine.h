#ifndef KTX_VORTIME_REPLAYENGINE_H
#define KTX_VORTIME_REPLAYENGINE_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>
#include <boost/signals2/connection.hpp>

#include "KTX/RCV/KTX_RCV_MessageSink.h"
#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "replay/ClockSetter.h"
#include "replay/EstimateSink.h"
#include "replay/HeldClock.h"
#include "replay/HostPc.h"
#include "replay/LeapHistory.h"
#include "replay/ReplayCounts.h"
#include "replay/ReplayReport.h"
#include "replay/SignDetector.h"

namespace KTX::VORTIME {

/// How a run treats its messages.
struct ReplayOptionsC {
  std::optional<std::int64_t> noiseMs;  ///< for all observations, whatever accuracy they state
  bool isStrict = false;                ///< leave out messages with a sign
  std::int64_t stepLimitMs = SignDetectorC::DEFAULT_STEP_LIMIT_MS;  ///< above it: a time-step
  bool usesLeapHistory = true;                  ///< begin with the leap second of the first date
  std::optional<std::int64_t> referenceUnixMs;  ///< about when the log was recorded
};

/// Hands the messages of a receiver to the library, as its application would, on clocks of its own.
/// There can be one at a time: the library's present and leap second are those of the process.
class ReplayEngineC : public RCV::MessageSinkI {
 public:
  /// The standard deviation of observations that state no accuracy.
  static constexpr std::int64_t DEFAULT_NOISE_MS = 10;
  /// The age of the library's mapping above which the report is told of it.
  static constexpr std::int64_t OLD_MAPPING_MS = 86400000;
  /// The counts of GPS minus UTC that a receiver is believed, in seconds.
  static constexpr std::int32_t MIN_LEAP_COUNT = 0;
  static constexpr std::int32_t MAX_LEAP_COUNT = 40;

  /// All must outlive the engine; estimateSink may be null.
  ReplayEngineC(HostPcI& hostPc,
                ReplayOptionsC const& replayOptions,
                ReplayReportI& replayReport,
                EstimateSinkI* estimateSink);
  ~ReplayEngineC() override;
  ReplayEngineC(ReplayEngineC const&) = delete;
  ReplayEngineC& operator=(ReplayEngineC const&) = delete;

  /// Lets the observations set the PC's clock. setter must outlive the engine.
  void setClockSetter(ClockSetterC& setter) { clockSetter = &setter; }

  /// Tells that the events of another input follow.
  void beginInput(std::string const& name);
  void onMessage(RCV::ReceiverMessageC const& event) override;
  /// Tells that no event follows and reports the summary.
  void finish(RCV::ReadCountsC const& read, bool isInterrupted);

  ReplayCountsC const& counts() const { return runCounts; }
  /// The leap seconds by which the engine turns stated UTC into GPS time.
  TIM::LeapSecondProviderI& leapSeconds();

 private:
  void onTime(RCV::ReceiverMessageC const& event);
  void onLeap(RCV::ReceiverMessageC const& event);
  void onFileDate(RCV::ReceiverMessageC const& event);
  void seedLeapSecond(RCV::ReceiverMessageC const& event);
  std::optional<PcReadingC> arrive(RCV::ReceiverMessageC const& event, std::int64_t unixMs);
  void startClocks();
  void useObservation(MessageReportC const& message, PcReadingC const& reading);
  void offerLeap(MessageReportC const& message);
  void setLeapSecond(LeapReportC& leapReport);
  void leaveOut(MessageReportC const& message, ArrivedTimeC const& time);
  std::optional<ClockStepC> stepClock(ArrivedTimeC const& time, PcReadingC const& reading);
  void refuseLeap(MessageReportC const& message, LeapReportC& leapReport, RCV::RefusalE refusal);
  void refuse(MessageReportC const& message, RCV::RefusalE refusal);
  void countSigns(std::uint32_t signs);
  ObservationEffectC observe(ObservationC const& observation, std::int64_t noiseMs);
  void handOverSteps();
  void reportCorrections();
  void reportOldMapping();
  void handPendingLeap();
  std::int64_t noiseOf(RCV::ReceiverMessageC const& event) const;

  HostPcI& pc;
  ReplayOptionsC const options;
  ReplayReportI& report;
  EstimateSinkI* const estimates;
  boost::shared_ptr<HeldClockC> const systemClock;
  boost::shared_ptr<HeldClockC> const steadyClock;
  LeapHistoryC history;
  SignDetectorC detector;
  ClockSetterC* clockSetter = nullptr;
  ReplayCountsC runCounts;
  std::vector<std::string> inputs;
  bool isNewInput = true;
  bool isSeeded = false;
  bool hasClocks = false;
  std::int64_t latestUnixMs = 0;
  bool hasToldOldMapping = false;
  std::optional<RCV::ReceiverMessageC> pendingLeap;  ///< came before the first time
  std::vector<TIM::TimeEstimateStepC> steps;         ///< of the message at hand
  TIM::TimeEstimateStepC lastStep{};
  std::vector<CorrectionReportC> corrections;
  bool hasLeapChange = false;
  TIM::UtcLeapSecondRecord previousLeap{};
  TIM::UtcLeapSecondRecord currentLeap{};
  boost::signals2::scoped_connection estimateConnection;
  boost::signals2::scoped_connection correctionConnection;
  boost::signals2::scoped_connection leapConnection;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_REPLAYENGINE_H
