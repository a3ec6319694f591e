#ifndef KTX_TIM_TIMECONSTANTS_H
#define KTX_TIM_TIMECONSTANTS_H

#include <cstdint>

namespace KTX::TIM {

/// Milliseconds in one GPS week; the milliseconds of week stay below it.
constexpr std::uint32_t MS_PER_WEEK = 604800000;
/// Seconds in one GPS week.
constexpr std::uint32_t SECONDS_PER_WEEK = 604800;
/// Milliseconds in one day.
constexpr std::uint32_t MS_PER_DAY = 86400000;
/// Modified Julian Date of the GPS epoch, 1980-01-06 00:00 (IS-GPS-200, 3.3.4).
constexpr std::int32_t GPS_EPOCH_MJD = 44244;

}  // namespace KTX::TIM

#endif  // KTX_TIM_TIMECONSTANTS_H
