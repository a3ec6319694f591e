#include "values/KTX_TIM_DayNumber.h"

#include "values/KTX_TIM_WeekTime.h"

namespace KTX::TIM {

double dayNumberOf(GPSTimeC const& time) {
  return dayNumberOf(WeekTimeC{time.getWeek(), time.getMsOfWeek()});
}

GPSTimeC gpsTimeOf(double dayNumber) {
  WeekTimeC const time = weekTimeOf(dayNumber);
  return GPSTimeC(time.week, time.msOfWeek);
}

}  // namespace KTX::TIM
