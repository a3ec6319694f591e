#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "leapseconds/KTX_TIM_LeapSecondEffectivity.h"

namespace KTX::TIM {

std::uint32_t setUtcLeapSecond(std::int16_t current,
                               std::int16_t future,
                               std::uint16_t week,
                               std::uint8_t day,
                               LeapSecondSource source) {
  return setUtcLeapSecond({source, current, future, week, day, week != 0 || day != 0}, true);
}

std::uint32_t setUtcLeapSecond(std::int16_t current,
                               std::int16_t future,
                               GPSTimeC const& firstDay,
                               LeapSecondSource source) {
  UtcLeapSecondRecord record{source, current, future, 0, 0, true};
  setEffectivityDayBefore(record, firstDay);
  return setUtcLeapSecond(record, true);
}

std::uint32_t setUtcLeapSecond(std::int16_t count) {
  return setUtcLeapSecond(count, count, GPSTimeC(), LEAPSECOND_DEFAULT);
}

std::uint32_t getCurrentUtcLeapSecond(UtcLeapSecondRecord& record) {
  return getUtcLeapSecondAt(GpsC::currentTime(), record);
}

}  // namespace KTX::TIM
