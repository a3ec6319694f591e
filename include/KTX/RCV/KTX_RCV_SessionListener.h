#ifndef KTX_RCV_SESSIONLISTENER_H
#define KTX_RCV_SESSIONLISTENER_H

#include <cstdint>
#include <string>
#include <vector>

#include "KTX/RCV/KTX_RCV_ClockStep.h"
#include "KTX/RCV/KTX_RCV_Observation.h"
#include "KTX/RCV/KTX_RCV_ReadCounts.h"
#include "KTX/RCV/KTX_RCV_ReceiverMessage.h"
#include "KTX/RCV/KTX_RCV_SessionCounts.h"
#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"

namespace KTX::RCV {

/// A message as a report shows it.
struct MessageReportC {
  ReceiverMessageC const& message;            ///< as the reader handed it out
  std::uint32_t warnings = WARNING_NONE;      ///< those of the message and those found since
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
  std::uint16_t week = 0;      ///< GPS week of the corrected present
  std::uint32_t msOfWeek = 0;  ///< its milliseconds of the week
  std::int64_t changeMs = 0;   ///< corrected present minus the present before, ms
};

/// What became of a leap second statement.
enum LeapOutcomeE : std::uint8_t {
  LEAP_AGREES,     ///< a bare count, the one in force
  LEAP_UNCHANGED,  ///< the library held the same statement
  LEAP_ACCEPTED,   ///< the library holds it now
  LEAP_REFUSED     ///< the library did not take it
};

/// A leap second statement and what the library did with it.
struct LeapReportC {
  LeapOutcomeE outcome = LEAP_AGREES;  ///< what became of it
  RefusalE refusal = REFUSAL_NONE;     ///< with LEAP_REFUSED: why
  bool isOffered = false;              ///< record was handed to the library
  TIM::UtcLeapSecondRecord record{};   ///< as handed over
  std::uint32_t resultCode = 0;        ///< of the library
};

/// The end of a run.
struct SummaryReportC {
  std::vector<std::string> inputs;  ///< names, in order
  ReadCountsC const& read;          ///< what the reader saw
  SessionCountsC const& counts;     ///< what became of the messages
  bool hasStarted = false;          ///< an observation was handed over, and sigma means something
  double sigma = 0;                 ///< standard deviation of the estimate, days
  std::int16_t leapSeconds = 0;     ///< GPS minus UTC in force, seconds
  TIM::UtcLeapSecondRecord leapRecord{};  ///< the record that says so
  bool isInterrupted = false;             ///< the run was ended from outside
};

/// Takes what happens in a session, in order, on the thread that hands over the messages. A
/// listener overrides what it wants to know.
class SessionListenerI {
 public:
  virtual ~SessionListenerI() = default;
  /// The leap seconds by which stated UTC is shown as GPS time; given before the first message.
  virtual void setLeapSeconds(TIM::LeapSecondProviderI& /*provider*/) {}
  /// The messages of another input follow.
  virtual void onInput(std::string const& /*name*/) {}
  /// A time was handed to the library.
  virtual void onObservation(MessageReportC const& /*message*/,
                             ObservationEffectC const& /*effect*/) {}
  /// A message was not used.
  virtual void onRefusal(MessageReportC const& /*message*/, RefusalE /*refusal*/) {}
  /// The library corrected its present.
  virtual void onCorrection(CorrectionReportC const& /*correction*/) {}
  /// The PC's clock was to be set.
  virtual void onClock(ClockStepC const& /*clock*/) {}
  /// A leap second statement was judged.
  virtual void onLeapStatement(MessageReportC const& /*message*/, LeapReportC const& /*leap*/) {}
  /// The leap second record in force changed.
  virtual void onLeapChange(TIM::UtcLeapSecondRecord const& /*previous*/,
                            TIM::UtcLeapSecondRecord const& /*current*/) {}
  /// The library's present rests on a mapping older than a day, of this age; told once a run.
  virtual void onOldMapping(std::int64_t /*ageMs*/) {}
  /// No message follows.
  virtual void onSummary(SummaryReportC const& /*summary*/) {}
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_SESSIONLISTENER_H
