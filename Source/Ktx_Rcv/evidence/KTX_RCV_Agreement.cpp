#include "KTX/RCV/KTX_RCV_Agreement.h"

#include <algorithm>

namespace KTX::RCV {

AgreementC::AgreementC(std::int64_t limitMs) : limit(limitMs) {}

void AgreementC::add(std::int64_t unixMs, std::int64_t steadyMs) {
  std::int64_t const offsetMs = unixMs - steadyMs;
  std::int64_t const least = std::min(leastOffsetMs, offsetMs);
  std::int64_t const greatest = std::max(greatestOffsetMs, offsetMs);
  lastSteadyMs = steadyMs;
  if (isEmpty || greatest - least > limit) {
    isEmpty = false;
    leastOffsetMs = offsetMs;
    greatestOffsetMs = offsetMs;
    firstSteadyMs = steadyMs;
    return;
  }
  leastOffsetMs = least;
  greatestOffsetMs = greatest;
}

}  // namespace KTX::RCV
