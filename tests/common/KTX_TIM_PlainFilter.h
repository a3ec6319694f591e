#ifndef KTX_TIM_PLAINFILTER_H
#define KTX_TIM_PLAINFILTER_H

#include <cmath>
#include <cstdint>

namespace KTX::TIM::TEST {

/// The estimator and the offset filter a second time, written as one straight piece of arithmetic.
/// Times are Modified Julian Dates of UTC, clocks count milliseconds.
struct PlainFilterC {
  double state = 0.0;
  double variance = 0.0;
  std::uint64_t stateClock = 0;
  double mapping = 0.0;
  std::uint64_t mappingClock = 0;

  void seed(double mjd, std::int64_t clockMs) {
    double const sigma = 5000.0 / 8.64e7;
    state = mjd;
    variance = sigma * sigma;
    stateClock = static_cast<std::uint64_t>(clockMs);
    mapping = mjd;
    mappingClock = stateClock;
  }

  static double between(std::uint64_t later, std::uint64_t earlier) {
    return static_cast<double>(static_cast<std::int64_t>(later - earlier));
  }

  static std::int64_t truncated(double value) {
    if (!(value == value)) {
      return 0;
    }
    if (value >= 0x1p63) {
      return INT64_MAX;
    }
    return value <= -0x1p63 ? INT64_MIN : static_cast<std::int64_t>(value);
  }

  void predict(std::uint64_t clock) {
    double const days = between(clock, stateClock) / 8.64e7;
    double const drift = 5000.0 * days / 8.64e7;
    state = state + days;
    variance = variance + drift * drift;
    stateClock = clock;
  }

  /// True when the mapping moved; differenceMs receives how far the estimate was ahead of it.
  bool observe(double mjd, std::int64_t noiseMs, std::int64_t clockMs, std::int64_t& differenceMs) {
    auto const clock = static_cast<std::uint64_t>(clockMs);
    double sigma = static_cast<double>(noiseMs) / 8.64e7;
    predict(clock);
    auto const residual = static_cast<double>(truncated(0.0 + mjd * 8.64e7 - state * 8.64e7));
    if (std::fabs(residual) > sigma * 300.0 * 8.64e7) {
      sigma = 0.0;
    }
    predict(clock);
    double const gain = 1.0 / (variance * 1.0 + sigma * sigma) * variance;
    state = state + (mjd - 1.0 * state) * gain;
    variance = variance - gain * 1.0 * variance;
    double const least = (20.0 / 8.64e7) * (20.0 / 8.64e7);
    if (least > variance) {
      variance = least;
    }
    differenceMs = truncated(between(mappingClock, clock) + state * 8.64e7 - mapping * 8.64e7);
    double const change = std::fabs(static_cast<double>(differenceMs));
    if (!(change / 8.64e7 * 8.64e7 > 51.0) || std::sqrt(variance) * 8.64e7 > 55.0) {
      return false;
    }
    mapping = state;
    mappingClock = clock;
    return true;
  }

  double present(std::int64_t clockMs) const {
    return mapping + between(static_cast<std::uint64_t>(clockMs), mappingClock) / 8.64e7;
  }
};

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_PLAINFILTER_H
