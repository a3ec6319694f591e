#ifndef KTX_TIM_CLOCKFACTORY_H
#define KTX_TIM_CLOCKFACTORY_H

#include <boost/ratio/ratio.hpp>
#include <boost/shared_ptr.hpp>

#include "KTX/TIM/KTX_TIM_Api.h"
#include "KTX/TIM/KTX_TIM_Clock.h"

namespace KTX::TIM {

/// Builds a clock; Period is boost::milli or boost::nano, and no other is defined. A steady clock
/// takes CLOCKREF_NONE or CLOCKREF_DEFAULT, a calendar clock CLOCKREF_UTC, CLOCKREF_LOCAL or
/// CLOCKREF_DEFAULT, which means UTC; any other reference raises an assertion and the default is
/// taken. An unknown type raises two assertions and gives an empty pointer. Any thread may call.
template <class Period>
boost::shared_ptr<ClockI<Period>> createClock(ClockTypeE type, ClockReferenceE reference);

/// The factory for clocks that count milliseconds.
template <>
KTX_TIM_API boost::shared_ptr<ClockI<boost::milli>> createClock<boost::milli>(
    ClockTypeE type, ClockReferenceE reference);
/// The factory for clocks that count nanoseconds.
template <>
KTX_TIM_API boost::shared_ptr<ClockI<boost::nano>> createClock<boost::nano>(
    ClockTypeE type, ClockReferenceE reference);

}  // namespace KTX::TIM

#endif  // KTX_TIM_CLOCKFACTORY_H
