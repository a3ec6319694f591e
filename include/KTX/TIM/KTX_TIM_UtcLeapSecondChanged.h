#ifndef KTX_TIM_UTCLEAPSECONDCHANGED_H
#define KTX_TIM_UTCLEAPSECONDCHANGED_H

#include <boost/shared_ptr.hpp>
#include <boost/signals2/connection.hpp>
#include <boost/signals2/slot.hpp>

#include "KTX/TIM/KTX_TIM_Api.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"

namespace KTX::TIM {

/// A change of the leap second in force, shared by all listeners, which must not modify it.
struct UtcLeapSecondChanged {
  UtcLeapSecondRecord previous;  ///< in force before the change
  UtcLeapSecondRecord current;   ///< in force after it
};

/// A listener of leap second changes.
using UtcLeapSecondChangedSlot =
    boost::signals2::slot<void(boost::shared_ptr<UtcLeapSecondChanged> const&)>;

/// Connects a listener to changes of the leap second in force. It runs on the thread that set
/// the new value, with the library-wide lock and the store's lock held: it must not set a leap
/// second, nor wait for another thread that reads a leap second or the present, converts a time,
/// or makes an observation, for that thread waits for these locks. Any thread may connect and
/// disconnect.
KTX_TIM_API boost::signals2::connection connectUtcLeapSecondChanged(
    UtcLeapSecondChangedSlot const& slot);

}  // namespace KTX::TIM

#endif  // KTX_TIM_UTCLEAPSECONDCHANGED_H
