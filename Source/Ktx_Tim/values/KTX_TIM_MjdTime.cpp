#include "KTX/TIM/KTX_TIM_MjdTime.h"

#include <algorithm>
#include <limits>

#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_TimeZone.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "support/KTX_TIM_Numeric.h"
#include "values/KTX_TIM_CalendarFields.h"
#include "values/KTX_TIM_CalendarSplit.h"
#include "values/KTX_TIM_DayNumber.h"

namespace KTX::TIM {
namespace {

double gpsToUtcDayNumber(double dayNumber) {
  GpsC time(gpsTimeOf(dayNumber));
  time.gpsToUtc();
  return dayNumberOf(time);
}

double utcToGpsDayNumber(double dayNumber) {
  GpsC time(gpsTimeOf(dayNumber));
  time.utcToGps();
  return dayNumberOf(time);
}

double localToUtcDayNumber(double dayNumber) {
  GpsC time(gpsTimeOf(dayNumber));
  std::int64_t const offsetMinutes = getTimeZoneInstance().getUtcOffset(time);
  time -= offsetMinutes * 60000;
  return dayNumberOf(time);
}

double offsetDays(MjdTimeC const& time) {
  std::int16_t const offsetMinutes = getTimeZoneInstance().getUtcOffset(time);
  return offsetMinutes / 1440.0;
}

double numberInBase(MjdTimeC time, TimeBaseE base) {
  time.convertTo(base);
  return time.getDayNumber();
}

}  // namespace

MjdTimeC::MjdTimeC(double newDayNumber, TimeBaseE newTimeBase)
    : dayNumber(newDayNumber), timeBase(newTimeBase) {}

MjdTimeC::MjdTimeC(GPSTimeC const& time) : dayNumber(dayNumberOf(time)), timeBase(TIMEBASE_GPS) {}

MjdTimeC::MjdTimeC(GpsTimeC const& time)
    : dayNumber(dayNumberOf(time)), timeBase(time.getTimeBase()) {}

MjdTimeC::MjdTimeC(YmdhmsC const& time)
    : dayNumber(joinDayNumber(fieldsOf(time))), timeBase(time.timeBase) {}

MjdTimeC::MjdTimeC(std::uint16_t fatTime, std::uint16_t fatDate)
    : MjdTimeC(YmdhmsC(fatTime, fatDate)) {}

std::int32_t MjdTimeC::dayOfYear() const {
  // The split to hundredths carries the last 5 ms of a year into the next one; this is meant.
  CalendarFieldsC const fields = splitDayNumber(dayNumber, 0);
  double const yearStart = joinDayNumber({fields.year, 1, 1, 0, 0, 0, 0});
  constexpr std::int64_t LOWEST = std::numeric_limits<std::int32_t>::min();
  constexpr std::int64_t HIGHEST = std::numeric_limits<std::int32_t>::max();
  std::int64_t const days = truncToInt64(dayNumber - yearStart + 1.0);
  return static_cast<std::int32_t>(std::clamp(days, LOWEST, HIGHEST));
}

void MjdTimeC::toUtc() {
  if (timeBase == TIMEBASE_GPS) {
    dayNumber = gpsToUtcDayNumber(dayNumber);
    timeBase = TIMEBASE_UTC;
  } else if (timeBase == TIMEBASE_LOCAL) {
    dayNumber = localToUtcDayNumber(dayNumber);
    timeBase = TIMEBASE_UTC;
  }
}

void MjdTimeC::toGps() {
  if (timeBase == TIMEBASE_LOCAL) {
    toUtc();
  }
  if (timeBase == TIMEBASE_UTC) {
    dayNumber = utcToGpsDayNumber(dayNumber);
    timeBase = TIMEBASE_GPS;
  }
}

void MjdTimeC::utcToLocal() {
  dayNumber += offsetDays(*this);
  timeBase = TIMEBASE_LOCAL;
}

void MjdTimeC::localToUtc() {
  dayNumber -= offsetDays(*this);
  timeBase = TIMEBASE_UTC;
}

bool MjdTimeC::convertTo(TimeBaseE target) {
  if (target == timeBase) {
    return true;
  }
  bool const isKnown =
      timeBase == TIMEBASE_GPS || timeBase == TIMEBASE_UTC || timeBase == TIMEBASE_LOCAL;
  if (!isKnown) {
    return false;
  }
  switch (target) {
    case TIMEBASE_GPS:
      if (timeBase == TIMEBASE_LOCAL) {
        localToUtc();
      }
      toGps();
      return true;
    case TIMEBASE_UTC:
      if (timeBase == TIMEBASE_LOCAL) {
        localToUtc();
      } else {
        toUtc();
      }
      return true;
    case TIMEBASE_LOCAL:
      toUtc();
      utcToLocal();
      return true;
    case TIMEBASE_INV:
      return false;
  }
  return false;
}

bool MjdTimeC::operator==(MjdTimeC const& other) const {
  return dayNumber == numberInBase(other, timeBase);
}

bool MjdTimeC::operator!=(MjdTimeC const& other) const {
  return !(*this == other);
}

bool MjdTimeC::operator<(MjdTimeC const& other) const {
  return dayNumber < numberInBase(other, timeBase);
}

bool MjdTimeC::operator<=(MjdTimeC const& other) const {
  return dayNumber <= numberInBase(other, timeBase);
}

bool MjdTimeC::operator>(MjdTimeC const& other) const {
  return dayNumber > numberInBase(other, timeBase);
}

bool MjdTimeC::operator>=(MjdTimeC const& other) const {
  return dayNumber >= numberInBase(other, timeBase);
}

}  // namespace KTX::TIM
