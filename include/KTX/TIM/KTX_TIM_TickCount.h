#ifndef KTX_TIM_TICKCOUNT_H
#define KTX_TIM_TICKCOUNT_H

#include <cstdint>

#include "KTX/TIM/KTX_TIM_Api.h"

namespace KTX::TIM {

/// Milliseconds of a steady clock with an arbitrary zero, cut to 32 bits: wraps after 2^32 ms,
/// about 49.7 days. Any thread may call.
KTX_TIM_API std::uint32_t getTickCountMs();

}  // namespace KTX::TIM

#endif  // KTX_TIM_TICKCOUNT_H
