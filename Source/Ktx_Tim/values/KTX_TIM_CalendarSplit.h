#ifndef KTX_TIM_CALENDARSPLIT_H
#define KTX_TIM_CALENDARSPLIT_H

#include <cstdint>

#include "KTX/TIM/KTX_TIM_TimeConstants.h"

namespace KTX::TIM {

/// A date and time of day without a time base.
struct CalendarFieldsC {
  std::uint16_t year;
  std::uint8_t month;
  std::uint8_t day;
  std::uint8_t hour;
  std::uint8_t minute;
  std::uint8_t second;
  std::uint8_t dayOfWeek;      ///< 1 to 7, Sunday is 1
  std::uint16_t milliseconds;  ///< of the second
};

/// The Modified Julian Date of 9999-12-31, the last day that can be split.
constexpr std::uint32_t LAST_CALENDAR_DAY = 2973483;

/// Throws boost::gregorian::bad_year.
[[noreturn]] void throwBadYear();

/// Rounds half away from zero; value is 0 or more and less than 2^31.
inline std::uint32_t roundHalfAway(double value) {
  auto const whole = static_cast<std::int32_t>(value);
  bool const isUp = value - whole >= 0.5;  // exact, while value + 0.5 is not
  return static_cast<std::uint32_t>(whole) + (isUp ? 1 : 0);
}

/// Sets year, month, day and day of week from whole days after 1858-11-17. The years of the
/// computation start in March, so that the leap day is the last one.
inline void splitDate(std::uint32_t days, CalendarFieldsC& fields) {
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
  fields.dayOfWeek = static_cast<std::uint8_t>((days + 3) % 7 + 1);  // day 0 was a Wednesday
}

inline void splitTimeOfDay(std::uint32_t msOfDay, CalendarFieldsC& fields) {
  std::uint32_t const seconds = msOfDay / 1000;
  fields.hour = static_cast<std::uint8_t>(seconds / 3600);
  fields.minute = static_cast<std::uint8_t>(seconds / 60 % 60);
  fields.second = static_cast<std::uint8_t>(seconds % 60);
  fields.milliseconds = static_cast<std::uint16_t>(msOfDay % 1000);
}

/// Splits a Modified Julian Date. The time of day is rounded half away from zero to hundredths
/// (precision 0) or milliseconds (any other), and carries into the date. 0, a negative number and
/// not-a-number give all zeros; a result past 9999-12-31 throws boost::gregorian::bad_year.
inline CalendarFieldsC splitDayNumber(double dayNumber, std::uint32_t precision) {
  CalendarFieldsC fields{};
  if (!(dayNumber > 0)) {
    return fields;
  }
  if (dayNumber >= LAST_CALENDAR_DAY + 1) {
    throwBadYear();
  }
  auto days = static_cast<std::int32_t>(dayNumber);
  double const fraction = dayNumber - days;
  std::uint32_t msOfDay = precision == 0 ? roundHalfAway(fraction * 8640000.0) * 10
                                         : roundHalfAway(fraction * 86400000.0);
  if (msOfDay == MS_PER_DAY) {
    msOfDay = 0;
    ++days;
  }
  auto const wholeDays = static_cast<std::uint32_t>(days);
  if (wholeDays > LAST_CALENDAR_DAY) {
    throwBadYear();
  }
  splitDate(wholeDays, fields);
  splitTimeOfDay(msOfDay, fields);
  return fields;
}

/// The Modified Julian Date of a date and time of day, whatever the fields hold.
inline double joinDayNumber(std::uint16_t year,
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

#endif  // KTX_TIM_CALENDARSPLIT_H
