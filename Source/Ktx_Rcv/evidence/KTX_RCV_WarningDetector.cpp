#include "evidence/KTX_RCV_WarningDetector.h"

#include <cstdlib>

#include "KTX/RCV/KTX_RCV_Warning.h"
#include "KTX/TIM/KTX_TIM_GpsTimeValue.h"
#include "KTX/TIM/KTX_TIM_TimeConstants.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"

namespace KTX::RCV {
namespace {

constexpr std::int64_t MS_PER_DAY = 86400000;
constexpr std::int64_t ROLLOVER_MS = std::int64_t{1024} * 7 * MS_PER_DAY;
constexpr std::int32_t WEEKS_OF_EIGHT_BITS = 256;

constexpr std::int64_t HOST_TOLERANCE_MS = 7 * MS_PER_DAY;
constexpr std::int64_t LAST_TOLERANCE_MS = MS_PER_DAY;
constexpr std::int64_t DATE_TOLERANCE_MS = 180 * MS_PER_DAY;

bool isFarBy1024Weeks(std::int64_t differenceMs, std::int64_t toleranceMs) {
  std::int64_t const size = std::llabs(differenceMs);
  std::int64_t const rollovers = (size + ROLLOVER_MS / 2) / ROLLOVER_MS;
  return rollovers > 0 && std::llabs(size - rollovers * ROLLOVER_MS) <= toleranceMs;
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

WarningDetectorC::WarningDetectorC(std::int64_t stepLimitMs)
    : stepLimit(stepLimitMs), contradiction(stepLimitMs) {}

void WarningDetectorC::ReferenceC::set(ArrivedTimeC const& time) {
  isKnown = true;
  unixMs = time.unixMs;
  steadyMs = time.steadyMs;
}

std::int64_t WarningDetectorC::ReferenceC::expectedAt(std::int64_t nowSteadyMs) const {
  return unixMs + (nowSteadyMs - steadyMs);
}

void WarningDetectorC::setReferenceDate(std::int64_t unixMs) {
  hasDate = true;
  dateUnixMs = unixMs;
}

std::uint32_t WarningDetectorC::warningsOfTime(ArrivedTimeC const& time) const {
  std::uint32_t warnings = WARNING_NONE;
  if (isRolledOver(time)) {
    warnings |= WARNING_WEEK_ROLLOVER;
  }
  std::int64_t const aheadMs = time.unixMs - last.expectedAt(time.steadyMs);
  if (!last.isKnown || std::llabs(aheadMs) <= stepLimit) {
    return warnings;
  }
  if (isBurst(time)) {
    warnings |= WARNING_TIME_STEP | WARNING_BURST;
  } else if (!hasLastWaited || aheadMs < 0 || aheadMs > MAX_BURST_STEP_MS) {
    warnings |= WARNING_TIME_STEP;
  }
  return warnings;
}

bool WarningDetectorC::isRolledOver(ArrivedTimeC const& time) const {
  std::int64_t const fromHostMs = time.unixMs - time.hostUnixMs;
  std::int64_t const fromDateMs = time.unixMs - dateUnixMs;
  if ((time.isHostKnown && isFarBy1024Weeks(fromHostMs, HOST_TOLERANCE_MS)) ||
      (hasDate && isFarBy1024Weeks(fromDateMs, DATE_TOLERANCE_MS))) {
    return true;
  }
  if ((time.isHostKnown && std::llabs(fromHostMs) <= HOST_TOLERANCE_MS) ||
      (hasDate && std::llabs(fromDateMs) <= DATE_TOLERANCE_MS)) {
    return false;
  }
  return unrolled.isKnown &&
         isFarBy1024Weeks(time.unixMs - unrolled.expectedAt(time.steadyMs), LAST_TOLERANCE_MS);
}

bool WarningDetectorC::isBurst(ArrivedTimeC const& time) const {
  std::int64_t const stepMs = time.unixMs - previous.unixMs;
  return previous.isKnown && time.steadyMs - previous.steadyMs <= BURST_GAP_MS &&
         stepMs > stepLimit && stepMs <= MAX_BURST_STEP_MS &&
         time.unixMs > last.expectedAt(time.steadyMs);
}

void WarningDetectorC::useTime(ArrivedTimeC const& time, std::uint32_t warnings) {
  last.set(time);
  hasLastWaited = (warnings & WARNING_BURST) != 0;
  previous.set(time);
  contradiction.clear();
  if ((warnings & WARNING_WEEK_ROLLOVER) == 0) {
    unrolled.set(time);
  }
}

void WarningDetectorC::leaveOutTime(ArrivedTimeC const& time, std::uint32_t warnings) {
  previous.set(time);
  if ((warnings & WARNING_TIME_STEP) == 0 || (warnings & WARNING_WEEK_ROLLOVER) != 0) {
    return;
  }
  contradiction.add(time.unixMs, time.steadyMs);
  if ((warnings & WARNING_BURST) != 0 || contradiction.durationMs() >= LASTING_STEP_MS) {
    last.set(time);
    hasLastWaited = (warnings & WARNING_BURST) != 0;
    contradiction.clear();
  }
}

void WarningDetectorC::expectStep() {
  last.isKnown = false;
  hasLastWaited = false;
  previous.isKnown = false;
  unrolled.isKnown = false;
  contradiction.clear();
}

std::uint32_t WarningDetectorC::warningsOfLeap(LeapStatementC const& leap,
                                               std::int32_t countInForce) {
  std::uint32_t warnings = WARNING_NONE;
  if (leap.current != countInForce && (!leap.hasEffectivity || leap.future != countInForce)) {
    warnings |= WARNING_LEAP_COUNT;
  }
  if (leap.hasEffectivity && monthEndingWith(leap.week, leap.day) == 0) {
    warnings |= WARNING_LEAP_DAY;
    if (isOffBy256Weeks(leap.week, leap.day)) {
      warnings |= WARNING_LEAP_WEEK;
    }
  }
  return warnings;
}

}  // namespace KTX::RCV
