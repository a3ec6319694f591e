#ifndef KTX_VORTIME_PCCLOCK_H
#define KTX_VORTIME_PCCLOCK_H

#include "KTX/TIM/KTX_TIM_Ymdhms.h"

namespace KTX::VORTIME {

/// The calendar clock of a PC, to be set.
class PcClockI {
 public:
  virtual ~PcClockI() = default;
  /// Sets the clock to an instant in UTC. False when the system refuses.
  virtual bool set(TIM::YmdhmsC const& utc) = 0;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_PCCLOCK_H
