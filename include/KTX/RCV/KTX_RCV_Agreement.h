#ifndef KTX_RCV_AGREEMENT_H
#define KTX_RCV_AGREEMENT_H

#include <cstdint>

#include "KTX/RCV/KTX_RCV_Api.h"

namespace KTX::RCV {

/// How long the times of a receiver have agreed with one another, by the PC's steady clock.
class KTX_RCV_API AgreementC {
 public:
  /// Times agree when none differs from another by more than limitMs, the time between them taken
  /// off.
  explicit AgreementC(std::int64_t limitMs);

  /// Adds a time (ms since 1970-01-01 UTC) that arrived at steadyMs. One that does not agree with
  /// those before begins anew.
  void add(std::int64_t unixMs, std::int64_t steadyMs);
  /// The next time begins anew.
  void clear() { isEmpty = true; }

  /// From the first to the last of the times that agree; 0 for none or one.
  std::int64_t durationMs() const { return isEmpty ? 0 : lastSteadyMs - firstSteadyMs; }

 private:
  std::int64_t const limit;
  bool isEmpty = true;
  std::int64_t leastOffsetMs = 0;  ///< of the times, minus the steady clock
  std::int64_t greatestOffsetMs = 0;
  std::int64_t firstSteadyMs = 0;
  std::int64_t lastSteadyMs = 0;
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_AGREEMENT_H
