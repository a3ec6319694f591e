#ifndef KTX_VORTIME_REPLAYREPORT_H
#define KTX_VORTIME_REPLAYREPORT_H

#include <cstdint>
#include <string>
#include <vector>

#include "KTX/RCV/KTX_RCV_ReadCounts.h"
#include "KTX/RCV/KTX_RCV_ReceiverMessage.h"
#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "replay/ClockStep.h"
#include "replay/Observation.h"
#include "replay/ReplayCounts.h"

namespace KTX::VORTIME {

/// A message as a report shows it.
struct MessageReportC {
  RCV::ReceiverMessageC const& event;
  std::uint32_t signs = RCV::WARNING_NONE;    ///< those of the event and those found since
  ObservationC const* observation = nullptr;  ///< null without a time
};

/// What an observation did to the library's estimate.
struct ObservationEffectC {
  std::int64_t noiseMs = 0;  ///< standard deviation that the observation was given
  double differenceMs = 0;   ///< estimate after it minus the present before it
  double sigma = 0;          ///< standard deviation of the estimate, days
};

/// A correction of the present that the library released.
struct CorrectionReportC {
  std::uint16_t week = 0;
  std::uint32_t msOfWeek = 0;
  std::int64_t changeMs = 0;
};

/// What became of a leap second statement.
enum LeapOutcomeE : std::uint8_t {
  LEAP_AGREES,     ///< a bare count, the one in force
  LEAP_UNCHANGED,  ///< the library held the same statement
  LEAP_ACCEPTED,   ///< the library holds it now
  LEAP_REFUSED
};

/// A leap second statement and what the library did with it.
struct LeapReportC {
  LeapOutcomeE outcome = LEAP_AGREES;
  RCV::RefusalE refusal = RCV::REFUSAL_NONE;
  bool isOffered = false;             ///< record was handed to the library
  TIM::UtcLeapSecondRecord record{};  ///< as handed over
  std::uint32_t resultCode = 0;       ///< of the library
};

/// The end of a run.
struct SummaryReportC {
  std::vector<std::string> inputs;
  RCV::ReadCountsC const& read;
  ReplayCountsC const& counts;
  bool hasStarted = false;  ///< an observation was handed over, and sigma means something
  double sigma = 0;         ///< standard deviation of the estimate, days
  std::int16_t leapSeconds = 0;
  TIM::UtcLeapSecondRecord leapRecord{};
  bool isInterrupted = false;
};

/// Takes what happens during a run, in order.
class ReplayReportI {
 public:
  virtual ~ReplayReportI() = default;
  /// The leap seconds by which stated UTC is shown as GPS time; given before the first event.
  virtual void setLeapSeconds(TIM::LeapSecondProviderI& provider) = 0;
  virtual void onInput(std::string const& name) = 0;
  virtual void onObservation(MessageReportC const& message, ObservationEffectC const& effect) = 0;
  virtual void onRefusal(MessageReportC const& message, RCV::RefusalE refusal) = 0;
  virtual void onCorrection(CorrectionReportC const& correction) = 0;
  /// The PC's clock was to be set.
  virtual void onClock(ClockStepC const& clock) = 0;
  virtual void onLeapStatement(MessageReportC const& message, LeapReportC const& leap) = 0;
  virtual void onLeapChange(TIM::UtcLeapSecondRecord const& previous,
                            TIM::UtcLeapSecondRecord const& current) = 0;
  /// The library's present rests on a mapping older than a day, of this age; told once a run.
  virtual void onOldMapping(std::int64_t ageMs) = 0;
  virtual void onSummary(SummaryReportC const& summary) = 0;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_REPLAYREPORT_H
