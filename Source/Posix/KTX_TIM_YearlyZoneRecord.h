#ifndef KTX_TIM_YEARLYZONERECORD_H
#define KTX_TIM_YEARLYZONERECORD_H

#include <cstdint>

#include "Posix/KTX_TIM_ZoneData.h"
#include "timezones/KTX_TIM_ZoneRecord.h"

namespace KTX::TIM {

/// The registry's record of a zone for one year.
///
/// Daylight time is the offset further east of the two. The form holds one stretch of the year at
/// one offset and the rest at another; a year with more gets the form that is right longest.
ZoneRecordC yearlyZoneRecord(ZoneDataC const& zone, std::int64_t year);

/// The record of a zone that stays at one offset.
ZoneRecordC fixedZoneRecord(std::int32_t secondsEast);

/// The moment at which the zone's clocks come to the year, in seconds since 1970-01-01.
std::int64_t localStartOfYear(ZoneDataC const& zone, std::int64_t year);

/// The offset in whole minutes, the nearest.
std::int32_t wholeMinutes(std::int32_t seconds);

}  // namespace KTX::TIM

#endif  // KTX_TIM_YEARLYZONERECORD_H
