#include "leapseconds/KTX_TIM_LeapSecondEffectivity.h"

namespace KTX::TIM {

GPSTimeC effectivityDayEnd(UtcLeapSecondRecord const& record) {
  return GPSTimeC(record.week, 0) + std::int64_t{record.day} * MS_PER_DAY;
}

GPSTimeC effectivityInstant(UtcLeapSecondRecord const& record) {
  return effectivityDayEnd(record).addSeconds(record.future);
}

void setEffectivityDayBefore(UtcLeapSecondRecord& record, GPSTimeC const& firstDay) {
  GPSTimeC const day = firstDay - std::int64_t{MS_PER_DAY};
  record.week = day.getWeek();
  record.day = static_cast<std::uint8_t>(day.getMsOfWeek() / MS_PER_DAY + 1);
  record.effectivityKnown = true;
}

}  // namespace KTX::TIM
