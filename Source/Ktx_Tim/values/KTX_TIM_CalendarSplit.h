#ifndef KTX_TIM_CALENDARSPLIT_H
#define KTX_TIM_CALENDARSPLIT_H

#include <cstdint>

#include "KTX/TIM/KTX_TIM_TimeConstants.h"
#include "values/KTX_TIM_WeekTime.h"

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
/// computation start in March, so that the leap day is the last one; its factors are those of
/// C. Neri and L. Schneider, "Euclidean affine functions and their application to calendar
/// algorithms", 2022.
inline void splitDate(std::uint32_t days, CalendarFieldsC& fields) {
  std::uint32_t const quarters = 4 * (days + 678881) + 3;  // of days, from 0000-03-01
  std::uint32_t const century = quarters / 146097;
  std::uint32_t const quartersOfCentury = (quarters % 146097) | 3;
  std::uint64_t const scaledYears = std::uint64_t{2939745} * quartersOfCentury;  // over 2^32
  auto const yearOfCentury = static_cast<std::uint32_t>(scaledYears >> 32);
  std::uint32_t const dayOfYear = static_cast<std::uint32_t>(scaledYears) / 2939745 / 4;
  std::uint32_t const scaledMonths = 2141 * dayOfYear + 197913;  // over 2^16, March is 3
  std::uint32_t const isNextYear = dayOfYear >= 306 ? 1 : 0;     // January and February
  fields.year = static_cast<std::uint16_t>(100 * century + yearOfCentury + isNextYear);
  fields.month = static_cast<std::uint8_t>((scaledMonths >> 16) - 12 * isNextYear);
  fields.day = static_cast<std::uint8_t>((scaledMonths & 0xFFFF) / 2141 + 1);
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

/// As splitDayNumber(dayNumberOf(time), precision), in whole numbers. The day number is off by
/// less than 10 us, which decides only where the milliseconds lie half-way between hundredths.
inline CalendarFieldsC splitWeekTime(WeekTimeC time, std::uint32_t precision) {
  if (precision == 0 && time.msOfWeek % 10 == 5) {
    return splitDayNumber(dayNumberOf(time), precision);
  }
  std::uint32_t days = GPS_EPOCH_MJD + time.week * 7U + time.msOfWeek / MS_PER_DAY;
  std::uint32_t msOfDay = time.msOfWeek % MS_PER_DAY;
  if (precision == 0) {
    msOfDay = (msOfDay + 5) / 10 * 10;
    if (msOfDay == MS_PER_DAY) {
      msOfDay = 0;
      ++days;
    }
  }
  CalendarFieldsC fields{};
  splitDate(days, fields);
  splitTimeOfDay(msOfDay, fields);
  return fields;
}

/// A date and time of day to be joined, whatever the fields hold.
struct JoinedFieldsC {
  std::uint16_t year;
  std::uint8_t month;
  std::uint8_t day;
  std::uint8_t hour;
  std::uint8_t minute;
  std::uint8_t second;
  std::int64_t milliseconds;  ///< less than a minute, either way
};

/// The whole days of the day number.
inline std::int32_t joinDate(JoinedFieldsC const& fields) {
  bool const isBeforeMarch = fields.month < 3;
  auto const y = static_cast<std::int16_t>(isBeforeMarch ? fields.year - 1 : fields.year);
  std::int32_t const m = (isBeforeMarch ? fields.month + 12 : fields.month) + 1;
  std::int32_t const a = y / 100;
  std::int32_t const b = a / 4 - a + 2;
  // 365.25 * y and 30.6001 * m, truncated toward zero; whole numbers, so no sum of them rounds.
  return y * 1461 / 4 + m * 306001 / 10000 - 679006 + b + fields.day;
}

/// The Modified Julian Date.
inline double joinDayNumber(JoinedFieldsC const& fields) {
  return joinDate(fields) + fields.hour / 24.0 + fields.minute / 1440.0 + fields.second / 86400.0 +
         static_cast<double>(fields.milliseconds) / 86400000.0;
}

/// As weekTimeOf(joinDayNumber(fields)). For the years of use in whole numbers: the day number is
/// off by less than 0.2 ms, and rounds to the milliseconds that the fields tell.
inline WeekTimeC joinWeekTime(JoinedFieldsC const& fields) {
  if (fields.year <= 1980 || fields.year > 9999) {
    return weekTimeOf(joinDayNumber(fields));
  }
  // The sum of joinDate(), without a sign and from the GPS epoch.
  constexpr std::uint32_t EPOCH = 679006 - 2 + GPS_EPOCH_MJD;
  std::uint32_t const isBeforeMarch = fields.month < 3 ? 1 : 0;
  std::uint32_t const y = fields.year - isBeforeMarch;
  std::uint32_t const m = fields.month + 1 + 12 * isBeforeMarch;
  std::uint32_t const century = y / 100;
  // m is at most 256, where 31335 / 1024 gives the same whole days as 30.6001.
  std::uint32_t const days =
      y * 1461 / 4 - century + century / 4 + m * 31335 / 1024 + fields.day - EPOCH;
  std::int32_t const msOfDay = fields.hour * 3600000 + fields.minute * 60000 +
                               fields.second * 1000 +
                               static_cast<std::int32_t>(fields.milliseconds);
  // Days of 1980 at least, so that no negative milliseconds reach below the epoch.
  auto const ms = static_cast<std::uint64_t>(std::int64_t{days} * MS_PER_DAY + msOfDay);
  return {static_cast<std::uint16_t>(ms / MS_PER_WEEK),
          static_cast<std::uint32_t>(ms % MS_PER_WEEK)};
}

}  // namespace KTX::TIM

#endif  // KTX_TIM_CALENDARSPLIT_H
