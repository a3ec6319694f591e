#ifndef KTX_RCV_CLOCKSETTER_H
#define KTX_RCV_CLOCKSETTER_H

#include <cstdint>
#include <optional>

#include "KTX/RCV/KTX_RCV_Agreement.h"
#include "KTX/RCV/KTX_RCV_Api.h"
#include "KTX/RCV/KTX_RCV_ClockStep.h"
#include "KTX/RCV/KTX_RCV_HostPc.h"
#include "KTX/RCV/KTX_RCV_PcClock.h"

namespace KTX::RCV {

/// Decides when the PC's calendar clock is set to the library's present.
///
/// First, and by any amount, when the observations have agreed with one another within
/// AGREEMENT_LIMIT_MS over at least AGREEMENT_MS, and the present with the last of them within the
/// same limit; whether the library then releases a correction does not count. When the system
/// refuses, the next agreement begins. Once the clock is set, each released correction sets it
/// again, if the step of the clock is at most the largest step.
class KTX_RCV_API ClockSetterC {
 public:
  static constexpr std::int64_t AGREEMENT_LIMIT_MS =
      500;  ///< between any two observations that agree, ms
  static constexpr std::int64_t AGREEMENT_MS = 10000;  ///< from the first to the last of them, ms
  static constexpr std::int64_t DEFAULT_MAX_STEP_MS = 1000000;  ///< a usual largest step, ms

  /// pcClock must outlive the setter.
  ClockSetterC(PcClockI& pcClock, std::int64_t maxStep);

  /// Tells that the library released a correction; the next observation sets the clock.
  void onCorrection() { isDue = true; }
  /// Tells that a message contradicted the observations and was left out: no agreement.
  void onContradiction() { agreement.clear(); }
  /// Tells that the library has taken an observation of unixMs (since 1970-01-01 UTC), which
  /// arrived when the PC's clocks gave reading. Empty when the clock was not to be set.
  std::optional<ClockStepC> onObservation(std::int64_t unixMs, PcReadingC const& reading);

 private:
  std::optional<ClockStepC> setFirst(std::int64_t unixMs, PcReadingC const& reading);
  ClockStepC setAgain(PcReadingC const& reading);

  PcClockI& clock;
  std::int64_t const maxStepMs;
  AgreementC agreement{AGREEMENT_LIMIT_MS};
  bool isSet = false;
  bool isDue = false;
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_CLOCKSETTER_H
