#ifndef KTX_TIM_PRESENT_H
#define KTX_TIM_PRESENT_H

#include "KTX/TIM/KTX_TIM_MjdTime.h"

namespace KTX::TIM {

class SysTimeOffsetT;

/// The present in UTC by the filter's mapping and steady clock. Warns on standard output when the
/// mapping was last set more than a day ago. The caller holds the library-wide lock.
MjdTimeC presentUtc(SysTimeOffsetT const& offset);

}  // namespace KTX::TIM

#endif  // KTX_TIM_PRESENT_H
