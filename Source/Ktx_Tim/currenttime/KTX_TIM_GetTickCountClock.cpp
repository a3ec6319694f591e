#include "currenttime/KTX_TIM_GetTickCountClock.h"

#include "currenttime/KTX_TIM_SteadyReading.h"

namespace KTX::TIM {

template <class Period>
typename ClockI<Period>::DurationT GetTickCountClockC<Period>::now() const {
  // Like a tick counter, the nanosecond clock moves by whole milliseconds too.
  constexpr std::int64_t TICKS_PER_MS = Period::den / boost::milli::den;
  return typename ClockI<Period>::DurationT(steadyMs() * TICKS_PER_MS);
}

template <class Period>
ClockTypeE GetTickCountClockC<Period>::getType() const {
  return CLOCKTYPE_GETTICKCOUNT;
}

template <class Period>
ClockReferenceE GetTickCountClockC<Period>::getReference() const {
  return CLOCKREF_NONE;
}

template <class Period>
boost::posix_time::ptime GetTickCountClockC<Period>::getEpoch() const {
  return boost::posix_time::ptime(boost::posix_time::not_a_date_time);
}

template class GetTickCountClockC<boost::milli>;
template class GetTickCountClockC<boost::nano>;

}  // namespace KTX::TIM
