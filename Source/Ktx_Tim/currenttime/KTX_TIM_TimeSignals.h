#ifndef KTX_TIM_TIMESIGNALS_H
#define KTX_TIM_TIMESIGNALS_H

#include <cstdint>

#include <boost/shared_ptr.hpp>
#include <boost/signals2/signal.hpp>

#include "KTX/TIM/KTX_TIM_TimeCorrection.h"
#include "KTX/TIM/KTX_TIM_TimeEstimate.h"

namespace KTX::TIM {

using TimeCorrectedSignalT =
    boost::signals2::signal<void(int week, int millisecondsOfWeek, TimeChangeT change)>;
using TimeEstimatedSignalT = boost::signals2::signal<void(TimeEstimateStepC const& step)>;
using TimeSignalT = boost::signals2::signal<void(int week, int millisecondsOfWeek)>;

// The process-wide signals. Each is built on first use, at the latest while the library loads.
// Slots run on the caller's thread; emit while holding no lock.

/// Corrections that the filter released. Emit through notifyTimeCorrected().
boost::shared_ptr<TimeCorrectedSignalT> const& timeCorrectedSignal();
/// Steps that the filter made. Emit through notifyTimeEstimated().
boost::shared_ptr<TimeEstimatedSignalT> const& timeEstimatedSignal();
/// Times that a client gave out.
boost::shared_ptr<TimeSignalT> const& timeSignal();

/// Tells the listeners of corrections.
void notifyTimeCorrected(int week, int msOfWeek, std::int64_t changeMs);

/// Tells the listeners of the filter's steps; costs one read of a flag where there is none.
void notifyTimeEstimated(TimeEstimateStepC const& step);

}  // namespace KTX::TIM

#endif  // KTX_TIM_TIMESIGNALS_H
