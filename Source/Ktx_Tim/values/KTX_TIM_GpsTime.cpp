#include "KTX/TIM/KTX_TIM_GpsTime.h"

#include <ostream>

#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "values/KTX_TIM_CalendarFields.h"
#include "values/KTX_TIM_CalendarSplit.h"
#include "values/KTX_TIM_DayNumber.h"
#include "values/KTX_TIM_TextBuffer.h"
#include "values/KTX_TIM_WeekText.h"

namespace KTX::TIM {

GpsTimeC::GpsTimeC() : timeBase(TIMEBASE_GPS) {}

GpsTimeC::GpsTimeC(GPSTimeC const& time) : GpsC(time), timeBase(TIMEBASE_GPS) {}

GpsTimeC::GpsTimeC(GpsTimeC const& other) = default;

GpsTimeC::GpsTimeC(MjdTimeC const& time)
    : GpsC(gpsTimeOf(time.getDayNumber())), timeBase(time.getTimeBase()) {}

GpsTimeC::GpsTimeC(YmdhmsC const& time) : timeBase(time.timeBase) {
  WeekTimeC const joined = joinWeekTime(fieldsOf(time));
  setRaw(joined.week, joined.msOfWeek);
}

GpsTimeC::~GpsTimeC() = default;

GpsTimeC& GpsTimeC::operator=(GpsTimeC const& other) = default;

GpsTimeC& GpsTimeC::operator=(GPSTimeC const& time) {
  // The provider stays, unlike in GpsC; both are meant.
  GPSTimeC::operator=(time);
  timeBase = TIMEBASE_GPS;
  return *this;
}

std::ostream& operator<<(std::ostream& stream, GpsTimeC const& time) {
  TextBufferC text;
  appendWeek(text, time);
  text.append(" base: ");
  text.append(timeBaseToString(time.getTimeBase()));
  return text.insertInto(stream);
}

}  // namespace KTX::TIM
