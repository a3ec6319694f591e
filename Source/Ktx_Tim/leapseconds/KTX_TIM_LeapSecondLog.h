#ifndef KTX_TIM_LEAPSECONDLOG_H
#define KTX_TIM_LEAPSECONDLOG_H

#include <cstdint>

#include "KTX/TIM/KTX_TIM_GpsTimeValue.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "leapseconds/KTX_TIM_LeapSecondRules.h"

namespace KTX::TIM {

// The lines of the leap second store. The lines of level 3 are for a caller that has asked
// isLeapSecondTraced().

bool isLeapSecondTraced();

void logLeapSecondAssertions(LeapSecondAssertionsT const& assertions);
void logNotAccepted(UtcLeapSecondRecord const& incoming, UtcLeapSecondRecord const& held);
void logResetRefused(UtcLeapSecondRecord const& record);

void logSetting(UtcLeapSecondRecord const& record, GPSTimeC const& now);
void logSettingResult(std::uint32_t result);
void logChanged(UtcLeapSecondRecord const& record);
void logNotChanged();
void logReset(UtcLeapSecondRecord const& record);
void logCarryOver(GPSTimeC const& now);

}  // namespace KTX::TIM

#endif  // KTX_TIM_LEAPSECONDLOG_H
