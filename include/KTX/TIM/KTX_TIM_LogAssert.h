#ifndef KTX_TIM_LOGASSERT_H
#define KTX_TIM_LOGASSERT_H

#include "KTX/TIM/KTX_TIM_Api.h"

namespace KTX::TIM {

/// Reports a state that cannot occur as one line on the channel "KTX_TIM_AssertLogger"; execution
/// goes on. Any thread may call.
KTX_TIM_API void logAssertion();
/// As logAssertion(), with a text, which may hold any character; null is as no text.
KTX_TIM_API void logAssertion(char const* text);

}  // namespace KTX::TIM

#endif  // KTX_TIM_LOGASSERT_H
