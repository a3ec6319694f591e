#ifndef KTX_RCV_SESSIONOPTIONS_H
#define KTX_RCV_SESSIONOPTIONS_H

#include <cstdint>
#include <optional>

namespace KTX::RCV {

/// How a session treats the messages of its receiver. A plain record.
struct SessionOptionsC {
  /// Above this difference, in ms, a time does not continue the one before: see WARNING_TIME_STEP.
  static constexpr std::int64_t DEFAULT_STEP_LIMIT_MS = 500;
  /// The standard deviation of observations that state no accuracy, in ms.
  static constexpr std::int64_t DEFAULT_NOISE_MS = 10;

  /// The standard deviation of all observations, whatever accuracy they state, in ms.
  std::optional<std::int64_t> noiseMs;
  bool isStrict = false;                             ///< messages with a warning are left out
  std::int64_t stepLimitMs = DEFAULT_STEP_LIMIT_MS;  ///< 0 or more
  /// The first message sets the leap second of its date, and times before 2017 are converted by the
  /// leap seconds of their own date: for recorded messages.
  bool usesLeapHistory = true;
  std::optional<std::int64_t> referenceUnixMs;  ///< about when the messages were recorded
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_SESSIONOPTIONS_H
