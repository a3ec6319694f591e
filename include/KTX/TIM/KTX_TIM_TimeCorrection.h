#ifndef KTX_TIM_TIMECORRECTION_H
#define KTX_TIM_TIMECORRECTION_H

#include <boost/chrono/duration.hpp>
#include <boost/ratio/ratio.hpp>
#include <boost/signals2/connection.hpp>
#include <boost/signals2/slot.hpp>

#include "KTX/TIM/KTX_TIM_Api.h"

namespace KTX::TIM {

/// The size of a correction in milliseconds. On 64-bit Linux this is another type than
/// boost::chrono::milliseconds.
using TimeChangeT = boost::chrono::duration<long long, boost::milli>;

/// A listener of corrections: GPS week, milliseconds of week of the corrected present, change.
using TimeCorrectedSlot =
    boost::signals2::slot<void(int week, int millisecondsOfWeek, TimeChangeT change)>;
/// A listener of time signals: GPS week, milliseconds of week.
using TimeSignalSlot = boost::signals2::slot<void(int week, int millisecondsOfWeek)>;

/// Connects a listener to released corrections. A change above 0 moved the present ahead, one below
/// 0 moved it back. A corrected present of week 0, 0 ms is not announced.
///
/// It runs on the thread that delivered the observation, after that step released the library-wide
/// lock, and may call back into the library. A caller that holds the lock itself still holds it
/// then. What a listener throws reaches that thread with the correction in force, and listeners
/// after it are not called.
///
/// A leap second setter with makeCurrent carries the present over as an observation: the listener
/// then runs inside the setter, with the library-wide lock and the store's lock held. There it must
/// not set a leap second, for the events of the two changes would come in the wrong order, nor wait
/// for another thread that uses the library. The numbers do not show where the call comes from: a
/// listener that sets leap seconds must leave that to another thread.
KTX_TIM_API boost::signals2::connection connectTimeCorrected(TimeCorrectedSlot const& slot);
/// Connects a listener to the time signal. It runs on the thread that emits the signal, with no
/// lock of the library held by it, and what it throws reaches that thread; listeners after it are
/// not called.
KTX_TIM_API boost::signals2::connection connectTimeSignal(TimeSignalSlot const& slot);

}  // namespace KTX::TIM

#endif  // KTX_TIM_TIMECORRECTION_H
