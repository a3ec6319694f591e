#ifndef KTX_TIM_LEAPSECONDSLOTS_H
#define KTX_TIM_LEAPSECONDSLOTS_H

#include <cstdint>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "leapseconds/KTX_TIM_LeapSecondRules.h"

namespace KTX::TIM {

struct LeapSecondSettingC;

/// What is known of the leap second: the normal slot, fed by satellites and the default, the forced
/// slot, in force only while its source is Forced, and the effectivity instant of the record in
/// force. A plain value without a lock; its operations log nothing and read no clock.
class LeapSecondSlotsC {
 public:
  /// Both slots hold the default record. The effectivity instant refers to provider.
  explicit LeapSecondSlotsC(LeapSecondProviderI* provider);

  UtcLeapSecondRecord const& inForce() const {
    return forced.source == LEAPSECOND_FORCED ? forced : normal;
  }
  UtcLeapSecondRecord const& normalSlot() const { return normal; }
  /// The slot that record is meant for.
  UtcLeapSecondRecord const& slotOf(UtcLeapSecondRecord const& record) const {
    return record.source == LEAPSECOND_FORCED ? forced : normal;
  }
  /// Week 0 and 0 ms while the record in force has no known effectivity.
  GpsC const& effectivity() const { return effectiveFrom; }
  /// Whether the announced count of the record in force holds at time.
  bool isFutureInForce(GPSTimeC const& time) const { return orderOf(time) >= futureFrom; }

  /// These slots with record, which must be valid, by the acceptance rule; present is asked only
  /// where the rule needs it.
  LeapSecondSettingC set(UtcLeapSecondRecord const& record, PresentT const& present) const;

  /// These slots with record as the normal one, without the rule. Null keeps the count and clears
  /// the rest.
  LeapSecondSettingC reset(UtcLeapSecondRecord const* record) const;

 private:
  /// A number that orders instants by week first, then by milliseconds, also where the
  /// milliseconds are not normalised.
  static std::uint64_t orderOf(GPSTimeC const& time) {
    return std::uint64_t{time.getWeek()} << 32U | time.getMsOfWeek();
  }

  void updateEffectivity(LeapSecondAssertionsT& assertions);

  GpsC effectiveFrom;
  UtcLeapSecondRecord normal;
  UtcLeapSecondRecord forced;
  std::uint64_t futureFrom;  ///< the effectivity instant by orderOf(), or later than every instant
};

/// What came of a record given to the slots.
struct LeapSecondSettingC {
  LeapSecondSlotsC slots;  ///< the same as before unless accepted
  LeapSecondVerdictE verdict = LEAPSECOND_ACCEPT;
  LeapSecondAssertionsT assertions;  ///< for the caller to log, in this order
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_LEAPSECONDSLOTS_H
