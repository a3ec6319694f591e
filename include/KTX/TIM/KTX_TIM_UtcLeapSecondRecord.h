#ifndef KTX_TIM_UTCLEAPSECONDRECORD_H
#define KTX_TIM_UTCLEAPSECONDRECORD_H

#include <cstdint>

#include "KTX/TIM/KTX_TIM_Api.h"
#include "KTX/TIM/KTX_TIM_LeapSecondSource.h"

namespace KTX::TIM {

/// One leap second statement: the count in force, the announced count, and the day at whose end
/// the change takes effect. Counts are GPS minus UTC in whole seconds.
struct UtcLeapSecondRecord {
  LeapSecondSource source;  ///< where the statement comes from
  std::int16_t current;     ///< count before the announced change, s
  std::int16_t future;      ///< count after it, s; equal to current when none is announced, and 0
                            ///< where a setter stored a record whose effectivity is not known
  std::uint16_t week;       ///< full GPS week of the effectivity day
  std::uint8_t day;         ///< day of that week, 1 (Sunday) to 7; the change is at its end
  bool effectivityKnown;    ///< week and day mean something
};

/// True when all six fields are equal.
KTX_TIM_API bool operator==(UtcLeapSecondRecord const& a, UtcLeapSecondRecord const& b);
/// True when one of the six fields differs.
KTX_TIM_API bool operator!=(UtcLeapSecondRecord const& a, UtcLeapSecondRecord const& b);

/// The record compiled into the library: 18 s since the end of 2016-12-31, week 1929 day 7
/// (IERS Bulletin C 52).
KTX_TIM_API UtcLeapSecondRecord defaultLeapSecondRecord();

/// The record that withdraws the forced value in force when it is set: Forced, counts 0, week 0,
/// day 1, known. A forced record of all zeros is an ordinary, invalid one.
KTX_TIM_API UtcLeapSecondRecord withdrawForcedRecord();

}  // namespace KTX::TIM

#endif  // KTX_TIM_UTCLEAPSECONDRECORD_H
