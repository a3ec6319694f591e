#ifndef KTX_TIM_SYSTIMECLOCKS_H
#define KTX_TIM_SYSTIMECLOCKS_H

#include <boost/ratio/ratio.hpp>
#include <boost/shared_ptr.hpp>

#include "KTX/TIM/KTX_TIM_Api.h"
#include "KTX/TIM/KTX_TIM_Clock.h"

namespace KTX::TIM {

/// Replaces the two clocks of the library's present: systemClock is the calendar clock that the
/// mapping is seeded from, steadyClock the counter that advances it. The estimate starts anew.
/// An empty pointer raises an assertion and changes nothing. Throws boost::gregorian::bad_year when
/// the calendar clock reads a year outside 1400 to 9999, and passes on what a clock throws; clocks
/// and present then stay as they were. Takes the library-wide lock.
KTX_TIM_API void setSysTimeClocks(boost::shared_ptr<ClockI<boost::milli>> const& systemClock,
                                  boost::shared_ptr<ClockI<boost::milli>> const& steadyClock);

/// Seeds the library's present anew from its calendar clock and restarts the estimate. Throws as
/// setSysTimeClocks() does; the present then stays as it was. Takes the library-wide lock.
KTX_TIM_API void resetSysTime();

}  // namespace KTX::TIM

#endif  // KTX_TIM_SYSTIMECLOCKS_H
