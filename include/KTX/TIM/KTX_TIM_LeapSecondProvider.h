#ifndef KTX_TIM_LEAPSECONDPROVIDER_H
#define KTX_TIM_LEAPSECONDPROVIDER_H

#include <cstdint>

#include "KTX/TIM/KTX_TIM_Api.h"

namespace KTX::TIM {

class GpsC;
struct UtcLeapSecondRecord;

/// Tells the leap seconds in force at an instant. Every time value holds a pointer to one; an
/// implementation must be callable from any thread and outlive the values that point to it.
class LeapSecondProviderI {
 public:
  virtual ~LeapSecondProviderI() = default;

  /// Fills record with the statement in force; record.current is the count to use at time.
  /// effectivity, where not null, receives the instant at which the future count begins.
  /// Returns 0 on success. Callers preset the record with the default one.
  virtual std::uint32_t getLeapSecond(GpsC const& time,
                                      UtcLeapSecondRecord& record,
                                      GpsC* effectivity = nullptr) = 0;
};

/// The process-wide leap second store, which answers for every value that names no provider.
/// Never null; it lives as long as the library is loaded.
KTX_TIM_API LeapSecondProviderI* getDefaultLeapSecondProvider();

}  // namespace KTX::TIM

#endif  // KTX_TIM_LEAPSECONDPROVIDER_H
