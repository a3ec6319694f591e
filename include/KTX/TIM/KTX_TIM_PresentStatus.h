#ifndef KTX_TIM_PRESENTSTATUS_H
#define KTX_TIM_PRESENTSTATUS_H

#include <cstdint>
#include <optional>

#include "KTX/TIM/KTX_TIM_Api.h"

namespace KTX::TIM {

/// The library's present and the estimate behind it, at one reading of the steady clock.
///
/// Counts and ages begin anew with resetSysTime() and setSysTimeClocks(). An age is negative when
/// the steady clock has been set back.
struct PresentStatusC {
  std::int64_t steadyMs;        ///< reading of the steady clock that all of this belongs to, ms
  double mappedMjd;             ///< mapping in force: Modified Julian Date in UTC, days
  std::int64_t mappedSteadyMs;  ///< at this reading, ms
  double sigma;                 ///< standard deviation of the estimate, grown to steadyMs, days
  std::optional<std::int64_t> observationAgeMs;  ///< of the last observation; empty before any
  std::optional<std::int64_t> correctionAgeMs;   ///< of the last correction; empty before any
  std::uint64_t unchangedCount;                  ///< observations with TIMEVERDICT_UNCHANGED
  std::uint64_t tooUncertainCount;               ///< observations with TIMEVERDICT_TOO_UNCERTAIN
  std::uint64_t correctedCount;                  ///< observations with TIMEVERDICT_CORRECTED
};

/// Reads the status, changes nothing and writes no log line. Takes the library-wide lock; any
/// thread may call. What the steady clock throws passes to the caller.
KTX_TIM_API PresentStatusC getPresentStatus();

}  // namespace KTX::TIM

#endif  // KTX_TIM_PRESENTSTATUS_H
