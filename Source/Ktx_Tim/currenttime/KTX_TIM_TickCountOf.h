#ifndef KTX_TIM_TICKCOUNTOF_H
#define KTX_TIM_TICKCOUNTOF_H

#include <cstdint>

#include "KTX/TIM/KTX_TIM_Clock.h"

namespace KTX::TIM {

/// The clock's reading, cut to its low 32 bits.
std::uint32_t tickCountOf(ClockI<boost::milli> const& clock);

}  // namespace KTX::TIM

#endif  // KTX_TIM_TICKCOUNTOF_H
