#ifndef KTX_VORTIME_RECORDTEXT_H
#define KTX_VORTIME_RECORDTEXT_H

#include <string>

#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"

namespace KTX::VORTIME {

/// A leap second statement for people, such as "GPS 17 s, 18 s after week 1929 day 7".
std::string recordText(TIM::UtcLeapSecondRecord const& record);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_RECORDTEXT_H
