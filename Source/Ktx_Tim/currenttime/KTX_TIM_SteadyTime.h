#ifndef KTX_TIM_STEADYTIME_H
#define KTX_TIM_STEADYTIME_H

#include <cstdint>

namespace KTX::TIM {

/// States that at a reading of the steady millisecond clock the time was mjd.
struct SteadyTimeC {
  double mjd = 0.0;           ///< Modified Julian Date in days
  std::int64_t steadyMs = 0;  ///< the clock's reading at that instant
};

/// A time with its uncertainty: an observation with its noise, or an estimate.
struct TimeEstimateC {
  SteadyTimeC time;
  double sigma = 0.0;  ///< standard deviation in days
};

/// Milliseconds in a day; every day count is turned into milliseconds with it.
constexpr double DAY_MS = 8.64e7;

/// Milliseconds from the reading earlier to the reading later. Readings of any clock may be
/// given: the difference wraps.
constexpr std::int64_t elapsedMs(std::int64_t later, std::int64_t earlier) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(later) -
                                   static_cast<std::uint64_t>(earlier));
}

/// How far the offset (time minus steady reading) of a is ahead of that of b, in milliseconds,
/// truncated. The order of this sum decides single milliseconds.
std::int64_t offsetDifferenceMs(SteadyTimeC const& a, SteadyTimeC const& b);

}  // namespace KTX::TIM

#endif  // KTX_TIM_STEADYTIME_H
