#include "replay/SignDetector.h"

#include <cstdlib>

#include "KTX/TIM/KTX_TIM_GpsTimeValue.h"
#include "KTX/TIM/KTX_TIM_TimeConstants.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "readers/Sign.h"

namespace KTX::VORTIME {
namespace {

constexpr std::int64_t MS_PER_DAY = 86400000;
constexpr std::int64_t ROLLOVER_MS = std::int64_t{1024} * 7 * MS_PER_DAY;
constexpr std::int32_t WEEKS_OF_EIGHT_BITS = 256;

// The PC's clock, the time before, and a date given by hand tell ever less exactly.
constexpr std::int64_t HOST_TOLERANCE_MS = 7 * MS_PER_DAY;
constexpr std::int64_t LAST_TOLERANCE_MS = MS_PER_DAY;
constexpr std::int64_t REFERENCE_TOLERANCE_MS = 180 * MS_PER_DAY;

bool isRolledOver(std::int64_t unixMs, std::int64_t expectedUnixMs, std::int64_t toleranceMs) {
  std::int64_t const difference = std::llabs(unixMs - expectedUnixMs);
  std::int64_t const rollovers = (difference + ROLLOVER_MS / 2) / ROLLOVER_MS;
  return rollovers > 0 && std::llabs(difference - rollovers * ROLLOVER_MS) <= toleranceMs;
}

// The month whose last day it is; 0 for a day within a month.
int monthEndingWith(std::int32_t week, std::int32_t day) {
  if (week < 0 || week > 65534 || day < 1 || day > 7) {
    return 0;
  }
  TIM::YmdhmsC const next(TIM::GPSTimeC(static_cast<std::uint16_t>(week),
                                        static_cast<std::uint32_t>(day) * TIM::MS_PER_DAY));
  if (next.day != 1) {
    return 0;
  }
  return next.month == 1 ? 12 : next.month - 1;
}

bool isOffBy256Weeks(std::int32_t week, std::int32_t day) {
  for (std::int32_t k = -8; k <= 8; ++k) {
    int const month = monthEndingWith(week + k * WEEKS_OF_EIGHT_BITS, day);
    if (k != 0 && (month == 6 || month == 12)) {
      return true;
    }
  }
  return false;
}

}  // namespace

void SignDetectorC::setReferenceDate(std::int64_t unixMs) {
  hasReference = true;
  referenceUnixMs = unixMs;
}

std::uint32_t SignDetectorC::signsOfTime(std::int64_t unixMs,
                                         std::int64_t steadyMs,
                                         bool hasHostTime,
                                         std::int64_t hostUnixMs) const {
  std::uint32_t signs = SIGN_NONE;
  std::int64_t const expectedUnixMs = lastUnixMs + (steadyMs - lastSteadyMs);
  if ((hasHostTime && isRolledOver(unixMs, hostUnixMs, HOST_TOLERANCE_MS)) ||
      (hasReference && isRolledOver(unixMs, referenceUnixMs, REFERENCE_TOLERANCE_MS)) ||
      (hasLast && isRolledOver(unixMs, expectedUnixMs, LAST_TOLERANCE_MS))) {
    signs |= SIGN_WEEK_ROLLOVER;
  }
  if (hasLast && std::llabs(unixMs - expectedUnixMs) > MAX_STEP_MS) {
    signs |= SIGN_TIME_STEP;
  }
  return signs;
}

void SignDetectorC::useTime(std::int64_t unixMs, std::int64_t steadyMs) {
  hasLast = true;
  lastUnixMs = unixMs;
  lastSteadyMs = steadyMs;
}

std::uint32_t SignDetectorC::signsOfLeap(LeapStatementC const& leap, std::int32_t countInForce) {
  std::uint32_t signs = SIGN_NONE;
  if (leap.current != countInForce && (!leap.hasEffectivity || leap.future != countInForce)) {
    signs |= SIGN_LEAP_COUNT;
  }
  if (leap.hasEffectivity && monthEndingWith(leap.week, leap.day) == 0) {
    signs |= SIGN_LEAP_DAY;
    if (isOffBy256Weeks(leap.week, leap.day)) {
      signs |= SIGN_LEAP_WEEK;
    }
  }
  return signs;
}

}  // namespace KTX::VORTIME
