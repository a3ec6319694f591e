#ifndef KTX_TIM_TIMELOCK_H
#define KTX_TIM_TIMELOCK_H

#include "KTX/TIM/KTX_TIM_Api.h"
#include "KTX/TIM/KTX_TIM_Lock.h"

namespace KTX::TIM {

/// The library-wide lock, recursive, which serialises every change of time state.
///
/// Order: this lock first, then an object's own lock, never the other way round; and nothing is
/// called out of the library while a provider's own lock is held.
KTX_TIM_API Lock& getTimeLock();

/// The same lock under its second name.
KTX_TIM_API Lock& getGlobalLock();

}  // namespace KTX::TIM

#endif  // KTX_TIM_TIMELOCK_H
