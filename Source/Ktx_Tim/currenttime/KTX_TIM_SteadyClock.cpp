#include "currenttime/KTX_TIM_SteadyClock.h"

#include "currenttime/KTX_TIM_SteadyReading.h"

namespace KTX::TIM {

template <>
ClockI<boost::milli>::DurationT SteadyClockC<boost::milli>::now() const {
  return DurationT(steadyMs());
}

template <>
ClockI<boost::nano>::DurationT SteadyClockC<boost::nano>::now() const {
  return DurationT(steadyNs());
}

template <class Period>
ClockTypeE SteadyClockC<Period>::getType() const {
  return CLOCKTYPE_STEADY;
}

template <class Period>
ClockReferenceE SteadyClockC<Period>::getReference() const {
  return CLOCKREF_NONE;
}

template <class Period>
boost::posix_time::ptime SteadyClockC<Period>::getEpoch() const {
  return boost::posix_time::ptime(boost::posix_time::not_a_date_time);
}

template class SteadyClockC<boost::milli>;
template class SteadyClockC<boost::nano>;

}  // namespace KTX::TIM
