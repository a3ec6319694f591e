#ifndef KTX_TIM_GETTICKCOUNTCLOCK_H
#define KTX_TIM_GETTICKCOUNTCLOCK_H

#include "KTX/TIM/KTX_TIM_Clock.h"

namespace KTX::TIM {

/// A steady clock in whole milliseconds, also where it counts nanoseconds.
template <class Period>
class GetTickCountClockC : public ClockI<Period> {
 public:
  typename ClockI<Period>::DurationT now() const override;
  ClockTypeE getType() const override;
  ClockReferenceE getReference() const override;
  boost::posix_time::ptime getEpoch() const override;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_GETTICKCOUNTCLOCK_H
