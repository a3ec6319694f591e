#ifndef KTX_TIM_PRESENTWARNING_H
#define KTX_TIM_PRESENTWARNING_H

#include "KTX/TIM/KTX_TIM_Api.h"

namespace KTX::TIM {

/// Enables or disables the line "[KTX::TIM] Hoops wrong correction!" that the library prints on
/// standard output each time it computes the present from a mapping older than a day. Enabled when
/// the library is loaded; holds for the whole process, from the next computation on. The present
/// itself is the same either way. Any thread may call, also with the library-wide lock held; no
/// lock is taken. Never fails.
KTX_TIM_API void setPresentWarningEnabled(bool isEnabled);

}  // namespace KTX::TIM

#endif  // KTX_TIM_PRESENTWARNING_H
