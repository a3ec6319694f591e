#ifndef KTX_RCV_PCCLOCK_H
#define KTX_RCV_PCCLOCK_H

#include "KTX/TIM/KTX_TIM_Ymdhms.h"

namespace KTX::RCV {

/// The calendar clock of a PC, to be set.
class PcClockI {
 public:
  virtual ~PcClockI() = default;
  /// Sets the clock to an instant in UTC. False when the system refuses.
  virtual bool set(TIM::YmdhmsC const& utc) = 0;
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_PCCLOCK_H
