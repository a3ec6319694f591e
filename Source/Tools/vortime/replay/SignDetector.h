#ifndef KTX_VORTIME_SIGNDETECTOR_H
#define KTX_VORTIME_SIGNDETECTOR_H

#include <cstdint>

#include "readers/LeapStatement.h"

namespace KTX::VORTIME {

/// Looks for signs that a receiver's time or leap second statement is wrong.
class SignDetectorC {
 public:
  /// The largest step of an observation against the one before that is no sign.
  static constexpr std::int64_t MAX_STEP_MS = 2000;

  /// A date near which the receiver's times must lie, as milliseconds since 1970-01-01.
  void setReferenceDate(std::int64_t unixMs);

  /// Signs of a time that arrived at steadyMs. hasHostTime: hostUnixMs is the time that the PC's
  /// calendar clock itself has.
  std::uint32_t signsOfTime(std::int64_t unixMs,
                            std::int64_t steadyMs,
                            bool hasHostTime,
                            std::int64_t hostUnixMs) const;

  /// Tells that this time was used: the next is measured against it.
  void useTime(std::int64_t unixMs, std::int64_t steadyMs);

  /// Tells that the next time need not continue the last one.
  void expectStep() { hasLast = false; }

  /// Signs of a statement when the library counts countInForce now.
  static std::uint32_t signsOfLeap(LeapStatementC const& leap, std::int32_t countInForce);

 private:
  bool hasReference = false;
  std::int64_t referenceUnixMs = 0;
  bool hasLast = false;
  std::int64_t lastUnixMs = 0;
  std::int64_t lastSteadyMs = 0;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_SIGNDETECTOR_H
