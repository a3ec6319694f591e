#ifndef KTX_TIM_TIMEZONEINFORMATION_H
#define KTX_TIM_TIMEZONEINFORMATION_H

#include <cstdint>

#include "support/KTX_TIM_SystemTimeRecord.h"

namespace KTX::TIM {

/// The layout of TIME_ZONE_INFORMATION: biases in minutes, names that may lack a terminator.
struct TimeZoneInformationC {
  std::int32_t bias;
  char16_t standardName[32];
  SystemTimeRecordC standardDate;
  std::int32_t standardBias;
  char16_t daylightName[32];
  SystemTimeRecordC daylightDate;
  std::int32_t daylightBias;
};
static_assert(sizeof(TimeZoneInformationC) == 172);

}  // namespace KTX::TIM

#endif  // KTX_TIM_TIMEZONEINFORMATION_H
