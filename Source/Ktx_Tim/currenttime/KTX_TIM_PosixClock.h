#ifndef KTX_TIM_POSIXCLOCK_H
#define KTX_TIM_POSIXCLOCK_H

#include "KTX/TIM/KTX_TIM_Clock.h"

namespace KTX::TIM {

/// The instant that reading zero of every PosixClockC of this period stands for.
template <class Period>
boost::posix_time::ptime const& posixEpoch();

/// Ticks from the epoch to instant: truncated toward zero, the nearest limit where they do not fit,
/// and 0 for an instant that is no date.
template <class Period>
typename ClockI<Period>::DurationT ticksSinceEpoch(boost::posix_time::ptime const& instant);

/// The calendar clock of the system; one of local time counts the wall time as if it were UTC.
/// now() lets the date library's exceptions pass.
template <class Period>
class PosixClockC : public ClockI<Period> {
 public:
  explicit PosixClockC(ClockReferenceE clockReference);

  typename ClockI<Period>::DurationT now() const override;
  ClockTypeE getType() const override;
  ClockReferenceE getReference() const override;
  boost::posix_time::ptime getEpoch() const override;

 private:
  ClockReferenceE const reference;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_POSIXCLOCK_H
