#ifndef KTX_RCV_WARNINGDETECTOR_H
#define KTX_RCV_WARNINGDETECTOR_H

#include <cstdint>

#include "KTX/RCV/KTX_RCV_Agreement.h"
#include "KTX/RCV/KTX_RCV_LeapStatement.h"

namespace KTX::RCV {

/// A time that a receiver states and when it arrived.
struct ArrivedTimeC {
  std::int64_t unixMs = 0;      ///< as stated, ms since 1970-01-01 UTC
  std::int64_t steadyMs = 0;    ///< the PC's steady clock at the arrival
  bool isHostKnown = false;     ///< hostUnixMs was read from the PC's calendar clock
  std::int64_t hostUnixMs = 0;  ///< ms since 1970-01-01 UTC
};

/// Looks for warnings that a receiver's time or leap second statement is wrong.
///
/// - time-step: more than the step limit away from where the last time led. A series of such times
///   that are left out but agree with one another for LASTING_STEP_MS becomes the new reference.
/// - burst: a time-step ahead that arrives at most BURST_GAP_MS after the message before, and whose
///   time is later than that one's by more than the step limit, but at most MAX_BURST_STEP_MS:
///   several messages waited and came at once. The last of them waited least, so that each becomes
///   the reference, also when it is left out; it waited too, so that the message after a burst may
///   be ahead by MAX_BURST_STEP_MS.
/// - week-rollover: a multiple of 1024 weeks away from the PC's calendar clock (to 7 days), from
///   the reference date (to 180 days), or, where neither confirms the time to the same tolerance,
///   from where the last time without this sign led (to a day). It never becomes the reference
///   while it is left out.
/// - leap-count, leap-day, leap-week: see warningsOfLeap().
class WarningDetectorC {
 public:
  static constexpr std::int64_t LASTING_STEP_MS = 10000;
  static constexpr std::int64_t BURST_GAP_MS = 100;
  static constexpr std::int64_t MAX_BURST_STEP_MS = 10000;

  explicit WarningDetectorC(std::int64_t stepLimitMs);

  /// A date near which the receiver's times must lie, as milliseconds since 1970-01-01.
  void setReferenceDate(std::int64_t unixMs);

  std::uint32_t warningsOfTime(ArrivedTimeC const& time) const;

  /// Tells that this time was used: the next is measured against it. warnings are its own.
  void useTime(ArrivedTimeC const& time, std::uint32_t warnings);

  /// Tells that this time was left out for its warnings.
  void leaveOutTime(ArrivedTimeC const& time, std::uint32_t warnings);

  /// Tells that the next time need not continue the last one.
  void expectStep();

  /// Signs of a statement when the library counts countInForce now: leap-count when neither the
  /// current nor the future count is that, leap-day when the day of the change ends no month, and
  /// leap-week when it then ends a June or December a multiple of 256 weeks, at most 8, away.
  static std::uint32_t warningsOfLeap(LeapStatementC const& leap, std::int32_t countInForce);

 private:
  /// A time to measure others against.
  struct ReferenceC {
    bool isKnown = false;
    std::int64_t unixMs = 0;
    std::int64_t steadyMs = 0;

    void set(ArrivedTimeC const& time);
    /// The time that this one leads to when steadyMs is reached.
    std::int64_t expectedAt(std::int64_t nowSteadyMs) const;
  };

  bool isRolledOver(ArrivedTimeC const& time) const;
  bool isBurst(ArrivedTimeC const& time) const;

  std::int64_t const stepLimit;
  bool hasDate = false;
  std::int64_t dateUnixMs = 0;
  ReferenceC last;  ///< the next time must continue this one
  bool hasLastWaited = false;
  ReferenceC previous;  ///< the message before, used or not
  ReferenceC unrolled;  ///< the last time without the sign of a rollover
  AgreementC contradiction;
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_WARNINGDETECTOR_H
