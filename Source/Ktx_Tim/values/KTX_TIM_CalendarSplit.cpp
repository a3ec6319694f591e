#include "values/KTX_TIM_CalendarSplit.h"

#include <boost/date_time/gregorian/greg_year.hpp>
#include <boost/throw_exception.hpp>

#include "KTX/TIM/KTX_TIM_TimeConstants.h"

namespace KTX::TIM {
namespace {

constexpr std::uint32_t LAST_DAY = 2973483;  // 9999-12-31

/// Rounds half away from zero; value is 0 or more and less than 2^31.
std::uint32_t roundHalfAway(double value) {
  auto const whole = static_cast<std::int32_t>(value);
  bool const isUp = value - whole >= 0.5;  // exact, while value + 0.5 is not
  return static_cast<std::uint32_t>(whole) + (isUp ? 1 : 0);
}

/// Sets year, month and day from whole days after 1858-11-17. Years start in March, so that the
/// leap day is the last one.
void splitDate(std::uint32_t days, CalendarFieldsC& fields) {
  constexpr std::uint32_t DAYS_PER_ERA = 146097;   // 400 years
  std::uint32_t const dayOfCount = days + 678881;  // from 0000-03-01
  std::uint32_t const era = dayOfCount / DAYS_PER_ERA;
  std::uint32_t const dayOfEra = dayOfCount % DAYS_PER_ERA;
  std::uint32_t const yearOfEra =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  std::uint32_t const dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  std::uint32_t const shiftedMonth = (5 * dayOfYear + 2) / 153;  // 0 is March
  std::uint32_t const month = shiftedMonth < 10 ? shiftedMonth + 3 : shiftedMonth - 9;
  fields.year = static_cast<std::uint16_t>(era * 400 + yearOfEra + (month <= 2 ? 1 : 0));
  fields.month = static_cast<std::uint8_t>(month);
  fields.day = static_cast<std::uint8_t>(dayOfYear - (153 * shiftedMonth + 2) / 5 + 1);
}

void splitTimeOfDay(std::uint32_t msOfDay, CalendarFieldsC& fields) {
  std::uint32_t const seconds = msOfDay / 1000;
  fields.hour = static_cast<std::uint8_t>(seconds / 3600);
  fields.minute = static_cast<std::uint8_t>(seconds / 60 % 60);
  fields.second = static_cast<std::uint8_t>(seconds % 60);
  fields.milliseconds = static_cast<std::uint16_t>(msOfDay % 1000);
}

}  // namespace

CalendarFieldsC splitDayNumber(double dayNumber, std::uint32_t precision) {
  CalendarFieldsC fields{};
  if (!(dayNumber > 0)) {
    return fields;
  }
  if (dayNumber >= LAST_DAY + 1) {
    boost::throw_exception(boost::gregorian::bad_year());
  }
  auto days = static_cast<std::uint32_t>(dayNumber);
  double const fraction = dayNumber - days;
  std::uint32_t msOfDay = precision == 0 ? roundHalfAway(fraction * 8640000.0) * 10
                                         : roundHalfAway(fraction * 86400000.0);
  if (msOfDay == MS_PER_DAY) {
    msOfDay = 0;
    ++days;
  }
  if (days > LAST_DAY) {
    boost::throw_exception(boost::gregorian::bad_year());
  }
  splitDate(days, fields);
  splitTimeOfDay(msOfDay, fields);
  fields.dayOfWeek = static_cast<std::uint8_t>((days + 3) % 7 + 1);  // day 0 was a Wednesday
  return fields;
}

double joinDayNumber(std::uint16_t year,
                     std::uint8_t month,
                     std::uint8_t day,
                     std::uint8_t hour,
                     std::uint8_t minute,
                     std::uint8_t second,
                     std::int64_t milliseconds) {
  bool const isBeforeMarch = month < 3;
  auto const y = static_cast<std::int16_t>(isBeforeMarch ? year - 1 : year);
  std::int32_t const m = (isBeforeMarch ? month + 12 : month) + 1;
  std::int32_t const a = y / 100;
  std::int32_t const b = a / 4 - a + 2;
  // 365.25 * y and 30.6001 * m, truncated toward zero; whole numbers, so no sum of them rounds.
  std::int32_t const wholeDays = y * 1461 / 4 + m * 306001 / 10000 - 679006 + b + day;
  return wholeDays + hour / 24.0 + minute / 1440.0 + second / 86400.0 +
         static_cast<double>(milliseconds) / 86400000.0;
}

}  // namespace KTX::TIM
