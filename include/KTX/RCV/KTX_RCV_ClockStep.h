#ifndef KTX_RCV_CLOCKSTEP_H
#define KTX_RCV_CLOCKSTEP_H

#include <cstdint>

#include "KTX/TIM/KTX_TIM_Ymdhms.h"

namespace KTX::RCV {

/// Whether the PC's calendar clock was set.
enum ClockOutcomeE : std::uint8_t {
  CLOCK_SET,            ///< it was
  CLOCK_REFUSED,        ///< the system did not set its clock
  CLOCK_STEP_TOO_LARGE  ///< left alone: the step exceeds the limit
};

/// What became of setting the PC's calendar clock.
struct ClockStepC {
  ClockOutcomeE outcome = CLOCK_SET;  ///< whether the clock was set
  bool isFirst = false;               ///< not set before: of any size
  std::int64_t stepMs = 0;            ///< time to set minus what the clock read
  TIM::YmdhmsC utc = TIM::YmdhmsC::zero(TIM::TIMEBASE_UTC, 1);  ///< time to set
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_CLOCKSTEP_H
