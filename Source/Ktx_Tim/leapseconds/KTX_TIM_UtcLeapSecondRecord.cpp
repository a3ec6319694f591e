#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"

namespace KTX::TIM {

bool operator==(UtcLeapSecondRecord const& a, UtcLeapSecondRecord const& b) {
  return a.source == b.source && a.current == b.current && a.future == b.future &&
         a.week == b.week && a.day == b.day && a.effectivityKnown == b.effectivityKnown;
}

bool operator!=(UtcLeapSecondRecord const& a, UtcLeapSecondRecord const& b) {
  return !(a == b);
}

UtcLeapSecondRecord defaultLeapSecondRecord() {
  return {LEAPSECOND_DEFAULT, 18, 18, 1929, 7, true};
}

UtcLeapSecondRecord withdrawForcedRecord() {
  return {LEAPSECOND_FORCED, 0, 0, 0, 1, true};
}

}  // namespace KTX::TIM
