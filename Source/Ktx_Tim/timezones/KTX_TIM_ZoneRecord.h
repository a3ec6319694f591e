#ifndef KTX_TIM_ZONERECORD_H
#define KTX_TIM_ZONERECORD_H

#include <cstdint>

#include "support/KTX_TIM_SystemTimeRecord.h"

namespace KTX::TIM {

/// The layout of the registry's zone record "TZI": biases in minutes. A date holds a yearly rule:
/// month, day of the week, which one of the month (5 is the last), and the local time before the
/// change; month 0 means that there is none.
struct ZoneRecordC {
  std::int32_t bias;
  std::int32_t standardBias;
  std::int32_t daylightBias;
  SystemTimeRecordC standardDate;
  SystemTimeRecordC daylightDate;
};
static_assert(sizeof(ZoneRecordC) == 44);

}  // namespace KTX::TIM

#endif  // KTX_TIM_ZONERECORD_H
