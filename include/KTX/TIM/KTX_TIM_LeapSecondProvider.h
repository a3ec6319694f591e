#ifndef KTX_TIM_LEAPSECONDPROVIDER_H
#define KTX_TIM_LEAPSECONDPROVIDER_H

#include <cstdint>

#include "KTX/TIM/KTX_TIM_Api.h"

namespace KTX::TIM {

class GpsC;
struct UtcLeapSecondRecord;

/// Gives the leap seconds in force at an instant. Every time value holds a pointer to one; an
/// implementation must be callable from any thread and outlive the values that point to it.
class LeapSecondProviderI {
 public:
  virtual ~LeapSecondProviderI() = default;

  /// Fills record with the statement in force; record.current is the count to use at time.
  /// effectivity, where not null, receives the instant at which the future count begins; it means
  /// nothing while record.effectivityKnown is false (the store then gives week 0, 0 ms, a site
  /// value the future count as seconds of week 0). Returns 0 on success. GpsC::gpsToUtc() and
  /// GpsC::utcToGps() report any other result as an assertion and leave the value as it was;
  /// GpsC::getLeapSeconds() ignores it. Callers preset the record with the default one.
  virtual std::uint32_t getLeapSecond(GpsC const& time,
                                      UtcLeapSecondRecord& record,
                                      GpsC* effectivity = nullptr) = 0;
};

/// The process-wide leap second store, which answers for every value that names no provider.
/// Never null; it lives as long as the library is loaded.
KTX_TIM_API LeapSecondProviderI* getDefaultLeapSecondProvider();

}  // namespace KTX::TIM

#endif  // KTX_TIM_LEAPSECONDPROVIDER_H
