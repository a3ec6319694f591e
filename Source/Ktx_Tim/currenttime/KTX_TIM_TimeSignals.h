#ifndef KTX_TIM_TIMESIGNALS_H
#define KTX_TIM_TIMESIGNALS_H

#include <boost/shared_ptr.hpp>
#include <boost/signals2/signal.hpp>

#include "KTX/TIM/KTX_TIM_TimeCorrection.h"

namespace KTX::TIM {

using TimeCorrectedSignalT =
    boost::signals2::signal<void(int week, int millisecondsOfWeek, TimeChangeT change)>;
using TimeSignalT = boost::signals2::signal<void(int week, int millisecondsOfWeek)>;

// The process-wide signals. Each is built on first use, at the latest while the library loads.
// Slots run on the caller's thread; emit while holding no lock.

/// Corrections that the filter released.
boost::shared_ptr<TimeCorrectedSignalT> const& timeCorrectedSignal();
/// Times that a client gave out.
boost::shared_ptr<TimeSignalT> const& timeSignal();

}  // namespace KTX::TIM

#endif  // KTX_TIM_TIMESIGNALS_H
