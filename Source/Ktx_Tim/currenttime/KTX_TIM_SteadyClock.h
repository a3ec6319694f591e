#ifndef KTX_TIM_STEADYCLOCK_H
#define KTX_TIM_STEADYCLOCK_H

#include "KTX/TIM/KTX_TIM_Clock.h"

namespace KTX::TIM {

/// The machine's steady counter, with an arbitrary zero.
template <class Period>
class SteadyClockC : public ClockI<Period> {
 public:
  typename ClockI<Period>::DurationT now() const override;
  ClockTypeE getType() const override;
  ClockReferenceE getReference() const override;
  boost::posix_time::ptime getEpoch() const override;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_STEADYCLOCK_H
